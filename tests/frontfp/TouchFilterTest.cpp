// Fingers near the sensor, through the exports of the built plug-in.

#include "tests/support/Phone.h"

namespace test {
namespace {

constexpr int32_t kFingerDown = 516;
constexpr int32_t kIdentifyStart = 517;
constexpr int32_t kIdentifyEnd = 518;
constexpr int32_t kEnroll = 519;

const Finger kLanding = finger(0).at(540, 2200).pressing(50).flagged(0x12);

/// A phone whose sensor has reported a finger, and on which that finger is held back.
struct HeldBackFinger : Phone {
    HeldBackFinger() {
        key(kFingerDown);
        EXPECT_EQ(after(50ms).touch(kLanding), kNone);
    }
};

// A finger that brushes the sensor and becomes a swipe starts where it landed, or the swipe loses its beginning.
TEST(TouchFilter, ASwipeComesBackWhereItLanded) {
    HeldBackFinger phone;
    EXPECT_TRUE(
        phone.said("TouchSeq#1, restraint current point(id=0, x=540, y=2200), onEdge=0, enrolling=0, "
                   "identifying=0, FPRecently=1"));
    EXPECT_EQ(phone.after(40ms).touch(kLanding.at(540, 2161)), kNone);  // 39 up: still the wobble of a resting finger
    EXPECT_EQ(phone.said(), std::vector<std::string>{}) << "a decision is told once, not in every frame";
    EXPECT_EQ(phone.after(10ms).touch(finger(0).at(541, 2160).pressing(9)), Fingers{kLanding});
    EXPECT_EQ(phone.after(10ms).touch(kLanding.at(541, 2199)), Fingers{kLanding.at(541, 2199)});
}

// The limits of a restored finger: beyond them it jumps back from another movement, or stays lost.
TEST(TouchFilter, LimitsOfARestoredFinger) {
    struct Case {
        std::chrono::milliseconds after;
        int32_t x, y;
        bool comesBack;
    };
    for (const Case& c : {Case{1000ms, 540, 2160, true}, Case{1001ms, 540, 2160, false}, Case{9ms, 600, 2160, true},
                          Case{9ms, 540, 2161, false}, Case{9ms, 540, 2240, false}}) {
        HeldBackFinger phone;
        const Fingers seen = phone.after(c.after).touch(kLanding.at(c.x, c.y));
        EXPECT_EQ(seen, c.comesBack ? Fingers{kLanding} : kNone) << c.after.count() << " ms, " << c.x << ", " << c.y;
    }
}

// A held-back finger that leaves the area is a gesture: near enough it starts where it landed, else where it is.
TEST(TouchFilter, LeavingTheAreaLetsAFingerThrough) {
    for (const auto& [x, back] : {std::pair{740, true}, {741, false}}) {  // 200 and 201 sideways
        HeldBackFinger phone;
        const Finger outside = kLanding.at(x, 2200);
        EXPECT_EQ(phone.after(20ms).touch(outside), Fingers{back ? kLanding : outside}) << x;
        EXPECT_EQ(phone.after(20ms).touch(kLanding.at(560, 2200)).size(), 1u) << "held back again after having left";
    }
}

// All four edges of the area belong to it; a finger one unit outside is nobody's business.
TEST(TouchFilter, EdgesOfTheArea) {
    struct Case {
        int32_t x, y;
        bool inside;
    };
    for (const Case& c : {Case{400, 2100, true}, Case{680, 2340, true}, Case{399, 2200, false}, Case{681, 2200, false},
                          Case{540, 2099, false}, Case{540, 2341, false}}) {
        Phone phone;
        phone.key(kFingerDown);
        EXPECT_EQ(phone.after(9ms).touch(finger(0).at(c.x, c.y)).empty(), c.inside) << c.x << ", " << c.y;
    }
}

// What the sensor has said holds a finger back only for a while, or a phone feels dead after an unlock.
TEST(TouchFilter, HowLongTheSensorHoldsFingersBack) {
    struct Case {
        int32_t key;
        std::chrono::milliseconds after;
        bool heldBack;
    };
    for (const Case& c :
         {Case{kFingerDown, 0ms, false}, Case{kFingerDown, 1ms, true}, Case{kFingerDown, 299ms, true},
          Case{kFingerDown, 300ms, false}, Case{kEnroll, 0ms, true}, Case{kEnroll, 1699ms, true},
          Case{kEnroll, 1700ms, false}, Case{kIdentifyStart, 1699ms, true}, Case{kIdentifyStart, 1700ms, false}}) {
        Phone phone;
        phone.key(c.key);
        EXPECT_EQ(phone.after(c.after).touch(kLanding).empty(), c.heldBack) << c.key << " after " << c.after.count();
    }
}

// In landscape the edge bit decides in place of the sensor's recent finger, and the log still tells the truth of that.
TEST(TouchFilter, LandscapeGoesByTheEdgeBit) {
    Phone phone;
    phone.rotate(1);
    phone.key(kFingerDown);
    EXPECT_EQ(phone.after(50ms).touch(kLanding).size(), 1u);
    phone.lift();
    phone.key(kFingerDown);
    EXPECT_EQ(phone.after(50ms).touch(kLanding.flagged(kOnEdge)), kNone);
    EXPECT_TRUE(
        phone.said("TouchSeq#2, restraint current point(id=0, x=540, y=2200), onEdge=1, enrolling=0, "
                   "identifying=0, FPRecently=1"));
}

// A finger that slides in from elsewhere is a gesture already, whatever the sensor says.
TEST(TouchFilter, AFingerFromOutsideIsNeverHeldBack) {
    Phone phone;
    phone.key(kFingerDown);
    phone.after(10ms).touch(finger(4).at(540, 2000));
    EXPECT_EQ(phone.after(10ms).touch(finger(4).at(540, 2150)).size(), 1u);
    EXPECT_TRUE(phone.said("TouchSeq#1, wide range point:id=4 move into filter area at point(x=540, y=2150)"));
    EXPECT_TRUE(phone.said("TouchSeq#1, mark point(id=4, x=540, y=2150) nearby the FP, reason:wide range point"));
    phone.touch(finger(4).at(540, 2099));
    EXPECT_TRUE(phone.said("TouchSeq#1, touch point(id=4, x=540, y=2099) move out the filter area"));
    phone.touch(finger(4).at(540, 2098));
    EXPECT_TRUE(phone.said().empty()) << "told in every frame";
}

// The navigation bar in front of the sensor gets its touches, but not while the sensor enrols or identifies.
TEST(TouchFilter, TheNavigationBarGetsItsTouches) {
    struct Case {
        int32_t key;
        int32_t orientation;
        uint32_t flags;
        bool heldBack;
    };
    for (const Case& c :
         {Case{kFingerDown, 0, 0, false}, Case{kFingerDown, 0, kOnEdge, false}, Case{kFingerDown, 1, kOnEdge, true},
          Case{kEnroll, 0, 0, true}, Case{kIdentifyStart, 0, 0, true}}) {
        Phone phone;
        phone.rotate(c.orientation);
        phone.show({navigationBar()});
        phone.key(c.key);
        EXPECT_EQ(phone.after(50ms).touch(kLanding.flagged(c.flags)).empty(), c.heldBack) << c.key << " " << c.flags;
    }
}

// The touch that unlocks the phone is taken back when the sensor starts on it; a touch of long before is not.
TEST(TouchFilter, AnIdentificationCancelsItsOwnTouch) {
    struct Case {
        std::chrono::milliseconds after;
        size_t cancels;
    };
    for (const Case& c : {Case{0ms, 0}, Case{1ms, 1}, Case{300ms, 1}, Case{301ms, 0}}) {
        Phone phone;
        EXPECT_EQ(phone.touch(kLanding).size(), 1u);
        phone.after(c.after).key(kIdentifyStart);
        EXPECT_EQ(phone.after(8ms).touch(kLanding), kNone) << "taken back, or held back while the sensor identifies";
        EXPECT_EQ(phone.cancels(), c.cancels) << c.after.count();
    }
}

// Without a mapper nothing can be cancelled; the fingers are judged all the same.
TEST(TouchFilter, NoMapperNoCancel) {
    Phone phone;
    phone.touch(kLanding);
    phone.after(80ms).key(kIdentifyStart);
    EXPECT_EQ(phone.after(8ms).touchWithoutMapper(kLanding), kNone);
    EXPECT_EQ(phone.cancels(), 0u);
    EXPECT_FALSE(phone.said("this touch may caused by identify finger, cancel it"));
}

// A slide sideways over the sensor is the sensor's own swipe: the touch under it is cancelled, if a key has just said
// so.
TEST(TouchFilter, ASwipeOverTheSensorCancels) {
    struct Case {
        int32_t range, key;
        std::chrono::milliseconds after;
        size_t cancels;
    };
    for (const Case& c : {Case{100, 514, 10ms, 0}, Case{101, 514, 10ms, 1}, Case{101, 513, 299ms, 1},
                          Case{101, 513, 300ms, 0}, Case{101, 516, 10ms, 1}, Case{101, 501, 10ms, 0}}) {
        Phone phone;
        phone.touch(finger(0).at(450, 2200));
        phone.after(10ms).touch(finger(0).at(450, 2200));  // the landing itself is not part of the range
        phone.after(10ms).touch(finger(0).at(450 + c.range, 2279));
        phone.after(500ms).key(c.key);
        phone.after(c.after).touch(finger(0).at(450 + c.range, 2279));
        EXPECT_EQ(phone.cancels(), c.cancels) << c.range << ", key " << c.key << " after " << c.after.count();
    }
}

// A swipe that has been given back to the user is no slide over the sensor, however sideways it goes on.
TEST(TouchFilter, ARestoredSwipeIsNotCancelled) {
    HeldBackFinger phone;
    phone.after(10ms).touch(kLanding.at(540, 2150));
    phone.after(10ms).touch(kLanding.at(660, 2150));
    phone.after(10ms).key(514);
    phone.after(10ms).touch(kLanding.at(661, 2150));
    EXPECT_EQ(phone.cancels(), 0u);
}

// Every touch starts from nothing: what the one before was, in or outside of the area, held back or told, is over.
TEST(TouchFilter, EachTouchStartsFromNothing) {
    HeldBackFinger phone;
    phone.lift();
    EXPECT_EQ(phone.after(20ms).touch(kLanding), kNone);
    EXPECT_EQ(phone.said().size(), 1u) << "told anew";
    phone.lift();
    EXPECT_EQ(phone.after(400ms).touch(kLanding).size(), 1u) << "still held back from the touch before";
    phone.lift();
    phone.touch(finger(0).at(540, 2000));
    phone.lift();
    phone.key(kFingerDown);
    EXPECT_EQ(phone.after(20ms).touch(kLanding), kNone) << "still wide-range from the touch before";
    phone.lift();
    phone.after(400ms).touch(kLanding);
    phone.after(20ms).lift();
    phone.touch(finger(0).at(540, 2000));
    phone.after(20ms).key(kIdentifyStart);
    phone.after(20ms).touch(finger(0).at(540, 2000));
    EXPECT_EQ(phone.cancels(), 0u) << "cancelled for the touch-down of the touch before";
}

// A finger that lifts while another stays is forgotten: the next one with its id is judged by itself.
TEST(TouchFilter, AFingerThatLiftsIsForgotten) {
    const Finger other = finger(1).at(100, 100);
    HeldBackFinger phone;
    phone.after(10ms).touch({kLanding, other});
    phone.after(400ms).touch(other);
    EXPECT_EQ(phone.touch({kLanding, other}).size(), 2u) << "held back like the finger before";
    phone.touch({kLanding.at(540, 2000), other});
    phone.touch(other);
    phone.key(kEnroll);
    EXPECT_EQ(phone.touch({kLanding, other}), Fingers{other}) << "wide-range like the finger before";
}

// After a cancelled touch the next one can be cancelled, too, with nothing but the touch filter on.
TEST(TouchFilter, TheNextTouchCanBeCancelled) {
    Phone phone(
        Phone::Properties{{"ro.zqaft.tpfp.filter_area", "400,2100,680,2340"}, {"persist.zqaft.disable_abt", "1"}});
    for (int touch = 0; touch < 2; ++touch) {
        phone.after(5s).touch(kLanding);
        phone.after(80ms).key(kIdentifyStart);
        phone.after(8ms).touch(kLanding);
        EXPECT_EQ(phone.cancels(), 1u) << touch;
        phone.lift();
    }
}

// A finger that the navigation bar got stays with apps when the bar goes: it must not vanish under the user's finger.
TEST(TouchFilter, TheNavigationBarLiftsARestraint) {
    HeldBackFinger phone;
    phone.show({navigationBar()});
    EXPECT_EQ(phone.after(400ms).touch(kLanding).size(), 1u);
    refhost::WindowDescription hidden = navigationBar();
    hidden.visible = false;
    phone.show({hidden});
    EXPECT_EQ(phone.touch(kLanding).size(), 1u);
}

// A second finger makes it a gesture of the hand: what waited for a single finger on the sensor is sent or forgotten.
TEST(TouchFilter, ASecondFingerSendsTheHeldBackKey) {
    Phone phone;
    phone.touch(kLanding);
    ASSERT_TRUE(phone.after(60ms).key(513));
    phone.after(20ms).touch({kLanding, finger(1).at(200, 600)});
    ASSERT_EQ(phone.sentKeys().size(), 2u);
    phone.after(10ms).key(514);
    EXPECT_FALSE(phone.said("delayDispatchKey delay dispatch the key:514"))
        << "waits for a finger that is no longer alone";
    EXPECT_TRUE(phone.said().front().starts_with("During touchSeq#1, pointer is touching")) << phone.said().front();
    phone.after(10ms).key(kIdentifyStart);
    phone.after(10ms).touch(kLanding);
    EXPECT_EQ(phone.cancels(), 0u) << "the touch is no longer the sensor's";
}

// Hovering pointers are nobody's fingers: never held back, never marked.
TEST(TouchFilter, HoveringPointersPass) {
    Phone phone;
    phone.key(kFingerDown);
    const Finger above = kLanding.hovering();
    EXPECT_EQ(phone.after(50ms).touch(above), Fingers{above});
    EXPECT_EQ(phone.said(), std::vector<std::string>{});
}

// Only what is held back leaves the frame; the other fingers keep their order and their places.
TEST(TouchFilter, OtherFingersStayInPlace) {
    Phone phone;
    phone.key(kFingerDown);
    const Finger left = finger(7).at(100, 500);
    const Finger right = finger(2).at(900, 700);
    EXPECT_EQ(phone.after(50ms).touch({left, finger(0).at(540, 2200), right}), (Fingers{left, right}));
}

// An identification that has finished holds its own touch back to 1699 ms; the next touch is free.
TEST(TouchFilter, AfterTheIdentificationTheNextTouchIsFree) {
    Phone phone;
    phone.key(kIdentifyStart);
    phone.after(10ms).touch(finger(0).at(100, 100));
    EXPECT_TRUE(
        phone.said("First finger touch down on TP in touchSeq#1 after starting indentify finger 10ms later, "
                   "timeout=0"));
    phone.after(10ms).key(kIdentifyEnd);
    EXPECT_EQ(phone.after(1699ms).touch({finger(0).at(100, 100), finger(1).at(540, 2200)}).size(), 1u);
    phone.lift();
    EXPECT_EQ(phone.touch(kLanding).size(), 1u);
    EXPECT_TRUE(phone.said("Reset the IdentifyFPState in new touch touchSeq#2, identified 1699ms ago"));
}

}  // namespace
}  // namespace test

// Fingers near the sensor, through the exports of the built plug-in.

#include "tests/support/Phone.h"

using namespace test;

namespace {

using std::chrono::milliseconds;

constexpr int32_t kFingerDown = 516;
constexpr int32_t kIdentifyStart = 517;
constexpr int32_t kIdentifyEnd = 518;
constexpr int32_t kEnroll = 519;

const Finger kLanding = finger(0).at(540, 2200).pressing(50).flagged(0x12);
const Finger kOutside = finger(0).at(540, 2000);

/// A phone whose sensor has reported a finger, and on which that finger is held back.
struct HeldBackFinger : Phone {
    HeldBackFinger() {
        key(kFingerDown);
        EXPECT_EQ(after(50ms).touch(kLanding), kNone);
    }
};

// What the sensor has said holds fingers in its area back for a while; longer, or elsewhere, and a phone feels dead.
TEST(TouchFilter, WhatIsHeldBack) {
    struct Case {
        int32_t key;
        milliseconds after;
        bool heldBack;
        Finger lands = kLanding;
        int32_t orientation = 0;
        bool navigationBar = false;
    };
    const Finger onEdge = kLanding.flagged(kOnEdge);
    for (const Case& c :
         {Case{kFingerDown, 0ms, false}, Case{kFingerDown, 1ms, true}, Case{kFingerDown, 299ms, true},
          Case{kFingerDown, 300ms, false}, Case{kEnroll, 0ms, true}, Case{kEnroll, 1699ms, true},
          Case{kEnroll, 1700ms, false}, Case{kIdentifyStart, 1699ms, true}, Case{kIdentifyStart, 1700ms, false},
          // A key that was passed on says that a finger is on the sensor.
          Case{501, 299ms, true}, Case{501, 300ms, false},
          // All four edges belong to the area.
          Case{kFingerDown, 9ms, true, kLanding.at(400, 2100)}, Case{kFingerDown, 9ms, true, kLanding.at(680, 2340)},
          Case{kFingerDown, 9ms, false, kLanding.at(399, 2200)}, Case{kFingerDown, 9ms, false, kLanding.at(681, 2200)},
          Case{kFingerDown, 9ms, false, kLanding.at(540, 2099)}, Case{kFingerDown, 9ms, false, kLanding.at(540, 2341)},
          // In landscape the edge bit decides in place of the sensor's recent finger.
          Case{kFingerDown, 50ms, false, kLanding, 1}, Case{kFingerDown, 50ms, true, onEdge, 1},
          // The navigation bar gets its touches, but not while the sensor enrols or identifies.
          Case{kFingerDown, 50ms, false, kLanding, 0, true}, Case{kFingerDown, 50ms, false, onEdge, 0, true},
          Case{kFingerDown, 50ms, true, onEdge, 1, true}, Case{kEnroll, 50ms, true, kLanding, 0, true},
          Case{kIdentifyStart, 50ms, true, kLanding, 0, true}}) {
        Phone phone;
        phone.rotate(c.orientation);
        phone.show({navigationBar(c.navigationBar)});
        phone.key(c.key);
        EXPECT_EQ(phone.after(c.after).touch(c.lands).empty(), c.heldBack)
            << c.key << " after " << c.after.count() << " ms, " << c.lands << ", orientation " << c.orientation;
    }
}

// A finger that brushes the sensor and becomes a swipe starts where it landed, or the swipe loses its beginning. Beyond
// these limits it would jump back from another movement, or stay lost; one that leaves the area is a gesture, too: near
// enough it starts where it landed, else where it is.
TEST(TouchFilter, LimitsOfARestoredFinger) {
    using Case = std::tuple<milliseconds, int32_t, int32_t, Fingers>;
    for (const auto& [after, x, y, seen] :
         {Case{1000ms, 540, 2160, {kLanding}}, Case{1001ms, 540, 2160, kNone}, Case{9ms, 600, 2160, {kLanding}},
          Case{9ms, 540, 2161, kNone}, Case{9ms, 540, 2240, kNone}, Case{9ms, 740, 2200, {kLanding}},
          Case{9ms, 741, 2200, {finger(0).at(741, 2200).pressing(9)}}}) {
        HeldBackFinger phone;
        EXPECT_EQ(phone.after(after).touch(finger(0).at(x, y).pressing(9)), seen) << after.count() << " ms";
        EXPECT_EQ(phone.after(9ms).touch(kLanding).empty(), seen.empty()) << "held back again after it has left";
    }
}

// A finger that slides in from elsewhere is a gesture already, whatever the sensor says; each crossing is told once.
TEST(TouchFilter, AFingerFromOutsideIsNeverHeldBack) {
    Phone phone;
    phone.key(kFingerDown);
    phone.after(10ms).touch(kOutside);
    EXPECT_EQ(phone.after(10ms).touch(finger(0).at(540, 2150)).size(), 1u);
    EXPECT_EQ(phone.log(),
              (Lines{"INFO TouchSeq#1, wide range point:id=0 move into filter area at point(x=540, y=2150)",
                     "INFO TouchSeq#1, mark point(id=0, x=540, y=2150) nearby the FP, reason:wide range point"}));
    phone.touch(kOutside);
    EXPECT_EQ(phone.log(), Lines{"DEBUG TouchSeq#1, touch point(id=0, x=540, y=2000) move out the filter area"});
    phone.touch(kOutside);
    EXPECT_EQ(phone.log(), Lines{}) << "told in every frame";
}

// The touch that unlocks the phone is taken back when the sensor starts on it; a touch of long before is not, and
// without a mapper there is nobody to take it back.
TEST(TouchFilter, AnIdentificationCancelsItsOwnTouch) {
    using Case = std::tuple<milliseconds, bool, size_t>;
    const milliseconds weeks{int64_t{1} << 32};  // the difference counts by its low 32 bits
    for (const auto& [after, mapper, cancels] :
         {Case{0ms, true, 0}, Case{1ms, true, 1}, Case{300ms, true, 1}, Case{301ms, true, 0}, Case{weeks, true, 0},
          Case{weeks + 1ms, true, 1}, Case{80ms, false, 0}}) {
        Phone phone;
        EXPECT_EQ(phone.touch(kLanding).size(), 1u);
        phone.after(after).key(kIdentifyStart);
        EXPECT_EQ(phone.after(8ms).touch({kLanding}, mapper), kNone) << "not even held back";
        EXPECT_EQ(phone.cancels(), cancels) << after.count();
        ASSERT_FALSE(phone.log().empty());
        EXPECT_EQ(phone.log().front().starts_with("DEBUG identify finger"), mapper && after > 0ms) << after.count();
    }
    Phone phone;
    for (const Finger& landing : {kLanding, kOutside}) {
        phone.lift();
        phone.touch(landing);
    }
    phone.after(20ms).key(kIdentifyStart);
    phone.after(20ms).touch(kOutside);
    EXPECT_EQ(phone.cancels(), 0u) << "cancelled for the touch-down of the touch before";
}

// A slide sideways over the sensor is the sensor's own swipe: the touch under it is cancelled, if a key has just said
// so.
TEST(TouchFilter, ASwipeOverTheSensorCancels) {
    using Case = std::tuple<int32_t, int32_t, int32_t, milliseconds, size_t>;
    for (const auto& [xRange, yRange, key, after, cancels] :
         {Case{100, 79, 514, 10ms, 0}, Case{101, 79, 514, 10ms, 1}, Case{101, 80, 514, 10ms, 0},
          Case{101, 79, 513, 299ms, 1}, Case{101, 79, 513, 300ms, 0}, Case{101, 79, 516, 10ms, 1},
          Case{101, 79, 501, 10ms, 0}}) {
        Phone phone;
        phone.touch(finger(0).at(450, 2200));
        phone.after(10ms).touch(finger(0).at(450, 2200));  // the landing itself is not part of the range
        const Finger there = finger(0).at(450 + xRange, 2200 + yRange);
        phone.after(10ms).touch(there);
        phone.after(500ms).key(key);
        phone.after(after).touch(there);
        EXPECT_EQ(phone.cancels(), cancels) << there << ", key " << key << " after " << after.count();
    }
}

// A finger that lifts while another stays is forgotten: the next one with its id is judged by itself.
TEST(TouchFilter, AFingerThatLiftsIsForgotten) {
    const Finger other = finger(1).at(100, 100);
    HeldBackFinger phone;
    phone.after(10ms).touch({kLanding, other});
    EXPECT_EQ(phone.log(), Lines{}) << "a decision is told once, not in every frame";
    phone.after(400ms).touch(other);
    EXPECT_EQ(phone.touch({kLanding, other}).size(), 2u) << "held back like the finger before";
    phone.touch({kOutside, other});
    phone.touch(other);
    phone.key(kEnroll);
    EXPECT_EQ(phone.touch({kLanding, other}), Fingers{other}) << "wide-range like the finger before";
}

// A finger that the navigation bar got stays with apps when the bar goes: it must not vanish under the user's finger.
TEST(TouchFilter, TheNavigationBarLiftsARestraint) {
    HeldBackFinger phone;
    phone.show({navigationBar()});
    EXPECT_EQ(phone.after(400ms).touch(kLanding).size(), 1u);
    phone.show({navigationBar(false)});
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
    EXPECT_EQ(phone.log().size(), 3u) << "says why it was consumed, and not a word of holding it back";
    phone.after(10ms).key(kIdentifyStart);
    phone.after(10ms).touch(kLanding);
    EXPECT_EQ(phone.cancels(), 0u) << "the touch is no longer the sensor's";
}

// An identification, finished or not, holds its own touch back to 1699 ms; the next touch is free.
TEST(TouchFilter, AnIdentificationHoldsItsOwnTouchAlone) {
    const Finger elsewhere = finger(0).at(100, 100);
    for (const bool finished : {false, true}) {
        Phone phone;
        phone.key(kIdentifyStart);
        phone.after(finished ? 10ms : 0ms).touch(elsewhere);
        if (finished) phone.key(kIdentifyEnd);
        EXPECT_EQ(phone.after(1699ms).touch({elsewhere, finger(1).at(540, 2200)}), Fingers{elsewhere}) << finished;
        phone.lift();
        EXPECT_EQ(phone.touch(kLanding).size(), 1u) << finished;
    }
}

}  // namespace

// The sensor's keys, through the exports of the built plug-in.

#include "tests/support/Phone.h"

namespace test {
namespace {

using android::NotifyKeyArgs;

const Finger kOnSensor = finger(0).at(540, 2200);

// Which keys reach apps when nothing else is going on: a wrong one here is a dead or a haunted fingerprint sensor.
TEST(KeyFilter, WhatIsConsumedByItself) {
    Phone phone;
    for (const int32_t code : {501, 502, 503, 511, 512, 513, 514, 515, 520, 600, 601, 66, 0, -1}) {
        EXPECT_FALSE(phone.key(code)) << code;
        EXPECT_FALSE(phone.key(code, false)) << code;
    }
    for (const int32_t code : {516, 517, 518, 519}) {
        EXPECT_TRUE(phone.key(code)) << code;
        EXPECT_TRUE(phone.key(code, false)) << code;
        EXPECT_FALSE(phone.key(code, true, 6)) << code << " of a device whose name only begins alike";
    }
}

// While the filter is off the sensor's notifications are kept from apps all the same, from whatever device.
TEST(KeyFilter, WithoutAFilterArea) {
    Phone phone(Phone::Properties{});
    for (const int32_t code : {515, 520}) EXPECT_FALSE(phone.key(code)) << code;
    for (const int32_t code : {516, 517, 518, 519}) EXPECT_TRUE(phone.key(code, true, Phone::kPanel)) << code;
}

// A tap on the sensor waits for its finger and is then sent whole, with the time of the lift-off.
TEST(KeyFilter, AHeldBackKeyIsSentAtLiftOff) {
    Phone phone;
    phone.touch(kOnSensor);
    EXPECT_TRUE(phone.after(60ms).key(601));
    EXPECT_TRUE(phone.after(30ms).key(601, false));
    phone.after(40ms).lift();
    ASSERT_EQ(phone.sentKeys().size(), 2u);
    for (const int32_t action : {NotifyKeyArgs::kActionDown, NotifyKeyArgs::kActionUp}) {
        const NotifyKeyArgs& key = phone.sentKeys()[static_cast<size_t>(action)];
        EXPECT_EQ(key.action, action);
        EXPECT_EQ(key.keyCode, 601);
        EXPECT_EQ(key.scanCode, 7);
        EXPECT_EQ(key.metaState, 3);
        EXPECT_EQ(key.policyFlags, 0x80000002);
        EXPECT_EQ(key.flags, 8);
        EXPECT_EQ(key.deviceId, Phone::kSensor);
        EXPECT_EQ(key.source, 257u);
        EXPECT_EQ(key.eventTime, 60'130'000'000);
        EXPECT_EQ(key.downTime, 60'130'000'000);
    }
    phone.after(10ms).lift();
    EXPECT_TRUE(phone.sentKeys().empty()) << "sent twice";
}

// Only a key within 120 ms of a single finger on the sensor waits for it; any other is decided at once.
TEST(KeyFilter, WhatWaitsForItsFinger) {
    struct Case {
        int32_t key;
        std::chrono::milliseconds after;
        int32_t y;
        size_t sent;
        Fingers more = {};
    };
    for (const Case& c :
         {Case{513, 0ms, 2200, 0}, Case{513, 1ms, 2200, 2}, Case{513, 119ms, 2200, 2}, Case{513, 120ms, 2200, 0},
          Case{514, 60ms, 2200, 2}, Case{601, 60ms, 2200, 2}, Case{515, 60ms, 2200, 0}, Case{513, 60ms, 2000, 0},
          Case{513, 60ms, 2200, 0, {finger(1).at(550, 2200)}}}) {
        Phone phone;
        Fingers landing = c.more;
        landing.push_back(finger(0).at(540, c.y));
        phone.touch(landing);
        phone.touch(finger(0).at(540, 2200));  // coming in later is no landing on the sensor
        phone.after(c.after).key(c.key);
        phone.after(20ms).lift();
        EXPECT_EQ(phone.sentKeys().size(), c.sent) << c.key << " after " << c.after.count() << " ms at y " << c.y;
    }
}

// A key held back for a finger that turns out to be a swipe is the sensor's mistake: it is never sent.
TEST(KeyFilter, AHeldBackKeyOfASwipeIsDropped) {
    Phone phone;
    phone.key(516);
    phone.after(50ms).touch(kOnSensor);
    EXPECT_TRUE(phone.after(50ms).key(513));
    phone.after(20ms).touch(kOnSensor.at(540, 2160));
    phone.after(20ms).lift();
    EXPECT_TRUE(phone.sentKeys().empty());
}

// A key that comes within a millisecond of its finger's lift-off is kept, and the next touch forgets it.
TEST(KeyFilter, AKeyJustBeforeLiftOffIsKept) {
    Phone phone;
    phone.touch(kOnSensor);
    phone.after(60ms).key(513);
    phone.after(999'999ns).lift();
    EXPECT_TRUE(phone.said("handlePendingKey, pending key's down after now!"));
    phone.after(1ns).lift();
    EXPECT_EQ(phone.sentKeys().size(), 2u);
    phone.after(1s).touch(kOnSensor);
    phone.after(60ms).key(513);
    phone.lift();
    phone.after(5ms).touch(kOnSensor);
    phone.after(5ms).lift();
    EXPECT_TRUE(phone.sentKeys().empty()) << "sent for another touch than its own";
}

// With a finger near the sensor its keys are consumed; each key-up shares the fate of its key-down.
TEST(KeyFilter, AFingerNearTheSensorConsumesItsKeys) {
    Phone phone;
    phone.touch(kOnSensor);
    EXPECT_TRUE(phone.after(200ms).key(501));
    EXPECT_TRUE(phone.said("finger touching nearby the fingerprint, filter this fingerprint's event"));
    EXPECT_TRUE(phone.key(501, false));
    EXPECT_FALSE(phone.key(501, false)) << "a key-up without a consumed key-down";
    phone.lift();
    EXPECT_FALSE(phone.after(400ms).key(501));
    EXPECT_TRUE(phone.said("After TouchSeq#1, process fingerprint event keycode=501 down"));
}

// A finger on the sensor while another rests near it marks the next key; a key of another code leaves the mark alone.
TEST(KeyFilter, MarksForTheNextKey) {
    Phone phone;
    phone.touch(kOnSensor);
    EXPECT_TRUE(phone.after(200ms).key(516));
    EXPECT_TRUE(
        phone.said("During TouchSeq#1, receive finger down on FP but TP touch recently, may filter next key "
                   "with any keycode"));
    phone.lift();
    EXPECT_TRUE(phone.key(511));
    EXPECT_TRUE(phone.said("Finger down since touchSeq#1 mark this key should be filtered"));
    EXPECT_FALSE(phone.key(511)) << "the mark is spent";
    for (const auto& [again, down] : {std::pair{516, true}, {502, false}}) {
        phone.at(70s).touch(kOnSensor);
        phone.after(200ms).key(516);
        phone.lift();
        phone.key(again, down);
        EXPECT_FALSE(phone.key(511)) << "the mark outlives " << again;
    }
}

// A key that was passed on says that a finger is on the sensor: a touch right after it is that finger.
TEST(KeyFilter, ADispatchedKeyIsAFingerOnTheSensor) {
    Phone phone;
    EXPECT_FALSE(phone.key(501));
    EXPECT_EQ(phone.after(50ms).touch(kOnSensor), kNone);
}

// The sensor's enter key takes the finger-up that follows it along, whatever comes in between.
TEST(KeyFilter, AConsumedEnterTakesTheNextFingerUp) {
    Phone phone;
    phone.touch(kOnSensor);
    EXPECT_TRUE(phone.after(200ms).key(66));
    phone.lift();
    EXPECT_TRUE(phone.key(66, false));
    EXPECT_TRUE(phone.said("After TouchSeq#1, filter next AKEYCODE_KEYCODE_FINGERPRINT_FINGER_UP"));
    EXPECT_FALSE(phone.key(511)) << "not the code that is marked";
    EXPECT_TRUE(phone.key(515)) << "the mark was lost to another code";
    EXPECT_TRUE(phone.key(515, false));
    EXPECT_FALSE(phone.key(515)) << "the mark is spent";
}

// In landscape a thumb on the middle of the screen says that the hand is busy: the sensor's keys are not meant.
TEST(KeyFilter, AThumbInTheMiddleOfALandscapeScreen) {
    struct Case {
        int32_t orientation;
        int32_t x, y;
        bool consumed;
    };
    for (const Case& c : {Case{1, 540, 1000, true}, Case{3, 100, 2240, true}, Case{0, 540, 1000, false},
                          Case{1, 99, 1000, false}, Case{1, 980, 100, true}, Case{1, 981, 100, false}}) {
        Phone phone;
        phone.rotate(c.orientation);
        phone.touch(finger(0).at(c.x, c.y));
        EXPECT_EQ(phone.after(500ms).key(501), c.consumed) << c.orientation << ": " << c.x << ", " << c.y;
    }
    Phone phone;
    phone.rotate(1);
    phone.touch(kOnSensor);
    EXPECT_TRUE(phone.after(500ms).key(501));
    EXPECT_TRUE(phone.said("finger touching nearby the fingerprint, filter this fingerprint's event"));
}

// A finger that slides over the sensor means its keys: they are dispatched although it is near.
TEST(KeyFilter, ASlideOverTheSensorReportsItsKeys) {
    Phone phone;
    phone.touch(finger(0).at(450, 2200));
    phone.after(10ms).touch(finger(0).at(450, 2200));
    phone.after(10ms).touch(finger(0).at(560, 2210));
    EXPECT_FALSE(phone.after(500ms).key(501));
    EXPECT_TRUE(phone.said("a nearby FP finger may swipe along the X axis(xRange:110,yRange:10)"));
    EXPECT_TRUE(phone.said("finger may swipe over the fingerprint, report this fingerprint's event"));
    EXPECT_TRUE(phone.key(516));
    EXPECT_TRUE(phone.said("During TouchSeq#1, new finger touch down on the FP, reset the wait state"));
}

}  // namespace
}  // namespace test

// The sensor's keys, through the exports of the built plug-in.

#include "tests/support/Phone.h"

using namespace test;

namespace {

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

// A key within 120 ms of a single finger on the sensor waits for it and is then sent whole, once; any other is decided
// at once.
TEST(KeyFilter, WhatWaitsForItsFinger) {
    using Case = std::tuple<int32_t, std::chrono::milliseconds, Fingers, size_t>;
    const Fingers tap = {kOnSensor};
    for (const auto& [key, after, landing, sent] :
         {Case{513, 0ms, tap, 0}, Case{513, 1ms, tap, 2}, Case{513, 119ms, tap, 2}, Case{513, 120ms, tap, 0},
          Case{514, 60ms, tap, 2}, Case{601, 60ms, tap, 2}, Case{515, 60ms, tap, 0},
          Case{513, 60ms, {finger(0).at(540, 2000)}, 0}, Case{513, 60ms, {finger(1).at(550, 2200), kOnSensor}, 0}}) {
        Phone phone;
        phone.touch(landing);
        phone.touch(kOnSensor);  // coming in later is no landing on the sensor
        phone.after(after).key(key);
        phone.after(20ms).lift();
        EXPECT_EQ(phone.sentKeys().size(), sent) << key << " after " << after.count() << " ms";
        phone.after(10ms).lift();
        EXPECT_TRUE(phone.sentKeys().empty()) << "sent twice";
    }
}

// A key that comes within a millisecond of its finger's lift-off is kept, and the next touch forgets it.
TEST(KeyFilter, AKeyJustBeforeLiftOffIsKept) {
    Phone phone;
    phone.touch(kOnSensor);
    phone.after(60ms).key(513);
    phone.after(999'999ns).lift();
    EXPECT_EQ(phone.log(), Lines{"INFO handlePendingKey, pending key's down after now!"});
    phone.after(1ns).lift();
    EXPECT_EQ(phone.sentKeys().size(), 2u);
    phone.after(1s).touch(kOnSensor);
    phone.after(60ms).key(513);
    phone.lift();
    phone.after(5ms).touch(kOnSensor);
    phone.after(5ms).lift();
    EXPECT_TRUE(phone.sentKeys().empty()) << "sent for another touch than its own";
}

// With a finger near the sensor all its keys are consumed; each key-up shares the fate of its key-down.
TEST(KeyFilter, AFingerNearTheSensorConsumesItsKeys) {
    Phone phone;
    phone.touch(kOnSensor);
    phone.after(200ms);
    for (const int32_t code : {66, 501, 502, 511, 512, 513, 514, 515, 601}) {
        EXPECT_TRUE(phone.key(code)) << code;
        EXPECT_TRUE(phone.key(code, false)) << code;
        EXPECT_FALSE(phone.key(code, false)) << code << ": a key-up without a consumed key-down";
    }
    phone.lift();
    EXPECT_FALSE(phone.after(400ms).key(501));
}

// A finger on the sensor while another rests near it marks the next key, of any code, and no more than that one.
TEST(KeyFilter, MarksForTheNextKey) {
    Phone phone;
    phone.touch(kOnSensor);
    EXPECT_TRUE(phone.after(200ms).key(516));
    phone.lift();
    EXPECT_TRUE(phone.key(511));
    EXPECT_FALSE(phone.key(511)) << "the mark is spent";
    for (const auto& [again, down] : {std::pair{516, true}, {502, false}}) {
        phone.at(70s).touch(kOnSensor);
        phone.after(200ms).key(516);
        phone.lift();
        phone.key(again, down);
        EXPECT_FALSE(phone.key(511)) << "the mark outlives " << again;
    }
}

// The sensor's enter key takes the finger-up that follows it along, whatever comes in between.
TEST(KeyFilter, AConsumedEnterTakesTheNextFingerUp) {
    Phone phone;
    phone.touch(kOnSensor);
    EXPECT_TRUE(phone.after(200ms).key(66));
    phone.lift();
    EXPECT_TRUE(phone.key(66, false));
    EXPECT_FALSE(phone.key(511)) << "not the code that is marked";
    EXPECT_TRUE(phone.key(515)) << "the mark was lost to another code";
    EXPECT_TRUE(phone.key(515, false));
    EXPECT_FALSE(phone.key(515)) << "the mark is spent";
}

// In landscape a thumb on the middle of the screen says that the hand is busy: the sensor's keys are not meant.
TEST(KeyFilter, AThumbInTheMiddleOfALandscapeScreen) {
    using Case = std::tuple<int32_t, int32_t, int32_t, bool>;
    for (const auto& [orientation, x, y, consumed] :
         {Case{1, 540, 1000, true}, Case{3, 100, 2240, true}, Case{0, 540, 1000, false}, Case{1, 99, 1000, false},
          Case{1, 980, 100, true}, Case{1, 981, 100, false}}) {
        Phone phone;
        phone.rotate(orientation);
        phone.touch(finger(0).at(x, y));
        EXPECT_EQ(phone.after(500ms).key(501), consumed) << orientation << ": " << x << ", " << y;
    }
}

}  // namespace

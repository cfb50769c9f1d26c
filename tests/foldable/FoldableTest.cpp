// A device that is folded under a finger, through the exports of the built plug-in, with the filter or without it.

#include "tests/support/Phone.h"

namespace test {
namespace {

using Lines = std::vector<std::string>;

const Finger kFinger = finger(0).at(540, 1200);
const Fingers kTwo = {kFinger, finger(4).at(10, 20)};

/// A foldable phone whose angle has been steady for long.
struct Foldable : Phone {
    Foldable() : Phone(Properties{}) {
        start();
        turnsTo(0, 30);
    }
    void turnsTo(float angle, int samples) {
        for (int i = 0; i < samples; ++i) foldsTo(angle);
    }
    Lines told() const { return log("ZqFoldableDeviceAftProcessor"); }
};

#if ZQAFT_FOLDABLE

const std::string kCancels = "WARN cancel touch during folding the device.";
const std::string kOff = "WARN mFoldableStateManager not enabled.";

// A fold under the fingers cancels their gesture once, and no later frame of it reaches apps, steady or not; the next
// gesture does.
TEST(Foldable, AFoldEndsTheGesture) {
    Foldable phone;
    phone.turnsTo(90, 3);
    EXPECT_EQ(phone.touch(kTwo), kTwo);
    EXPECT_EQ(phone.told(), Lines{});
    phone.turnsTo(90, 1);
    EXPECT_EQ(phone.touch(kTwo), kNone);
    EXPECT_EQ(phone.cancels(), 1u);
    EXPECT_EQ(phone.told(), (Lines{kCancels, kCancels}));
    phone.turnsTo(90, 60);
    EXPECT_EQ(phone.touch(kFinger), kNone);
    EXPECT_EQ(phone.cancels(), 0u);
    EXPECT_EQ(phone.told(), Lines{kCancels});
    phone.lift();
    EXPECT_EQ(phone.told(), Lines{});
    EXPECT_EQ(phone.touch(kTwo), kTwo);
    phone.lift();
    phone.turnsTo(0, 4);
    for (int gesture = 0; gesture < 2; ++gesture) {
        EXPECT_EQ(phone.touch(kFinger), kNone) << "it is folding already";
        EXPECT_EQ(phone.cancels(), 1u);
        phone.lift();
    }
    EXPECT_EQ(phone.touchWithoutMapper(kFinger), kNone);
    EXPECT_EQ(phone.cancels(), 0u);
}

// Without an enabled sensor every touching frame says so and passes; a stop also forgets a cancelled gesture, and the
// fold that was known cancels it anew.
TEST(Foldable, OffInTheMiddleOfAGesture) {
    Foldable phone;
    phone.turnsTo(90, 9);
    EXPECT_EQ(phone.touch(kFinger), kNone);
    phone.exit();
    EXPECT_EQ(phone.told(),
              (Lines{"INFO ZqFoldableDeviceAftProcessor::stop", "INFO disableSensor", "INFO disableSensor success"}));
    for (int frame = 0; frame < 2; ++frame) {
        EXPECT_EQ(phone.touch(kFinger), Fingers{kFinger});
        EXPECT_EQ(phone.told(), Lines{kOff});
    }
    phone.start();
    EXPECT_EQ(phone.told(),
              (Lines{"INFO ZqFoldableDeviceAftProcessor::start", "INFO enableSensor", "INFO enableSensor success"}));
    EXPECT_EQ(phone.calls(), (Lines{"getDefaultSensor 3", "enableSensor 9 0 0"}));
    EXPECT_EQ(phone.touch(kFinger), kNone);
    EXPECT_EQ(phone.cancels(), 1u);
    phone.exit();
    phone.lift();
    EXPECT_EQ(phone.told(), Lines{});
}

// The service's death is told and changes nothing: what was known of the fold goes on.
TEST(Foldable, TheServiceDies) {
    Foldable phone;
    phone.turnsTo(90, 9);
    phone.service(refhost::SensorService::State::Dies);
    EXPECT_EQ(phone.told(), Lines{"INFO ZqAftFoldableStateManager serviceDied!"});
    EXPECT_EQ(phone.touch(kFinger), kNone);
}

#else

// A phone that does not fold never asks for the angle, never touches a frame and never says a word about it.
TEST(Foldable, ABuildWithoutItDoesNothing) {
    Foldable phone;
    phone.start();
    EXPECT_EQ(phone.calls(), Lines{});
    EXPECT_EQ(phone.wholeLog(), Lines{"INFO ZqAftSCStateManager: isSupport=0"});
    phone.turnsTo(90, 9);
    EXPECT_EQ(phone.touch(kTwo), kTwo);
    EXPECT_EQ(phone.cancels(), 0u);
    EXPECT_EQ(phone.told(), Lines{});
    phone.exit();
    EXPECT_EQ(phone.calls(), Lines{});
    EXPECT_EQ(phone.told(), Lines{});
}

#endif

}  // namespace
}  // namespace test

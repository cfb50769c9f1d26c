// A device that is folded under a finger, through the exports of the built plug-in, with the filter and without it.

#include "tests/support/Phone.h"

using namespace test;

namespace {

const Finger kFinger = finger(0).at(540, 1200);

/// A phone whose angle has been steady for long.
struct Hinge : Phone {
    Hinge() : Phone(Properties{}) {
        start();
        turnsTo(0, 30);
    }
    void turnsTo(float angle, int samples) {
        for (int i = 0; i < samples; ++i) foldsTo(angle);
    }
    /// What comes of fingers on the glass: how many are seen, then what the filter logs and cancels.
    std::string feel(const Fingers& fingers) {
        std::string story = std::to_string(touch(fingers).size());
        for (const std::string& line : log("ZqFoldableDeviceAftProcessor")) story += "; " + line;
        return cancels() != 0 ? story + "; cancelled" : story;
    }
};

#if ZQAFT_FOLDABLE

const std::string kFolds = "; WARN cancel touch during folding the device.";

// A fold under the fingers cancels their gesture once, and no later frame of it reaches apps, steady or not; the next
// gesture does. Without a mapper there is nothing to cancel.
TEST(Foldable, AFoldEndsTheGesture) {
    const Fingers two = {kFinger, finger(4).at(10, 20)};
    Hinge phone;
    phone.turnsTo(90, 3);
    EXPECT_EQ(phone.feel(two), "2");
    phone.turnsTo(90, 1);
    EXPECT_EQ(phone.feel(two), "0" + kFolds + kFolds + "; cancelled");
    for (const int more : {1, 60}) {
        phone.turnsTo(90, more);
        EXPECT_EQ(phone.feel(two), "0" + kFolds);
    }
    EXPECT_EQ(phone.feel(kNone), "0");
    EXPECT_EQ(phone.feel(two), "2");
    phone.turnsTo(0, 4);
    EXPECT_EQ(phone.touchWithoutMapper(kFinger), kNone);
    EXPECT_EQ(phone.feel(two), "0" + kFolds);
    phone.lift();
    EXPECT_EQ(phone.feel(two), "0" + kFolds + kFolds + "; cancelled") << "it is folding already";
}

// Without an enabled sensor every touching frame says so and passes; a stop also forgets a cancelled gesture, and the
// fold that was known cancels it anew.
TEST(Foldable, OffInTheMiddleOfAGesture) {
    Hinge phone;
    phone.turnsTo(90, 9);
    phone.touch(kFinger);
    phone.exit();
    EXPECT_EQ(phone.log("ZqFoldableDeviceAftProcessor"),
              (Lines{"INFO ZqFoldableDeviceAftProcessor::stop", "INFO disableSensor", "INFO disableSensor success"}));
    for (int frame = 0; frame < 2; ++frame)
        EXPECT_EQ(phone.feel({kFinger}), "1; WARN mFoldableStateManager not enabled.");
    phone.start();
    EXPECT_EQ(phone.log("ZqFoldableDeviceAftProcessor"),
              (Lines{"INFO ZqFoldableDeviceAftProcessor::start", "INFO enableSensor", "INFO enableSensor success"}));
    EXPECT_EQ(phone.feel({kFinger}), "0" + kFolds + kFolds + "; cancelled");
    phone.exit();
    EXPECT_EQ(phone.feel(kNone), "0");
}

#else

// A phone that does not fold never asks for the angle, never touches a frame and never says a word about it.
TEST(Foldable, ABuildWithoutItDoesNothing) {
    Hinge phone;
    for (const bool starts : {true, false}) {
        starts ? phone.start() : phone.exit();
        EXPECT_TRUE(phone.calls().empty());
        EXPECT_EQ(phone.log(""), Lines{"INFO ZqAftSCStateManager: isSupport=0"});
        phone.turnsTo(90, 9);
        EXPECT_EQ(phone.feel({kFinger}), "1");
    }
}

#endif

}  // namespace

// How samples of the fold angle become a fold state, against the class.

#include <gtest/gtest.h>

#include "aft/foldable/ZqAftFoldableStateManager.h"
#include "platform/control/SensorService.h"
#include "tests/support/Log.h"

namespace android {
namespace {

constexpr int kSteady = 0, kChanging = 2;

/// A manager whose sensor is enabled.
struct FoldAngle : testing::Test {
    FoldAngle() {
        aftplatform::sensors::reset();
        aftplatform::sensors::offer({{3, 9}});
        aftplatform::sensors::setPresent(true);
        manager->enableSensor();
    }

    /// Brings an angle so many times. @return the fold state after the last
    int feed(int times, float angle) const {
        int state = -1;
        for (int i = 0; i < times; ++i) state = manager->stablizeAngle(angle);
        return state;
    }

    test::LogRecorder log;
    const sp<ZqAftFoldableStateManager> manager = new ZqAftFoldableStateManager();
};

// A hinge that has just been switched on may jump: thirty samples say nothing, the next one says all.
TEST_F(FoldAngle, ThirtySamplesAreWarmUp) {
    EXPECT_EQ(feed(29, 0), kSteady);
    EXPECT_EQ(feed(1, 500), kSteady);
    EXPECT_EQ(feed(1, 0), kChanging);
}

// The window follows a fold at its fourth sample and comes to rest with the averages: sooner or later, and gestures are
// lost, or the fold's own are not.
TEST_F(FoldAngle, AFoldFromZeroToNinety) {
    feed(30, 0);
    EXPECT_EQ(feed(20, 0), kSteady);
    EXPECT_EQ(feed(3, 90), kSteady);
    for (int sample = 4; sample <= 55; ++sample) EXPECT_EQ(feed(1, 90), kChanging) << sample;
    for (int sample = 56; sample <= 99; ++sample) EXPECT_EQ(feed(1, 90), kSteady) << sample;
}

// Averages exactly 10 apart are steady; and they are measured against 1000 from above, against -1000 from below.
TEST_F(FoldAngle, TheWidestSteadySpread) {
    struct Case {
        float before, sample;
        int state;
    };
    for (const Case& c : {Case{0, 300, kSteady}, Case{0, 300.1F, kChanging}, Case{0, -300, kSteady},
                          Case{0, -300.1F, kChanging}, Case{1010, 1010, kSteady}, Case{1011, 1011, kChanging},
                          Case{-1010, -1010, kSteady}, Case{-1011, -1011, kChanging}}) {
        manager->disableSensor();
        manager->enableSensor();
        EXPECT_EQ(feed(30, c.before), kSteady);
        EXPECT_EQ(feed(1, c.sample), c.state) << c.before << ", " << c.sample;
    }
}

// The sum is kept up by taking the old sample out first, and never made anew: every machine rounds alike.
TEST_F(FoldAngle, TheSumIsKeptUp) {
    constexpr float kHuge = 8589934592;  // 2^33: what is added to it up to 512 is lost
    feed(1, kHuge);
    feed(29, 0);
    EXPECT_EQ(feed(1, 306), kChanging) << "its average, 10.2, was lost in the sum";
    feed(29, 0);
    feed(1, kHuge);
    feed(1, 306);
    feed(30, 0);
    EXPECT_EQ(feed(60, 1011), kSteady) << "the lost 306 was found again: 1011 and not 1000.8";
}

// After a disabling all samples are forgotten, but the ring goes on at its place; only a new connection begins anew.
// What was known of the fold stays until the next event.
TEST_F(FoldAngle, WhatADisablingForgets) {
    const auto bring = [this](int times, float angle) {
        hardware::sensors::V1_0::Event event;
        event.u.data[2] = angle;
        for (int i = 0; i < times; ++i) manager->handleSensorEvent(event);
    };
    bring(35, 301);
    bring(1, 0);
    EXPECT_EQ(manager->getFoldState(), kChanging);
    for (const bool newConnection : {false, true}) {
        manager->disableSensor();
        if (newConnection) manager->deInit();
        EXPECT_EQ(manager->getFoldState(), newConnection ? kSteady : kChanging) << "as it was";
        manager->enableSensor();
        bring(1, 9);
        EXPECT_EQ(manager->getFoldState(), kSteady);
        feed(29, 0);
        // Beside the first place of the ring stands 10.3 beside its 9; on it, 10 beside zeros.
        EXPECT_EQ(feed(1, 300), newConnection ? kSteady : kChanging);
    }
    bring(34, 0);
    bring(9, 90);
    manager->deInit();
    EXPECT_EQ(manager->getFoldState(), kChanging);
    manager->enableSensor();
    feed(30, 0);
    EXPECT_EQ(feed(1, 0), kSteady) << "the sum was not forgotten";
}

}  // namespace
}  // namespace android

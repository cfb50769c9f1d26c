// How samples of the fold angle become a fold state, against the class.

#include <gtest/gtest.h>

#include <tuple>

#include "aft/foldable/ZqAftFoldableStateManager.h"
#include "platform/control/SensorService.h"
#include "tests/support/Log.h"

using namespace android;

namespace {

constexpr int kSteady = 0, kChanging = 2;

/// A manager whose sensor is enabled.
struct FoldAngle : testing::Test {
    FoldAngle() {
        aftplatform::sensors::offer({{3, 9}});
        aftplatform::sensors::setPresent(true);
        manager->enableSensor();
    }
    ~FoldAngle() override { aftplatform::sensors::reset(); }

    /// Brings an angle so many times. @return the fold state after the last
    int feed(int times, float angle) const {
        Event event;
        event.u.data[2] = angle;
        for (int i = 0; i < times; ++i) manager->handleSensorEvent(event);
        return manager->getFoldState();
    }

    test::LogRecorder log;
    const sp<ZqAftFoldableStateManager> manager = new ZqAftFoldableStateManager();
};

// A hinge that has just been switched on may jump: thirty samples say nothing, the next says all. A fold from 0 to 90
// shows at its fourth sample and comes to rest with the averages; sooner or later, and gestures are lost, or its own
// are not.
TEST_F(FoldAngle, AFold) {
    feed(29, 0);
    EXPECT_EQ(feed(1, 500), kSteady);
    EXPECT_EQ(feed(1, 0), kChanging);
    feed(100, 0);
    for (int sample = 1; sample < 100; ++sample)
        EXPECT_EQ(feed(1, 90), 4 <= sample && sample <= 55 ? kChanging : kSteady) << sample;
}

// Averages exactly 10 apart are steady; beyond 1000 and below -1000 they are measured against that.
TEST_F(FoldAngle, TheWidestSteadySpread) {
    using Case = std::tuple<float, float, int>;
    for (const auto& [before, sample, state] :
         {Case{0, 300, kSteady}, Case{0, 300.1, kChanging}, Case{0, -300, kSteady}, Case{0, -300.1, kChanging},
          Case{1010, 1010, kSteady}, Case{1011, 1011, kChanging}, Case{-1010, -1010, kSteady},
          Case{-1011, -1011, kChanging}}) {
        manager->disableSensor();
        manager->enableSensor();
        EXPECT_EQ(feed(30, before), kSteady);
        EXPECT_EQ(feed(1, sample), state) << before << ", " << sample;
    }
}

// The sum is kept up by taking the old sample out first, and never made anew: every machine rounds alike.
TEST_F(FoldAngle, TheSumIsKeptUp) {
    constexpr float kHuge = 8589934592.0F;  // 2^33: what is added to it up to 512 is lost
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
    feed(35, 301);
    for (const bool anew : {false, true}) {
        EXPECT_EQ(feed(1, 5000), kChanging);
        manager->disableSensor();
        if (anew) manager->deInit();
        EXPECT_EQ(manager->getFoldState(), kChanging);
        manager->enableSensor();
        EXPECT_EQ(feed(1, 9), kSteady);
        feed(29, 0);
        // On the first place of the ring it takes the 9 away: 10 beside zeros. On another: 10.3.
        EXPECT_EQ(feed(1, 300), anew ? kSteady : kChanging);
    }
    EXPECT_EQ(feed(1, 5000), kChanging);
    manager->deInit();
    EXPECT_EQ(feed(1, 5000), kSteady) << "the samples were not forgotten";
}

}  // namespace

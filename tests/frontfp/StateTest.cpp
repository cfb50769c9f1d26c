// The filter's state records and what no host can bring about: linked from the plug-in's own objects.

#include <android/log.h>
#include <gtest/gtest.h>

#include "aft/frontfp/AftAreaConfig.h"
#include "aft/frontfp/FingerPrintEventState.h"
#include "aft/frontfp/IdentifyFPState.h"
#include "aft/frontfp/NearbyFPPoints.h"
#include "aft/frontfp/ZqFrontFPAftProcessor.h"
#include "aft/host/PluginApi.h"
#include "refhost/play/HostDevice.h"
#include "tests/support/Allocations.h"
#include "tests/support/Finger.h"
#include "tests/support/Log.h"

using namespace android;

namespace {

using test::finger;
using test::frameOf;

constexpr int64_t kMs = 1'000'000;

// Whatever stands in the property, the filter runs only for a real area, and never crashes the input service.
TEST(AftAreaConfig, WhatCountsAsAnArea) {
    AftAreaConfig config;
    for (const char* area :
         {"400,2100,680,2340", "0,2100,680,2340", " 400, 2100, 680, 2340 mm", "200,150", "200,150,x"}) {
        EXPECT_TRUE(config.scan(area)) << area;
    }
    const std::string digits(91, '9');
    for (const char* none : {"-1,2100,680,2340", "400,0,680,2340", "680,2100,680,2340", "400,2340,680,2340", "200,0",
                             "0,150", "1,2,3", "200", "", "  ", "x", digits.c_str(), "\xff\x01%n%s"}) {
        EXPECT_FALSE(config.scan(none)) << none;
    }
}

// The smallest area is one point wide; no size that a property or a host can name makes an area out of nothing.
TEST(AftAreaConfig, WhereTheAreaLies) {
    AftAreaConfig config;
    AftArea area;
    config.scan("1,1");
    EXPECT_TRUE(config.areaOn(1080, 2340, area));
    EXPECT_EQ(area, (AftArea{540, 2339, 540, 2340}));
    config.scan("2147483647,2147483647");
    for (const int32_t width : {INT32_MIN, -1, 0, INT32_MAX}) {
        for (const int32_t height : {INT32_MIN, -1, 0})
            EXPECT_FALSE(config.areaOn(width, height, area)) << width << " x " << height;
    }
}

// A key whose mapper is gone, and a touch without a number, are nobody's: nothing half made may reach the host.
TEST(EventState, WithoutAMapperOrANumber) {
    FingerPrintEventState event;
    NotifyKeyArgs args{};
    Vector<void*> keys;
    event.mPendingKey.keyCode = 513;
    EXPECT_FALSE(event.InitNotifyKeyArgs(args, 1, 0));
    EXPECT_FALSE(event.handlePendingKey(10 * kMs, true, keys));
    EXPECT_TRUE(keys.isEmpty());
    IdentifyFPState identification{.mState = IdentifyFPState::kIdentifying};
    EXPECT_FALSE(identification.identifyingRecently(0, kMs));
    EXPECT_TRUE(identification.identifyingRecently(7, kMs));
}

/// A record of one finger.
RawPointerData::Pointer point(const test::Finger& one) { return frameOf({one}).pointers[0]; }

// A mark outlives its touch by 300 ms at most; a mark of the touch in progress does not age.
TEST(NearbyFPPoints, HowLongAMarkLasts) {
    test::LogRecorder log;
    NearbyFPPoints points;
    EXPECT_TRUE(points.markPoint(3, point(finger(4).at(1, 2)), true, 10'000 * kMs, "why"));
    EXPECT_FALSE(points.markPoint(3, point(finger(4).at(1, 2)), true, 10'000 * kMs, "again"));
    EXPECT_TRUE(points.touchRecently(10'299 * kMs));
    points.setTouchState(true, 3);
    EXPECT_TRUE(points.touchRecently(60'000 * kMs));
    points.setTouchState(true, 4);
    EXPECT_FALSE(points.touchRecently(60'300 * kMs));
    EXPECT_EQ(points.mMarkTime[4], 0);
    EXPECT_TRUE(points.mWideRangeIdBits.isEmpty());
    ASSERT_EQ(log.texts().size(), 4u);
    EXPECT_EQ(log.texts()[1], "Point(id=4) is nearby FP, marked 299ms ago in TouchSeq#3, curTouchSeq=0");
    EXPECT_EQ(log.texts().back(),
              "Clear nearby FP point(id=4), timeout=1, marked 300ms ago in TouchSeq#3, curTouchSeq=4");
}

// A finger's range is its own from where it was marked: another start lets the sensor's swipes through as touches.
TEST(NearbyFPPoints, WhereARangeBegins) {
    NearbyFPPoints points;
    const auto mark = [&](bool wide) { points.markPoint(1, point(finger(0)), wide, 0, ""); };
    const auto slidesTo = [&](int32_t x, int32_t y) {
        points.updatePointRange(point(finger(0).at(x, y)));
        return points.swipeOverEdge();
    };
    mark(false);
    EXPECT_TRUE(slidesTo(101, 79)) << "a range that nobody has emptied starts at the corner";
    mark(true);
    EXPECT_FALSE(points.swipeOverEdge());
    mark(false);
    EXPECT_TRUE(points.swipeOverEdge()) << "marking again takes the wide-range bit away";
    points.setTouchState(false, 1);
    EXPECT_FALSE(slidesTo(5, 5));
    mark(false);
    EXPECT_FALSE(points.swipeOverEdge()) << "an empty range";
    EXPECT_FALSE(slidesTo(0, 10) || slidesTo(100, 10));
    EXPECT_TRUE(slidesTo(INT32_MAX, 10));
}

/// Opens what tests of the filter have to reach.
struct Filter : ZqFrontFPAftProcessor {
    using ZqFrontFPAftProcessor::mTouchSeq;
    using ZqFrontFPAftProcessor::mTouchSeqDesc;
};

struct FilterTest : ::testing::Test {
    test::LogRecorder log;
    sp<Filter> filter = new Filter();
    refhost::Requests requests;
    refhost::HostDevice sensor{{.id = 5, .name = "fingerprint"}, requests};
    Vector<void*> keys;

    void touch(const test::Fingers& fingers, int64_t when = 60'000 * kMs) {
        RawPointerData data = frameOf(fingers);
        BitSet32 ids = data.touchingIdBits;
        filter->processRawTouches(sensor.mapper(), when, data, ids, keys);
    }
};

// Touch sequences are numbered for years; the number 0 means "none" and must never come up.
TEST_F(FilterTest, TheSequenceNumberSkipsZero) {
    filter->mTouchSeq = 0xFFFFFFFF;
    touch({finger(0)});
    EXPECT_STREQ(filter->mTouchSeqDesc.c_str(), "During TouchSeq#-1");
    touch({});
    EXPECT_STREQ(filter->mTouchSeqDesc.c_str(), "After TouchSeq#-1");
    EXPECT_EQ(filter->mTouchSeq, 1u);
}

// A frame must not wait for the allocator, which other threads of the input service hold for as long as they like.
TEST_F(FilterTest, AGestureAllocatesNothing) {
    aftplatform::setMinimumLogPriority(ANDROID_LOG_ERROR);
    filter->configureSurface(1080, 2340, 0);
    const test::Fingers landing = {finger(0).at(540, 2200)}, swipe = {finger(0).at(540, 2000)};
    size_t before = 0;
    for (int gesture = 0; gesture < 3; ++gesture) {
        if (gesture == 1) before = test::allocations();  // the first has given the texts their storage
        touch(landing);
        touch(swipe, 60'008 * kMs);
        touch(test::kNone);
    }
    EXPECT_GT(before, 0u);
    EXPECT_EQ(test::allocations(), before);
}

}  // namespace

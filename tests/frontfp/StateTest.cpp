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
#include "tests/support/Log.h"

namespace android {
namespace {

constexpr int64_t kMs = 1'000'000;

RawPointerData::Pointer point(uint32_t id, int32_t x, int32_t y) {
    RawPointerData::Pointer p{};
    p.id = id;
    p.x = x;
    p.y = y;
    return p;
}

// Whatever stands in the property, the filter runs only for a real area, and never crashes the input service.
TEST(AftAreaConfig, WhatCountsAsAnArea) {
    struct Case {
        std::string text;
        bool valid;
        int count;
    };
    for (const Case& c : {Case{"400,2100,680,2340", true, 4},
                          {"0,2100,680,2340", true, 4},
                          {"-1,2100,680,2340", false, 4},
                          {"400,0,680,2340", false, 4},
                          {"680,2100,680,2340", false, 4},
                          {"400,2340,680,2340", false, 4},
                          {" 400, 2100, 680, 2340 mm", true, 4},
                          {"200,150", true, 2},
                          {"200,0", false, 2},
                          {"0,150", false, 2},
                          {"200,150,x", true, 2},
                          {"1,2,3", false, 3},
                          {"200", false, 1},
                          {"", false, -1},
                          {"  ", false, -1},
                          {"x", false, 0},
                          {std::string(91, '9'), false, 1},
                          {"\xff\x01%n%s", false, 0}}) {
        AftAreaConfig config;
        EXPECT_EQ(config.scan(c.text.c_str()), c.valid) << c.text;
        EXPECT_EQ(config.valueCount, c.count) << c.text;
    }
}

// The smallest area is one point wide, and still an area.
TEST(AftAreaConfig, AnAreaOfOnePoint) {
    AftAreaConfig config;
    ASSERT_TRUE(config.scan("1,1"));
    AftArea area;
    EXPECT_TRUE(config.areaOn(1080, 2340, area));
    EXPECT_EQ(area, (AftArea{540, 2339, 540, 2340}));
}

// No size that a property or a host can name makes an area out of nothing.
TEST(AftAreaConfig, ExtremeSurfacesHoldNoArea) {
    for (const int32_t width : {INT32_MIN, -1, 0, INT32_MAX}) {
        for (const int32_t height : {INT32_MIN, -1, 0}) {
            AftAreaConfig config;
            config.scan("2147483647,2147483647");
            AftArea area;
            EXPECT_FALSE(config.areaOn(width, height, area)) << width << " x " << height;
        }
    }
}

/// A pending key of a device with sources 257.
struct PendingKey : ::testing::Test {
    refhost::Requests requests;
    refhost::HostDevice sensor{{.id = 5, .name = "fingerprint", .sources = 257}, requests};
    FingerPrintEventState state;
    Vector<void*> keys;
    test::LogRecorder log;

    bool hold(int32_t keyCode, int64_t when, uint32_t touchSeq = 9) {
        return state.delayDispatchKey(touchSeq, sensor.mapper(), when, keyCode, 0, 0, 0);
    }
};

// One key can wait at a time, for its own touch only; a second would be lost or sent twice.
TEST_F(PendingKey, OneAtATimeForItsOwnTouch) {
    state.mTouchDownTime = 10'000;
    state.mPendingKey.touchSeq = 9;
    EXPECT_FALSE(hold(515, 10'050 * kMs));
    EXPECT_FALSE(hold(513, 10'120 * kMs));
    EXPECT_TRUE(log.texts().empty()) << "neither refusal is told";
    EXPECT_FALSE(hold(513, 10'050 * kMs, 8));
    EXPECT_TRUE(hold(513, 10'050 * kMs));
    EXPECT_FALSE(hold(601, 10'051 * kMs));
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "delayDispatchKey, touchSeq#8 check pending key=513 mPendingKey.touchSeq=9, no need to "
                               "delay it",
                               "delayDispatchKey delay dispatch the key:513",
                               "delayDispatchKey, it already has an pending key, do not delay current key!"}));
    state.clearPendingKey();
    EXPECT_EQ(state.mPendingKey.touchSeq, 0u) << "no later key may wait for a touch that is settled";
}

// A key whose mapper is gone is not sent, and nothing half made reaches the host.
TEST_F(PendingKey, WithoutAMapperNothingIsSent) {
    NotifyKeyArgs args{};
    args.sequenceNum = 77;
    args.displayId = 78;
    EXPECT_FALSE(state.InitNotifyKeyArgs(args, 1, 0));
    state.mPendingKey.keyCode = 513;
    EXPECT_FALSE(state.handlePendingKey(10 * kMs, true, keys));
    state.mPendingKey.mapper = sensor.mapper();
    EXPECT_TRUE(state.InitNotifyKeyArgs(args, 1, 0));
    EXPECT_EQ(args.sequenceNum, 77u);
    EXPECT_EQ(args.displayId, 78);
    EXPECT_TRUE(keys.isEmpty());
}

// An identification belongs to the first touch after it, for 1700 ms; another touch is a finger of its own.
TEST(IdentifyFPState, WhoseItIsAndForHowLong) {
    test::LogRecorder log;
    IdentifyFPState state;
    state.mState = IdentifyFPState::kIdentifying;
    state.mStateTime = 10'000;
    EXPECT_FALSE(state.identifyingRecently(0, 10'900 * kMs));
    EXPECT_TRUE(state.identifyingRecently(7, 10'900 * kMs));
    EXPECT_FALSE(state.identifyingRecently(8, 10'900 * kMs));
    EXPECT_TRUE(state.identifyingRecently(7, 11'699 * kMs));
    EXPECT_FALSE(state.identifyingRecently(7, 11'700 * kMs));
    EXPECT_EQ(state.mState, IdentifyFPState::kIdle);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  "First finger touch down on TP in touchSeq#7 after starting indentify finger 900ms later, timeout=0",
                  "New finger down on TP in touchSeq#8 but identifying finger in touchSeq#7, disaptch TP normally",
                  "Identify finger timeout, start identify fingerprint 1700ms ago"}));
}

// A difference counts by its low 32 bits, and is told whenever there is one.
TEST(IdentifyFPState, TheTouchBeforeIt) {
    test::LogRecorder log;
    IdentifyFPState state;
    state.mState = IdentifyFPState::kIdentifying;
    state.mTouchDownTime = 1;
    for (const auto& [time, before] :
         {std::pair<int64_t, bool>{1, false}, {2, true}, {301, true}, {302, false}, {(int64_t{1} << 32) + 150, true}}) {
        state.mStateTime = time;
        EXPECT_EQ(state.touchBeforeIdentify(0), before) << time;
    }
    EXPECT_EQ(log.texts().size(), 4u);
    EXPECT_EQ(log.texts().back(), "identify finger 149ms after finger touched down");
}

// A mark outlives its touch by 300 ms at most; a mark of the touch in progress does not age.
TEST(NearbyFPPoints, HowLongAMarkLasts) {
    test::LogRecorder log;
    NearbyFPPoints points;
    points.invalidate(0);
    points.markPoint(3, point(4, 1, 2), true, 10'000 * kMs, "why");
    EXPECT_FALSE(points.markPoint(3, point(4, 1, 2), true, 10'000 * kMs, "again"));
    EXPECT_TRUE(points.touchRecently(10'299 * kMs));
    points.setTouchState(true, 3);
    points.invalidate(60'000 * kMs);
    EXPECT_EQ(points.mMarkTime[4], 60'000);
    points.setTouchState(true, 4);
    EXPECT_FALSE(points.touchRecently(60'300 * kMs));
    EXPECT_EQ(points.mMarkTime[4], 0);
    EXPECT_TRUE(points.mWideRangeIdBits.isEmpty());
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  "TouchSeq#3, mark point(id=4, x=1, y=2) nearby the FP, reason:why",
                  "Point(id=4) is nearby FP, marked 299ms ago in TouchSeq#3, curTouchSeq=0",
                  "During touchSeq#3, pointer is touching, update the nearby FP point(id=4) timestamp",
                  "Clear nearby FP point(id=4), timeout=1, marked 300ms ago in TouchSeq#3, curTouchSeq=4"}));
}

// What is a slide over the sensor: a wrong limit here lets the sensor's swipes through as touches, or eats real swipes.
TEST(NearbyFPPoints, WhatIsASlide) {
    struct Case {
        int32_t xRange, yRange;
        bool wide, slide;
    };
    for (const Case& c : {Case{100, 0, false, false}, Case{101, 79, false, true}, Case{101, 80, false, false},
                          Case{101, 0, true, false}, Case{INT32_MAX, 0, false, true}}) {
        NearbyFPPoints points;
        points.updatePointRange(point(0, 5, 5));  // unmarked: the range starts from nothing
        points.markPoint(1, point(0, 0, 0), c.wide, 0, "");
        EXPECT_FALSE(points.swipeOverEdge()) << "an empty range";
        points.updatePointRange(point(0, 0, 10));
        points.updatePointRange(point(0, c.xRange, 10 + c.yRange));
        EXPECT_EQ(points.swipeOverEdge(), c.slide) << c.xRange << " x " << c.yRange;
    }
    NearbyFPPoints fresh;
    fresh.markPoint(1, point(0, 101, 79), false, 0, "");
    fresh.updatePointRange(point(0, 101, 79));
    EXPECT_TRUE(fresh.swipeOverEdge()) << "a range that nobody has emptied starts at the corner";
    fresh.markPoint(1, point(0, 0, 0), true, 0, "");
    EXPECT_FALSE(fresh.swipeOverEdge());
    fresh.markPoint(1, point(0, 0, 0), false, 0, "");
    EXPECT_TRUE(fresh.swipeOverEdge()) << "marking again takes the wide-range bit away";
}

/// Opens what tests of the filter have to reach.
struct Filter : ZqFrontFPAftProcessor {
    using ZqFrontFPAftProcessor::mLastRawPointerData;
    using ZqFrontFPAftProcessor::mTouchSeq;
    using ZqFrontFPAftProcessor::mTouchSeqDesc;
};

struct FilterTest : ::testing::Test {
    test::LogRecorder log;
    sp<Filter> filter = new Filter();
    refhost::Requests requests;
    refhost::HostDevice sensor{{.id = 5, .name = "fingerprint"}, requests};
    Vector<void*> keys;

    /// A frame with this one record, which `visited` leads to.
    void frame(uint32_t visited, RawPointerData::Pointer record, int64_t when) {
        RawPointerData data{};
        data.pointerCount = 1;
        data.pointers[0] = record;
        data.touchingIdBits.markBit(visited);
        BitSet32 ids = data.touchingIdBits;
        filter->processRawTouches(sensor.mapper(), when, data, ids, keys);
    }
    void lift() {
        RawPointerData data{};
        BitSet32 ids{};
        filter->processRawTouches(nullptr, 60'000 * kMs, data, ids, keys);
    }
};

// Touch sequences are numbered for years; the number 0 means "none" and must never come up.
TEST_F(FilterTest, TheSequenceNumberSkipsZero) {
    filter->mTouchSeq = 0xFFFFFFFF;
    frame(0, point(0, 5, 5), 60'000 * kMs);
    EXPECT_STREQ(filter->mTouchSeqDesc.c_str(), "During TouchSeq#-1");
    lift();
    EXPECT_STREQ(filter->mTouchSeqDesc.c_str(), "After TouchSeq#-1");
    EXPECT_EQ(filter->mTouchSeq, 1u);
}

// With no memory for the last frame the filter goes on as if no finger had been there.
TEST_F(FilterTest, WithoutALastFrame) {
    filter->mLastRawPointerData.reset();
    filter->configureSurface(1080, 2340, 1);
    frame(0, point(0, 500, 500), 60'000 * kMs);
    EXPECT_EQ(filter->processKey(sensor.mapper(), 60'500 * kMs, 516, 0, true, 0, 0), 1);
    EXPECT_EQ(filter->processKey(sensor.mapper(), 60'500 * kMs, 501, 0, true, 0, 0), 0);
}

// A frame must not wait for the allocator, which other threads of the input service hold for as long as they like.
TEST_F(FilterTest, AGestureAllocatesNothing) {
    aftplatform::setMinimumLogPriority(ANDROID_LOG_ERROR);
    filter->configureSurface(1080, 2340, 0);
    size_t before = 0;
    for (int gesture = 0; gesture < 3; ++gesture) {
        if (gesture == 1) before = test::allocations();  // the first has given the texts their storage
        frame(0, point(0, 540, 2200), 60'000 * kMs);
        frame(0, point(0, 540, 2000), 60'008 * kMs);
        lift();
    }
    EXPECT_GT(before, 0u);
    EXPECT_EQ(test::allocations(), before);
}

// Frames beyond the record's bounds must not read or write outside of it: the sanitizers watch.
TEST_F(FilterTest, FramesBeyondTheRecord) {
    RawPointerData data{};
    data.pointerCount = 1000;
    data.pointers.fill(point(4'000'000'000, INT32_MIN, INT32_MAX));
    data.idToIndex.fill(16);
    data.idToIndex[3] = 2;
    for (int64_t when : {int64_t{60'000} * kMs, INT64_MAX, INT64_MIN}) {
        for (int32_t code : {516, 517, 513}) filter->processKey(sensor.mapper(), when, code, 0, true, 0, 0);
        data.touchingIdBits.value = 0xFFFFFFFF;
        BitSet32 ids = data.touchingIdBits;
        filter->processRawTouches(sensor.mapper(), when, data, ids, keys);
        filter->processRawTouchesForAbt(sensor.mapper(), when, data, ids);
    }
    for (void* key : keys) releaseNotifyKeyArgs(key);
}

}  // namespace
}  // namespace android

// What the filters do with what no trace can hold, against their classes.

#include <gtest/gtest.h>

#include "aft/notch/ZqNotchAftProcessor.h"
#include "aft/slidecover/ZqAftSCStateManager.h"
#include "aft/slidecover/ZqSCAftProcessor.h"
#include "platform/control/Properties.h"
#include "platform/control/SensorService.h"
#include "platform/control/VirtualClock.h"
#include "tests/support/Log.h"

namespace android {
namespace {

/// A host that takes no reports.
struct NoPolicy : InputReaderContext {
    InputReaderPolicyInterface* getPolicy() override { return nullptr; }
};

struct Panel : InputMapper {
    explicit Panel(InputReaderContext* context) : InputMapper(&device, context) {}
    uint32_t getSources() override { return 0; }
    void cancelTouch(int64_t when) override { cancelled.push_back(when); }

    InputDevice device;
    std::vector<int64_t> cancelled;
};

RawPointerData twoFingers() {
    RawPointerData frame{};
    for (uint32_t id = 0; id < 2; ++id) {
        frame.pointers[id].id = id;
        frame.pointers[id].y = 40;
        frame.touchingIdBits.markBit(id);
        frame.idToIndex[id] = id;
    }
    frame.pointerCount = 2;
    return frame;
}

BitSet32 only(uint32_t id) {
    BitSet32 ids{};
    ids.markBit(id);
    return ids;
}

// The host uses the other bits of that byte for itself, lists may have holes, and pointers that it does not hand in are
// its own business.
TEST(BeyondTraces, WhatTheNotchIsHandedIn) {
    aftplatform::properties::set("ro.config.zq_notch_size", "7,80,3,4");
    test::LogRecorder log;
    ZqNotchAftProcessor notch;
    Panel panel(nullptr);
    TouchAffineTransformation plain;
    RawPointerAxes axes;
    notch.configureSurface(&panel, 1, plain, axes, 1, 1, 0, 0);
    for (const auto& [flags, removed] : {std::pair{0xFE, true}, {0x81, false}}) {
        const sp<InputWindowHandle> window = new InputWindowHandle();
        window->frameRight = window->frameBottom = 99;
        window->visible = true;
        window->aftFlags = static_cast<uint8_t>(flags);
        notch.processInputWindow({nullptr, window});
        RawPointerData frame = twoFingers();
        BitSet32 ids = only(1);
        notch.processRawTouches(&panel, frame, ids);
        EXPECT_EQ(frame.pointerCount, removed ? 1u : 2u) << flags;
        EXPECT_EQ(frame.pointers[0].id, 0u) << "never handed in";
        EXPECT_EQ(ids.isEmpty(), removed);
    }
}

// The time of a change is when the phone heard of it, whatever the sensor's own clock says; the cancel bears the
// frame's; and a host that takes no reports gets none.
TEST(BeyondTraces, ASlideCoverWithItsOwnClock) {
    namespace sensors = aftplatform::sensors;
    sensors::reset();
    sensors::offer({{65557, 7}});
    sensors::setPresent(true);
    test::LogRecorder log;
    auto& manager = static_cast<ZqAftSCStateManager&>(*ZqAftSCStateInterface::getInstance());
    SCFitlterState state{.stateTime = 1, .state = 5};
    EXPECT_FALSE(manager.getSCFilterState(state));
    EXPECT_TRUE(state.stateTime == 1 && state.state == 5) << "answered while it was not enabled";
    manager.enableSCSensor();
    EXPECT_TRUE(manager.getSCFilterState(state));
    EXPECT_TRUE(state.stateTime == 0 && state.state == -1) << "knows something that nobody told it";

    const sp<ZqSCAftProcessor> filter = new ZqSCAftProcessor();
    NoPolicy host;
    Panel panel(&host);
    const auto touch = [&](int64_t when, RawPointerData frame) {
        BitSet32 ids = only(1);
        filter->processRawTouches(&panel, when, frame, ids);
        return frame.pointerCount;
    };
    touch(1'000'000, twoFingers());
    aftplatform::setVirtualTime(5'000'000);
    hardware::sensors::V1_0::Event event;
    event.timestamp = 77;
    event.u.data[0] = 1;
    manager.handleSensorEvent(event);
    EXPECT_TRUE(manager.getSCFilterState(state));
    EXPECT_TRUE(state.stateTime == 5'000'000 && state.state == 0);
    EXPECT_EQ(touch(6'000'000, twoFingers()), 1u) << "only the pointer that was handed in goes";
    EXPECT_EQ(panel.cancelled, std::vector<int64_t>{6'000'000});
    touch(7'000'000, {});
    EXPECT_EQ(log.texts().back(), "device->getPolicy() is NULL");
    aftplatform::useRealClock();
    sensors::reset();
}

}  // namespace
}  // namespace android

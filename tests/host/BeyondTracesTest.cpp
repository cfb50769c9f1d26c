// What the filters do with what no trace can hold, against their classes.

#include <gtest/gtest.h>

#include "aft/notch/ZqNotchAftProcessor.h"
#include "aft/slidecover/ZqAftSCStateManager.h"
#include "aft/slidecover/ZqSCAftProcessor.h"
#include "platform/control/Properties.h"
#include "platform/control/SensorService.h"
#include "platform/control/VirtualClock.h"
#include "tests/support/Log.h"

using namespace android;

namespace {

/// A panel of a host that takes no reports, and a frame of two fingers on it of which the host hands in the second.
struct BeyondTraces : testing::Test, InputMapper, InputReaderContext {
    BeyondTraces() : InputMapper(&device, this) {
        frame.pointerCount = 2;
        frame.pointers[1].id = frame.idToIndex[1] = 1;
        frame.touchingIdBits.markBit(0);
        frame.touchingIdBits.markBit(1);
        ids.markBit(1);
    }
    uint32_t getSources() override { return 0; }
    void cancelTouch(int64_t when) override { cancelled = when; }
    InputReaderPolicyInterface* getPolicy() override { return nullptr; }

    InputDevice device;
    RawPointerData frame{};
    BitSet32 ids{};
    int64_t cancelled = 0;
    test::LogRecorder log;
};

// The host uses the other bits of that byte for itself, its lists may have holes, and a pointer that it does not hand
// in is its own business. Nothing is held against a pointer of a device that is unknown, or upright.
TEST_F(BeyondTraces, OfTheNotch) {
    aftplatform::properties::set("ro.config.zq_notch_size", "7,80,3,4");
    ZqNotchAftProcessor notch;
    TouchAffineTransformation plain;
    RawPointerAxes axes;
    notch.configureSurface(this, 1, plain, axes, 1, 1, 0, 0);
    const sp<InputWindowHandle> window = new InputWindowHandle();
    window->visible = true;
    window->aftFlags = 0xFE;
    notch.processInputWindow({nullptr, window});
    EXPECT_FALSE(notch.pointInNoFilterAreas(0, frame.pointers[0]));
    notch.processRawTouches(this, 0, frame, ids);
    EXPECT_TRUE(frame.pointerCount == 1 && frame.touchingIdBits.hasBit(0) && ids.isEmpty());
    notch.configureSurface(this, 2, plain, axes, 1, 1, 0, 0);
    EXPECT_TRUE(notch.pointInNoFilterAreas(0, frame.pointers[0]) && notch.pointInNoFilterAreas(77, frame.pointers[0]));
}

// A change was when the phone heard of it, whatever the sensor's clock says; the cancel bears the frame's time; and a
// host that takes no reports gets none.
TEST_F(BeyondTraces, OfTheSlideCover) {
    aftplatform::sensors::offer({{65557, 7}});
    aftplatform::sensors::setPresent(true);
    aftplatform::setVirtualTime(5'000'000);
    auto& manager = static_cast<ZqAftSCStateManager&>(*ZqAftSCStateInterface::getInstance());
    SCFitlterState state{.stateTime = 1, .state = 5};
    EXPECT_TRUE(!manager.getSCFilterState(state) && state.stateTime == 1 && state.state == 5);
    manager.enableSCSensor();
    const sp<ZqSCAftProcessor> filter = new ZqSCAftProcessor();
    filter->processRawTouches(this, 1'000'000, frame, ids);
    Event event;
    event.timestamp = 77;
    event.u.data[0] = 1;
    manager.handleSensorEvent(event);
    EXPECT_EQ(log.texts().back(), "handleSensorEvent event.type=0 state=0, timestamp=77 ns, sensorHandle=0");
    EXPECT_TRUE(manager.getSCFilterState(state) && state.stateTime == 5'000'000 && state.state == 0);
    filter->processRawTouches(this, 6'000'000, frame, ids);
    EXPECT_EQ(cancelled, 6'000'000);
    EXPECT_TRUE(frame.pointerCount == 1 && frame.touchingIdBits.hasBit(0));
    frame.touchingIdBits.clear();
    filter->processRawTouches(this, 7'000'000, frame, ids);
    EXPECT_EQ(log.texts().back(), "device->getPolicy() is NULL");
}

}  // namespace

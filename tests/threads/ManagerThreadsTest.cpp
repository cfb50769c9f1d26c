// What a sensor's queue can do to its manager when an event is already on its way. Found by the thread sanitizer.

#include <gtest/gtest.h>

#include <thread>

#include "aft/foldable/ZqAftFoldableStateManager.h"
#include "platform/control/SensorService.h"
#include "tests/support/Log.h"

namespace test {
namespace {

// An angle that arrives while the sensor is being disabled meets the emptying of its window: neither is torn, and no
// sample lies beyond the window's end.
TEST(ManagerThreads, AnAngleMeetsTheEmptyingOfItsWindow) {
    const LogRecorder quiet;
    aftplatform::sensors::offer({{3, 9}});
    aftplatform::sensors::setPresent(true);
    const android::sp<android::ZqAftFoldableStateManager> manager = new android::ZqAftFoldableStateManager();
    std::thread angles([&] {
        for (int sample = 0; sample < 5000; ++sample) {
            android::Event event;
            event.u.data[2] = static_cast<float>(sample % 180);
            manager->handleSensorEvent(event);
        }
    });
    std::thread reader([&] {
        for (int frame = 0; frame < 5000; ++frame) ASSERT_EQ(manager->getFoldState() & ~2, 0);
    });
    for (int time = 0; time < 500; ++time) {
        manager->enableSensor();
        manager->disableSensor();
    }
    angles.join();
    reader.join();
    EXPECT_FALSE(manager->enabled());
    aftplatform::sensors::reset();
}

}  // namespace
}  // namespace test

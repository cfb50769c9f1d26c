// The host's threads and the platform's, all at once, through the exports. Whoever races here is found by the thread
// sanitizer; the tests themselves hold what must be true whatever the order.

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "platform/control/LogSink.h"
#include "platform/control/Properties.h"
#include "platform/control/SensorService.h"
#include "refhost/play/HostDevice.h"
#include "refhost/play/Plugin.h"

namespace test {
namespace {

namespace sensors = aftplatform::sensors;
using android::BitSet32;
using android::InputWindowHandle;
using android::RawPointerData;
using android::sp;

constexpr int32_t kCover = 7;
constexpr int32_t kFoldAngle = 9;
constexpr int kRounds = 1500;

/// A phone with all filters on and no thread of its own.
class Threads : public ::testing::Test {
  protected:
    Threads() {
        aftplatform::setLogSink([this](const aftplatform::LogLine& /*line*/) { ++mLines; });
        aftplatform::properties::set("ro.zqaft.tpfp.filter_area", "400,2100,680,2340");
        aftplatform::properties::set("ro.config.zq_notch_size", "0,80,0,0");
        aftplatform::properties::set("ro.config.zq_hall_prop", "1");
        sensors::setDelivery(sensors::Delivery::Direct);  // so that the platform's threads are the tests' own
        sensors::offer({{65557, kCover}, {3, kFoldAngle}});
        sensors::setPresent(true);
        mPlugin.emplace(ZQAFT_PLUGIN_UNDER_TEST);
    }
    ~Threads() override {
        sensors::reset();
        mPlugin.reset();
        aftplatform::setLogSink({});
    }

    void windows(bool marked) {
        sp<InputWindowHandle> bar = new InputWindowHandle();
        bar->name = "Window{1 u0 NavigationBar}";
        bar->layoutParamsType = InputWindowHandle::kTypeNavigationBar;
        bar->frameTop = 2214;
        bar->frameRight = 1080;
        bar->frameBottom = 2340;
        bar->visible = marked;
        sp<InputWindowHandle> game = new InputWindowHandle();
        game->token = &mToken;
        game->name = "com.android.incallui/com.android.incallui.InCallActivity";
        game->frameRight = marked ? 2340 : 100;
        game->frameBottom = 1080;
        game->visible = true;
        game->aftFlags = InputWindowHandle::kNotchArea;
        mPlugin->processInputWindow({bar, game}, game, !marked);
    }
    void surface(int32_t orientation) {
        android::TouchAffineTransformation calibration;
        android::RawPointerAxes axes;
        axes.x.maxValue = 1079;
        axes.y.maxValue = 2339;
        mPlugin->configureSurface(mPanel.mapper(), 1080, 2340, orientation, calibration, axes, 1, 1, 0, 0);
    }
    static void sense(int32_t handle, const std::vector<float>& values) {
        sensors::Event event;
        event.sensorHandle = handle;
        std::copy(values.begin(), values.end(), event.u.data.begin());
        sensors::deliver(event);
    }

    /// One frame with a finger in the notch band, one over the sensor and one elsewhere, or without any.
    void frame(int64_t when, bool fingers) {
        RawPointerData data{};
        const int32_t places[][2] = {{500, 20}, {540, 2200}, {100, 1000}};
        for (uint32_t id = 0; fingers && id < 3; ++id) {
            auto& pointer = data.pointers[id];
            pointer.id = id;
            pointer.x = places[id][0];
            pointer.y = places[id][1];
            if (id == 2 && when % 7 == 0) pointer.extraData = RawPointerData::Pointer::kAbnormal;
            data.idToIndex[id] = data.pointerCount++;
            data.touchingIdBits.markBit(id);
        }
        BitSet32 ids = data.touchingIdBits;
        mPlugin->processRawTouches(mPanel.mapper(), when, data, ids, mKeys);
        ASSERT_EQ(ids, data.touchingIdBits);
        ASSERT_EQ(ids.count(), data.pointerCount);
        for (uint32_t id : ids) ASSERT_EQ(data.pointers[data.idToIndex[id]].id, id);
        for (void* key : mKeys) mPlugin->releaseNotifyKeyArgs(key);
        mKeys.clear();
        mRequests.clear();
    }
    void key(int64_t when, int32_t code) {
        mPlugin->processKey(mSensor.mapper(), when, code, 0, true, 0, 0);
        mPlugin->processKey(mSensor.mapper(), when, code, 0, false, 0, 0);
    }

    /// Runs each of these `kRounds` times, all at the same time.
    static void atOnce(const std::vector<std::function<void(int)>>& jobs) {
        std::atomic<size_t> waiting = jobs.size();
        std::vector<std::thread> threads;
        for (const auto& job : jobs) {
            threads.emplace_back([&] {
                --waiting;
                while (waiting > 0) std::this_thread::yield();
                for (int round = 0; round < kRounds; ++round) job(round);
            });
        }
        for (std::thread& thread : threads) thread.join();
    }

    refhost::Requests mRequests;
    refhost::HostDevice mPanel{{.id = 3, .name = "touchpanel"}, mRequests};
    refhost::HostDevice mSensor{{.id = 5, .name = "fingerprint", .sources = 257}, mRequests};
    std::optional<refhost::Plugin> mPlugin;
    android::Vector<void*> mKeys;
    std::atomic<size_t> mLines = 0;
    char mToken = 0;
};

// Frames and keys from one thread, all else that a host and a platform do from others, two of each: nothing is torn,
// nobody waits for ever, and every frame comes back consistent.
TEST_F(Threads, OfTheHostAndOfThePlatformRunAtOnce) {
    const std::function<void(int)> show = [this](int round) { windows(round % 2 == 0); };
    const std::function<void(int)> turn = [this](int round) { surface(round % 4); };
    const std::function<void(int)> startAndExit = [this](int round) {
        round % 3 == 2 ? mPlugin->notifyInputExit() : mPlugin->notifyInputStart();
    };
    const std::function<void(int)> move = [](int round) {
        sense(kCover, {1, static_cast<float>(round % 3)});
        sense(kFoldAngle, {0, 0, static_cast<float>(round % 180)});
    };
    const std::function<void(int)> dieAndReturn = [](int round) {
        round % 2 == 0 ? sensors::die() : sensors::registers();
    };
    const std::function<void(int)> touch = [this](int round) {
        const int64_t when = (60'000 + 10 * int64_t{round}) * 1'000'000;
        if (round % 5 == 0) key(when, 513 + round % 7);
        frame(when, round % 9 != 8);
    };
    atOnce({touch, show, show, turn, turn, startAndExit, startAndExit, move, move});
    atOnce(
        {touch, show, turn, startAndExit, startAndExit, move, dieAndReturn, dieAndReturn});  // no fold angle after it
    frame(100'000'000'000, false);
    EXPECT_GT(mLines, 0U);
}

// While the service takes its time over a call, events still come in and frames still go through: no lock is held
// across the call that they wait for.
TEST_F(Threads, AnEventDoesNotWaitForACallIntoTheService) {
    surface(1);
    mPlugin->notifyInputStart();
    frame(60'000'000'000, true);
    std::atomic<size_t> handled = 0;
    sensors::setListener([&](const sensors::Reached& reached) {
        if (reached.call != sensors::Call::DisableSensor) return;
        const bool ofCover = reached.arguments[0] == kCover;
        std::thread([&] {
            const size_t before = mLines;
            sense(kCover, {1, 2});
            handled += mLines - before;
            for (int sample = 0; sample < 40; ++sample) sense(kFoldAngle, {0, 0, static_cast<float>(sample)});
            if (ofCover)
                frame(60'010'000'000, true);  // the fold angle's own check does wait, for its answer may change
        }).join();
    });
    mPlugin->notifyInputExit();
    EXPECT_EQ(handled, 1U) << "lines logged of the cover's change during the call";
}

}  // namespace
}  // namespace test

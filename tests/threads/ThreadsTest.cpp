// The host's threads and the platform's, all at once, through the exports; what they cannot bring about, against the
// class. Whoever races here is found by the thread sanitizer; the tests hold what must be true whatever the order.

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <functional>
#include <thread>
#include <vector>

#include "aft/foldable/ZqAftFoldableStateManager.h"
#include "aft/host/DecisionRecord.h"
#include "platform/control/LogSink.h"
#include "platform/control/Properties.h"
#include "platform/control/SensorService.h"
#include "refhost/play/HostDevice.h"
#include "refhost/play/Plugin.h"
#include "tests/support/Finger.h"

using namespace android;
using namespace test;

/// As an input service exports it.
std::atomic<const DecisionListener*> aft_decision_listener_1 = nullptr;

namespace {

namespace sensors = aftplatform::sensors;

constexpr int32_t kCover = 7;
constexpr int32_t kFoldAngle = 9;
constexpr int kRounds = 1500;

/// What a thread does in one round.
using Job = std::function<void(int)>;

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
        aft_decision_listener_1 = nullptr;
    }

    /// The host listens, or no longer does.
    void listen(bool on) { aft_decision_listener_1 = on ? &mListener : nullptr; }

    void windows(bool marked) {
        const sp<InputWindowHandle> bar = new InputWindowHandle(), game = new InputWindowHandle();
        bar->name = "Window{1 u0 NavigationBar}";
        bar->layoutParamsType = InputWindowHandle::kTypeNavigationBar;
        bar->visible = marked;
        game->token = &mToken;
        game->name = "com.android.incallui/com.android.incallui.InCallActivity";
        game->frameRight = marked ? 2340 : 100;
        game->frameBottom = 1080;
        game->visible = true;
        game->aftFlags = InputWindowHandle::kNotchArea;
        mPlugin->processInputWindow({bar, game}, game, !marked);
    }
    void surface(int32_t orientation) {
        TouchAffineTransformation calibration;
        RawPointerAxes axes;
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
    void frame(int64_t when, bool touching) {
        const Finger elsewhere = finger(2).at(100, 1000).flagged(when % 7 == 0 ? kAbnormal : 0);
        const Fingers fingers = {finger(0).at(500, 20), finger(1).at(540, 2200), elsewhere};
        RawPointerData data = frameOf(touching ? fingers : kNone);
        BitSet32 ids = data.touchingIdBits;
        mPlugin->processRawTouches(mPanel.mapper(), when, data, ids, mKeys);
        fingersIn(data);
        ASSERT_EQ(ids, data.touchingIdBits);
        for (void* key : mKeys) mPlugin->releaseNotifyKeyArgs(key);
        mKeys.clear();
        mRequests.clear();
    }

    /// Runs each of these `kRounds` times, all at the same time.
    static void atOnce(const std::vector<Job>& jobs) {
        std::barrier<> start(static_cast<std::ptrdiff_t>(jobs.size()));
        std::vector<std::thread> threads;
        for (const Job& job : jobs) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                for (int round = 0; round < kRounds; ++round) job(round);
            });
        }
        for (std::thread& thread : threads) thread.join();
    }

    refhost::Requests mRequests;
    refhost::HostDevice mPanel{{.id = 3, .name = "touchpanel"}, mRequests};
    refhost::HostDevice mSensor{{.id = 5, .name = "fingerprint", .sources = 257}, mRequests};
    std::optional<refhost::Plugin> mPlugin;
    Vector<void*> mKeys;
    std::atomic<size_t> mLines = 0;
    std::atomic<size_t> mRecorded = 0;  ///< measurements that hold
    const DecisionListener mListener{[](const DecisionRecord& record, void* self) {
                                         for (uint32_t i = 0; i < record.measurementCount; ++i) {
                                             const bool holds = record.measurements[i].holds;
                                             static_cast<Threads*>(self)->mRecorded += holds;
                                         }
                                     },
                                     this};
    char mToken = 0;
};

// Frames and keys from one thread, all else that a host and a platform do from others, two of each: nothing is torn,
// nobody waits for ever, and every frame comes back consistent.
TEST_F(Threads, OfTheHostAndOfThePlatformRunAtOnce) {
    const Job show = [this](int round) { windows(round % 2 == 0); };
    const Job turn = [this](int round) { surface(round % 4); };
    const Job startAndExit = [this](int round) {
        round % 3 == 2 ? mPlugin->notifyInputExit() : mPlugin->notifyInputStart();
    };
    const Job move = [](int round) {
        sense(kCover, {1, static_cast<float>(round % 3)});
        sense(kFoldAngle, {0, 0, static_cast<float>(round % 180)});
    };
    const Job dieAndReturn = [](int round) { round % 2 == 0 ? sensors::die() : sensors::registers(); };
    const Job touch = [this](int round) {
        const int64_t when = (60'000 + 10 * int64_t{round}) * 1'000'000;
        if (round % 5 < 2) mPlugin->processKey(mSensor.mapper(), when, 513 + round / 5 % 7, 0, round % 5 == 0, 0, 0);
        frame(when, round % 9 != 8);
    };
    const Job listenAndNot = [this](int round) { listen(round % 2 == 0); };
    atOnce({touch, show, show, turn, turn, startAndExit, startAndExit, move, move, listenAndNot});
    listen(true);
    // No fold angle comes after this.
    atOnce({touch, show, turn, startAndExit, startAndExit, move, dieAndReturn, dieAndReturn});
    frame(100'000'000'000, false);
    EXPECT_GT(mLines, 0U);
    EXPECT_GT(mRecorded, 0U);
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
            // The fold angle's own check does wait, for its answer may change.
            if (ofCover) frame(60'010'000'000, true);
        }).join();
    });
    mPlugin->notifyInputExit();
    EXPECT_EQ(handled, 1U) << "lines logged of the cover's change during the call";
}

// An angle that arrives while the sensor is being disabled meets the emptying of its window: neither is torn, and no
// sample lies beyond the window's end.
TEST_F(Threads, AnAngleMeetsTheEmptyingOfItsWindow) {
    const sp<ZqAftFoldableStateManager> manager = new ZqAftFoldableStateManager();
    const Job angle = [&](int round) {
        Event event;
        event.u.data[2] = static_cast<float>(round % 180);
        manager->handleSensorEvent(event);
    };
    const Job onAndOff = [&](int /*round*/) { manager->enableSensor(), manager->disableSensor(); };
    atOnce({angle, onAndOff, [&](int /*round*/) { ASSERT_EQ(manager->getFoldState() & ~2, 0); }});
    EXPECT_FALSE(manager->enabled());
}

}  // namespace

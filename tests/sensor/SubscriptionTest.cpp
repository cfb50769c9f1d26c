// What passes between the two state managers and the sensor service, line by line and call by call, against the
// classes.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "aft/foldable/ZqAftFoldableStateManager.h"
#include "aft/slidecover/ZqAftSCStateManager.h"
#include "platform/control/LogSink.h"
#include "refhost/trace/SensorNames.h"

namespace android {
namespace {

namespace sensors = aftplatform::sensors;
using sensors::Call;
using sensors::Fault;
using Story = std::vector<std::string>;

/// A log line ("W text") or a call ("-> name arguments"): of the slide cover's manager, and of the fold angle's.
struct Line {
    Line(const char* both) : cover(both), fold(both) {}
    Line(std::string ofCover, std::string ofFold) : cover(std::move(ofCover)), fold(std::move(ofFold)) {}
    bool operator==(const Line&) const = default;

    std::string cover;
    std::string fold;
};
using Lines = std::vector<Line>;

Lines operator+(Lines first, const Lines& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

const Line kEnable{"I enableSCSensor", "I enableSensor"};
const Line kNotConnected{"W enableSCSensor() mInitCheck is false", "W enableSensor() mInitCheck is false"};
const Line kNoQueue{"W enableSCSensor() mSensorManager/mSensorEventQueue is NULL",
                    "W enableSensor() mSensorManager/mSensorEventQueue is nullptr"};
const Line kLookUp{"-> getDefaultSensor 65557", "-> getDefaultSensor 3"};
const Line kAsk{"-> enableSensor 7 0 0", "-> enableSensor 9 0 0"};
const Line kEnabled{"I enableSCSensor success", "I enableSensor success"};
const Line kDisable{"I disableSCSensor", "I disableSensor"};
const char* const kLink = "-> linkToDeath 0";
const char* const kMakeQueue = "-> createEventQueue";
const char* const kDisabled = "I disableSensor success";

/// One of the managers, called by what it does, and a sensor service that has both sensors.
class Subscription : public testing::TestWithParam<bool> {
  protected:
    Subscription() {
        sensors::reset();
        sensors::setDelivery(sensors::Delivery::Direct);
        sensors::offer({{65557, 7}, {3, 9}});
        sensors::setPresent(true);
        sensors::setListener([this](const sensors::Reached& reached) {
            mStory.push_back("-> " + std::string(nameOf(refhost::kServiceCalls, reached.call)));
            for (const int64_t argument : reached.arguments) mStory.back() += " " + std::to_string(argument);
        });
        aftplatform::setLogSink([this](const aftplatform::LogLine& line) {
            EXPECT_EQ(line.tag, folds() ? "ZqFoldableDeviceAftProcessor" : "ZqAftSCStateManager");
            mStory.push_back({aftplatform::priorityName(line.priority)[0], ' '});
            mStory.back() += line.text;
        });
    }
    ~Subscription() override {
        mCover = nullptr;
        mFold = nullptr;
        sensors::reset();
        aftplatform::setLogSink({});
    }

    static bool folds() { return GetParam(); }
    void make() {
        if (folds()) {
            mFold = new ZqAftFoldableStateManager();
        } else {
            mCover = new ZqAftSCStateManager();
        }
    }
    void enable() { folds() ? mFold->enableSensor() : mCover->enableSCSensor(); }
    void disable() { folds() ? mFold->disableSensor() : mCover->disableSCSensor(); }
    bool enabled() { return folds() ? mFold->enabled() : mCover->enabled(); }
    bool connected() { return folds() ? mFold->initCheck() : mCover->initCheck(); }

    /// What has happened since this was last asked.
    Story told() { return std::exchange(mStory, {}); }
    static Story as(const Lines& lines) {
        Story story;
        for (const Line& line : lines) story.push_back(folds() ? line.fold : line.cover);
        return story;
    }

    /// Connects, as each does it, and enables.
    void expectToEnable(const Lines& connecting, const Lines& enabling) {
        const bool connects = !connected();
        if (folds()) {
            enable();
            const Lines entry = connects ? Lines{kEnable, "E ZqAftFoldableStateManager init"} : Lines{kEnable};
            EXPECT_EQ(told(), as(entry + connecting + enabling));
        } else {
            EXPECT_EQ(told(), as(connecting));
            enable();
            EXPECT_EQ(told(), as(Lines{kEnable} + enabling));
        }
    }

    sp<ZqAftSCStateManager> mCover;
    sp<ZqAftFoldableStateManager> mFold;

  private:
    Story mStory;
};

INSTANTIATE_TEST_SUITE_P(Of, Subscription, testing::Bool(),
                         [](const auto& user) { return user.param ? "FoldAngle" : "SlideCover"; });

// Each failure is told in its own words and stops where it happened; once mended, what had been reached is not asked
// again. A step too many blocks the input service, a step too few leaves the sensor dead.
TEST_P(Subscription, EveryCallThatFails) {
    struct Case {
        Call call;
        Fault fault;
        Lines connecting, enabling;
        Lines connectingAgain, enablingAgain;
    };
    const Lines connect = {kLink, kMakeQueue}, all = {kLookUp, kAsk, kEnabled};
    for (const Case& c :
         {Case{Call::GetService, Fault::Transport, {"E fail to get SensorManager"}, {kNotConnected}, connect, all},
          Case{Call::LinkToDeath,
               Fault::Transport,
               {"E Transaction error in linking to SensorManager death"},
               {kNotConnected},
               {kMakeQueue},
               all},
          Case{Call::LinkToDeath, Fault::Result, connect, all, {}, {}},
          Case{Call::CreateEventQueue,
               Fault::Transport,
               {kLink, "I createEventQueue hidl transport error"},
               {kNotConnected},
               {kMakeQueue},
               all},
          Case{Call::CreateEventQueue, Fault::Result, connect, all, {}, {}},
          Case{Call::CreateEventQueue, Fault::NoQueue, connect, {kNoQueue}, {}, {kNoQueue}},
          Case{Call::GetDefaultSensor,
               Fault::Transport,
               connect,
               {{"E getDefaultSensor(type=65557) Hidl transport error",
                 "E getDefaultSensor(type=3) Hidl transport error"}},
               {},
               all},
          Case{
              Call::GetDefaultSensor,
              Fault::Result,
              connect,
              {kLookUp, {"I enableSCSensor getDefaultSensor res not ok", "I enableSensor getDefaultSensor res not ok"}},
              {},
              all},
          Case{Call::EnableSensor,
               Fault::Transport,
               connect,
               {kLookUp, {"I enableSensor 7 Hidl transport error", "I enableSensor 9 Hidl transport error"}},
               {},
               all},
          Case{Call::EnableSensor,
               Fault::Result,
               connect,
               {kLookUp, kAsk, "I sensorEventQueue enableSensor fail"},
               {},
               all}}) {
        SCOPED_TRACE(nameOf(refhost::kServiceCalls, c.call));
        sensors::setFaults({{c.call, c.fault}});
        make();
        expectToEnable(c.connecting, c.enabling);
        EXPECT_EQ(enabled(), c.enabling == all);
        sensors::setFaults({});
        if (!folds()) mCover->init();
        expectToEnable(c.connectingAgain, c.enablingAgain);
        EXPECT_EQ(enabled(), c.enablingAgain != Lines{kNoQueue});
        EXPECT_TRUE(connected());
    }
}

// A sensor that the service would not give up counts as disabled, one that it was never asked about does not; the
// handle is that of the enabling. Otherwise it runs on unseen, or is never enabled again.
TEST_P(Subscription, Disabling) {
    const auto off = [](int connected) {
        const std::string flags = "mInitCheck=" + std::to_string(connected);
        return Line("W disableSCSensor() mInitCheck=1, mSCSensorEnabled=0",
                    "W disableSensor() " + flags + ", mSensorEnabled=0");
    };
    make();
    told();
    disable();
    EXPECT_EQ(told(), as({kDisable, off(0)}));
    enable();
    told();
    enable();
    EXPECT_EQ(told(), as({kEnable})) << "enabled twice";
    sensors::offer({{65557, 17}, {3, 19}});
    sensors::setFaults({{Call::DisableSensor, Fault::Transport}});
    disable();
    EXPECT_EQ(told(), as({kDisable, "E disable Sensor Hidl transport error"}));
    EXPECT_TRUE(enabled());
    sensors::setFaults({{Call::DisableSensor, Fault::Result}});
    disable();
    EXPECT_EQ(told(), as({kDisable,
                          {"-> disableSensor 7", "-> disableSensor 9"},
                          {"E disableSensor fail:7", "E disableSensor fail:9"},
                          kDisabled}));
    EXPECT_FALSE(enabled());
    disable();
    EXPECT_EQ(told(), as({kDisable, off(1)}));
    sensors::setFaults({});
    enable();
    EXPECT_EQ(told(), as({kEnable, kLookUp, {"-> enableSensor 17 0 0", "-> enableSensor 19 0 0"}, kEnabled}));
    disable();
    EXPECT_EQ(told(), as({kDisable, {"-> disableSensor 17", "-> disableSensor 19"}, kDisabled}));
    folds() ? mFold->deInit() : mCover->deInit();
    EXPECT_EQ(told(), Story{});
    EXPECT_FALSE(connected());
}

// The slide cover's manager lets a dead service go and comes back with it; the fold angle's goes on as if nothing had
// happened.
TEST_P(Subscription, TheServiceDiesAndReturns) {
    make();
    enable();
    told();
    sensors::registers();
    EXPECT_EQ(told(), folds() ? Story{} : Story{"I enableSCSensor"}) << "announced although it never went";
    sensors::die();
    EXPECT_EQ(told(), folds() ? Story{"I ZqAftFoldableStateManager serviceDied!"} : Story{});
    EXPECT_EQ(enabled(), folds());
    EXPECT_EQ(connected(), folds());
    enable();
    EXPECT_EQ(told(), folds() ? as({kEnable}) : as({kEnable, kNotConnected}));
    disable();
    EXPECT_EQ(told(),
              as({kDisable,
                  {"W disableSCSensor() mInitCheck=0, mSCSensorEnabled=0", "E disable Sensor Hidl transport error"}}));
    sensors::setFaults({{Call::GetService, Fault::Transport}});
    sensors::registers();
    EXPECT_EQ(told(), folds() ? Story{} : as({"E fail to get SensorManager", kEnable, kNotConnected}));
    sensors::setFaults({});
    sensors::registers();
    EXPECT_EQ(told(), folds() ? Story{} : as({kLink, kMakeQueue, kEnable, kLookUp, kAsk, kEnabled}));
    EXPECT_TRUE(enabled());
}

// A manager that goes away says nothing to the service; what the platform still holds of it finds nobody, and nothing
// is called that is gone.
TEST_P(Subscription, TheManagerGoesFirst) {
    make();
    enable();
    sensors::die();
    told();
    mCover = nullptr;
    mFold = nullptr;
    EXPECT_EQ(told(), Story{});
    sensors::registers();
    EXPECT_EQ(told(), folds() ? Story{} : Story{"W mSCFilter is NULL"});
    if (!folds()) {
        const sp<hidl_death_recipient> recipient = new ZqAftSCStateManager::SensorDeathRecipient(nullptr);
        recipient->serviceDied(0, nullptr);
        EXPECT_EQ(told(), Story{"W mSCFilter is NULL"});
    }
    const sp<IEventQueueCallback> callback = folds() ? sp<IEventQueueCallback>(new ZqAftFoldableSensorEventCallback({}))
                                                     : new ZqAftSCSensorEventCallback({});
    EXPECT_TRUE(callback->onEvent({}).isOk());
    EXPECT_EQ(told(), Story{});
}

}  // namespace
}  // namespace android

// What passes between the two state managers and the sensor service, line by line and call by call, against the
// classes.

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <tuple>
#include <utility>

#include "aft/foldable/ZqAftFoldableStateManager.h"
#include "aft/slidecover/ZqAftSCStateManager.h"
#include "platform/control/LogSink.h"
#include "refhost/trace/SensorNames.h"

using namespace android;

namespace {

namespace sensors = aftplatform::sensors;
using sensors::Call;
using sensors::Fault;

/// One of the managers, called by what it does, and a sensor service that has both sensors. What happens is a text of
/// log lines ("W text; ") and calls ("-> name arguments; ").
class Subscription : public testing::TestWithParam<bool> {
  protected:
    Subscription() {
        sensors::reset();
        sensors::setDelivery(sensors::Delivery::Direct);
        sensors::offer({{65557, 7}, {3, 9}});
        sensors::setPresent(true);
        sensors::setListener([this](const sensors::Reached& reached) {
            mStory.append("-> ").append(nameOf(refhost::kServiceCalls, reached.call));
            for (const int64_t argument : reached.arguments) mStory += " " + std::to_string(argument);
            mStory += "; ";
        });
        aftplatform::setLogSink([this](const aftplatform::LogLine& line) {
            EXPECT_EQ(line.tag, as("{ZqAftSCStateManager|ZqFoldableDeviceAftProcessor}"));
            mStory += aftplatform::priorityName(line.priority)[0];
            mStory.append(" ").append(line.text).append("; ");
        });
    }
    ~Subscription() override {
        cover = nullptr;
        fold = nullptr;
        sensors::reset();
        aftplatform::setLogSink({});
    }

    static bool folds() { return GetParam(); }
    void make() {
        cover = folds() ? nullptr : new ZqAftSCStateManager();
        fold = folds() ? new ZqAftFoldableStateManager() : nullptr;
    }
    /// What has happened since this was last asked.
    std::string told() { return std::exchange(mStory, {}); }
    std::string enabling() { return folds() ? fold->enableSensor() : cover->enableSCSensor(), told(); }
    std::string disabling() { return folds() ? fold->disableSensor() : cover->disableSCSensor(), told(); }
    /// The text for this manager of one like "I enable{SC|}Sensor; ": the slide cover's word, the fold angle's.
    static std::string as(const std::string& text) {
        return std::regex_replace(text, std::regex(R"(\{(.*?)\|(.*?)\})"), folds() ? "$2" : "$1");
    }

    sp<ZqAftSCStateManager> cover;
    sp<ZqAftFoldableStateManager> fold;

  private:
    std::string mStory;
};

INSTANTIATE_TEST_SUITE_P(Of, Subscription, testing::Bool(),
                         [](const auto& user) { return user.param ? "FoldAngle" : "SlideCover"; });

const std::string kConnect = "-> linkToDeath 0; -> createEventQueue; ";
const std::string kEnable = "I enable{SC|}Sensor; ", kDisable = "I disable{SC|}Sensor; ";
const std::string kNotConnected = "W enable{SC|}Sensor() mInitCheck is false; ";
const std::string kLookUp = "-> getDefaultSensor {65557|3}; ";
const std::string kAll = kLookUp + "-> enableSensor {7|9} 0 0; I enable{SC|}Sensor success; ";

// Each failure is told in its own words and stops where it happened; once mended, what had been reached is not asked
// again. A step too many blocks the input service, a step too few leaves the sensor dead.
TEST_P(Subscription, EveryCallThatFails) {
    const std::string oneQueue = "-> createEventQueue; ";
    const std::string noQueue = "W enable{SC|}Sensor() mSensorManager/mSensorEventQueue is {NULL|nullptr}; ";
    const std::string linkLost = "E Transaction error in linking to SensorManager death; ";
    const std::string queueLost = "-> linkToDeath 0; I createEventQueue hidl transport error; ";
    const std::string notAsked = "E getDefaultSensor(type={65557|3}) Hidl transport error; ";
    const std::string noSensor = kLookUp + "I enable{SC|}Sensor getDefaultSensor res not ok; ";
    const std::string lost = kLookUp + "I enableSensor {7|9} Hidl transport error; ";
    const std::string refused = kLookUp + "-> enableSensor {7|9} 0 0; I sensorEventQueue enableSensor fail; ";
    // The slide cover's connects by itself, the fold angle's with the enabling, which says so where it has to.
    const auto starting = [](const std::string& connects, const std::string& enables) {
        const std::string entry = connects.empty() ? "" : "E ZqAftFoldableStateManager init; ";
        return as(folds() ? kEnable + entry + connects + enables : connects + kEnable + enables);
    };
    using Case = std::tuple<Call, Fault, std::string, std::string, std::string, std::string>;
    for (const auto& [call, fault, connects, enables, connectsAgain, enablesAgain] :
         {Case{Call::GetService, Fault::Transport, "E fail to get SensorManager; ", kNotConnected, kConnect, kAll},
          Case{Call::LinkToDeath, Fault::Transport, linkLost, kNotConnected, oneQueue, kAll},
          Case{Call::LinkToDeath, Fault::Result, kConnect, kAll, "", ""},
          Case{Call::CreateEventQueue, Fault::Transport, queueLost, kNotConnected, oneQueue, kAll},
          Case{Call::CreateEventQueue, Fault::Result, kConnect, kAll, "", ""},
          Case{Call::CreateEventQueue, Fault::NoQueue, kConnect, noQueue, "", noQueue},
          Case{Call::GetDefaultSensor, Fault::Transport, kConnect, notAsked, "", kAll},
          Case{Call::GetDefaultSensor, Fault::Result, kConnect, noSensor, "", kAll},
          Case{Call::EnableSensor, Fault::Transport, kConnect, lost, "", kAll},
          Case{Call::EnableSensor, Fault::Result, kConnect, refused, "", kAll}}) {
        SCOPED_TRACE(connects + enables);
        sensors::setFaults({{call, fault}});
        make();
        EXPECT_EQ(enabling(), starting(connects, enables));
        sensors::setFaults({});
        if (!folds()) cover->init();
        EXPECT_EQ(enabling(), starting(connectsAgain, enablesAgain));
    }
}

// A sensor that the service would not give up counts as disabled, one that it was never asked about does not; the
// handle is that of the enabling. Otherwise it runs on unseen, or is never enabled again.
TEST_P(Subscription, Disabling) {
    make();
    EXPECT_EQ(disabling(), as("{" + kConnect + "|}" + kDisable +
                              "W disable{SC|}Sensor() mInitCheck={1|0}, m{SC|}SensorEnabled=0; "));
    enabling();
    EXPECT_EQ(enabling(), as(kEnable));
    sensors::offer({{65557, 17}, {3, 19}});
    sensors::setFaults({{Call::DisableSensor, Fault::Transport}});
    EXPECT_EQ(disabling(), as(kDisable + "E disable Sensor Hidl transport error; "));
    sensors::setFaults({{Call::DisableSensor, Fault::Result}});
    EXPECT_EQ(disabling(),
              as(kDisable + "-> disableSensor {7|9}; E disableSensor fail:{7|9}; I disableSensor success; "));
    EXPECT_EQ(disabling(), as(kDisable + "W disable{SC|}Sensor() mInitCheck=1, m{SC|}SensorEnabled=0; "));
    sensors::setFaults({});
    EXPECT_EQ(enabling(), as(kEnable + kLookUp + "-> enableSensor {17|19} 0 0; I enable{SC|}Sensor success; "));
    EXPECT_EQ(disabling(), as(kDisable + "-> disableSensor {17|19}; I disableSensor success; "));
    EXPECT_TRUE(folds() ? fold->initLocked() : cover->init());
    EXPECT_EQ(told(), as("{|E ZqAftFoldableStateManager init; }"));
    folds() ? fold->deInit() : cover->deInit();
    EXPECT_EQ(disabling(), as(kDisable + "W disable{SC|}Sensor() mInitCheck=0, m{SC|}SensorEnabled=0; "));
    sensors::Event event;
    event.sensorHandle = 7;  // still enabled there, as that disabling was refused
    event.u.data = {1, 2};
    sensors::deliver(event);
    sensors::die();
    EXPECT_EQ(told(), "") << "called the service, kept its queue, or was still linked to it";
}

// The slide cover's manager lets a dead service go and comes back with it; the fold angle's goes on as if nothing had
// happened. A manager that has gone says nothing, and what the platform still holds of it finds nobody.
TEST_P(Subscription, TheServiceDiesAndReturns) {
    make();
    enabling();
    sensors::registers();
    EXPECT_EQ(told(), as("{I enableSCSensor; |}")) << "announced although it never went";
    sensors::die();
    EXPECT_EQ(told(), as("{|I ZqAftFoldableStateManager serviceDied!; }"));
    EXPECT_EQ(enabling(), as(kEnable + (folds() ? "" : kNotConnected)));
    EXPECT_EQ(disabling(), as(kDisable + "{W disableSCSensor() mInitCheck=0, mSCSensorEnabled=0|"
                                         "E disable Sensor Hidl transport error}; "));
    sensors::setFaults({{Call::GetService, Fault::Transport}});
    sensors::registers();
    EXPECT_EQ(told(), folds() ? "" : as("E fail to get SensorManager; " + kEnable + kNotConnected));
    sensors::setFaults({});
    sensors::registers();
    EXPECT_EQ(told(), folds() ? "" : as(kConnect + kEnable + kAll));
    sensors::die();
    told();
    cover = nullptr;
    fold = nullptr;
    EXPECT_EQ(told(), "");
    sensors::registers();
    EXPECT_EQ(told(), as("{W mSCFilter is NULL; |}"));
    const sp<hidl_death_recipient> left = new ZqAftSCStateManager::SensorDeathRecipient(nullptr);
    if (!folds()) left->serviceDied(0, nullptr);
    EXPECT_EQ(told(), as("{W mSCFilter is NULL; |}"));
    EXPECT_TRUE(sp<IEventQueueCallback>(new ZqAftSCSensorEventCallback(nullptr))->onEvent({}).isOk());
    EXPECT_TRUE(sp<IEventQueueCallback>(new ZqAftFoldableSensorEventCallback(nullptr))->onEvent({}).isOk());
}

}  // namespace

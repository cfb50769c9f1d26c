// What recording costs where it happens, through the entry points.

#include <gtest/gtest.h>

#include "aft/host/DecisionRecord.h"
#include "aft/host/PluginApi.h"
#include "platform/control/LogSink.h"
#include "platform/control/Properties.h"
#include "platform/include/android/log.h"
#include "refhost/play/HostDevice.h"
#include "tests/support/Allocations.h"
#include "tests/support/Finger.h"

using namespace android;
using namespace test;

/// As an input service exports it.
std::atomic<const DecisionListener*> aft_decision_listener_1 = nullptr;

namespace {

/// Counts without asking for memory.
struct Counted {
    size_t pointers = 0;
    size_t keys = 0;
    size_t measurements = 0;
    size_t unnamed = 0;  ///< records or measurements without their texts

    static void add(const DecisionRecord& record, void* counted) {
        auto& all = *static_cast<Counted*>(counted);
        all.pointers += record.hasPointer;
        all.keys += record.hasKey;
        all.measurements += record.measurementCount;
        all.unnamed += record.filter == nullptr || record.rule == nullptr;
        for (uint32_t i = 0; i < record.measurementCount; ++i) {
            all.unnamed += record.measurements[i].name == nullptr || record.measurements[i].unit == nullptr;
        }
    }
};

// A phone that is traced would ask for memory in every frame, or a record would come without its names.
TEST(Recording, AsksForNoMemory) {
    aftplatform::setLogSink([](const aftplatform::LogLine&) {});
    aftplatform::setMinimumLogPriority(ANDROID_LOG_FATAL);
    aftplatform::properties::set("ro.zqaft.tpfp.filter_area", "400,2100,680,2340");
    aftplatform::properties::set("ro.config.zq_notch_size", "0,80,0,0");
    refhost::Requests requests;
    refhost::HostDevice panel({.id = 3, .name = "panel"}, requests);
    refhost::HostDevice sensor({.id = 5, .name = "fingerprint"}, requests);
    TouchAffineTransformation calibration;
    RawPointerAxes axes;
    Vector<void*> keys;
    int64_t when = 60'000'000'000;
    const auto play = [&] {
        configureSurface(panel.mapper(), 1080, 2340, 1, calibration, axes, 1, 1, 0, 0);
        processKey(sensor.mapper(), when += 8'000'000, 519, 0, true, 0, 0);
        const Fingers inside = {finger(0).at(500, 20), finger(1).at(540, 2200), finger(2).at(100, 900)};
        const Fingers moved = {finger(0).at(500, 200), finger(1).at(540, 2100), finger(2).at(100, 900)};
        for (const Fingers* fingers : {&inside, &inside, &moved, &kNone}) {
            RawPointerData data = frameOf(*fingers);
            BitSet32 ids = data.touchingIdBits;
            processRawTouches(panel.mapper(), when += 8'000'000, data, ids, keys);
        }
    };
    play();  // what is made once is made
    Counted counted;
    const DecisionListener listener{&Counted::add, &counted};
    const size_t before = allocations();
    play();
    const size_t unheard = allocations() - before;
    aft_decision_listener_1 = &listener;
    play();
    aft_decision_listener_1 = nullptr;
    EXPECT_EQ(allocations() - before - unheard, unheard);
    EXPECT_EQ(counted.pointers, 23U) << "three frames, fingers and filters; one finger reaches the first alone in two";
    EXPECT_EQ(counted.keys, 1U);
    EXPECT_GT(counted.measurements, 30U);
    EXPECT_EQ(counted.unnamed, 0U);
    aftplatform::setMinimumLogPriority(ANDROID_LOG_VERBOSE);
    aftplatform::setLogSink({});
}

}  // namespace

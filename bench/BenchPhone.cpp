#include "bench/BenchPhone.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "aft/host/DecisionRecord.h"
#include "platform/control/LogSink.h"
#include "platform/control/Properties.h"
#include "platform/control/SensorService.h"
#include "platform/include/android/log.h"

/// As an input service exports it.
std::atomic<const android::DecisionListener*> aft_decision_listener_1 = nullptr;

namespace bench {

namespace sensors = aftplatform::sensors;

namespace {

constexpr int32_t kSlideCover = 65557;
constexpr int32_t kCoverHandle = 7;

std::filesystem::path copyOfTheLibrary(const std::string& name) {
    std::filesystem::path copy =
        std::filesystem::temp_directory_path() / ("zqaft-bench-" + std::to_string(getpid()) + "-" + name + ".so");
    std::filesystem::copy_file(refhost::Plugin::defaultPath(), copy, std::filesystem::copy_options::overwrite_existing);
    return copy;
}

}  // namespace

Listening::Listening() {
    static constexpr android::DecisionListener kIdle{[](const android::DecisionRecord&, void*) {}, nullptr};
    aft_decision_listener_1 = &kIdle;
}

Listening::~Listening() { aft_decision_listener_1 = nullptr; }

BenchPhone& BenchPhone::withEverything() {
    static BenchPhone phone("everything", {{"ro.zqaft.tpfp.filter_area", "0,2100,1080,2340"},
                                           {"ro.config.zq_hall_prop", "1"},
                                           {"ro.config.zq_notch_size", "0,100,0,0"}});
    static const bool proved = (phone.proveAllOn(), true);
    static_cast<void>(proved);
    return phone;
}

BenchPhone& BenchPhone::withNothing() {
    static BenchPhone phone("nothing", {});
    return phone;
}

BenchPhone::BenchPhone(const std::string& name, const Properties& properties)
    : mLibrary(copyOfTheLibrary(name)),
      mPanel({.id = 3, .name = "touchpanel"}, mRequests),
      mSensor({.id = 5, .name = "fingerprint", .sources = 257}, mRequests),
      mPlugin(mLibrary) {
    aftplatform::setMinimumLogPriority(ANDROID_LOG_ERROR);
    aftplatform::setLogSink([](const aftplatform::LogLine&) {});  // a phone without an area says so
    aftplatform::properties::clearAll();
    for (const auto& [key, value] : properties) aftplatform::properties::set(key, value);
    sensors::setDelivery(sensors::Delivery::Direct);
    sensors::offer({{.type = kSlideCover, .handle = kCoverHandle}});
    sensors::setPresent(true);

    android::TouchAffineTransformation calibration;
    android::RawPointerAxes axes;
    axes.x.maxValue = 1079;
    axes.y.maxValue = 2339;
    mPlugin.configureSurface(panel(), 1080, 2340, 1, calibration, axes, 1, 1, 0, 0);
    mPlugin.notifyInputStart();
    moveCover(0);
    gesture(kMiddle);  // the first frame makes every instance
}

BenchPhone::~BenchPhone() {
    sensors::reset();  // what the service holds of the library is code that goes with it
    std::filesystem::remove(mLibrary);
}

void BenchPhone::moveCover(int state) {
    sensors::Event moved;
    moved.sensorHandle = kCoverHandle;
    moved.u.data[0] = 1;
    moved.u.data[1] = static_cast<float>(state);
    sensors::deliver(moved);
}

/// Lands a finger, moves the cover to state 0, lifts the finger. Answers how many of the two frames kept it.
int BenchPhone::gesture(int32_t y) {
    int kept = 0;
    for (const bool second : {false, true}) {
        if (second) moveCover(0);
        android::RawPointerData data = fingersAt(1, y);
        android::BitSet32 ids = data.touchingIdBits;
        frame(data, ids);
        if (!ids.isEmpty()) ++kept;
    }
    lift();
    return kept;
}

/// Ends the process where a filter that is to be measured does not act.
void BenchPhone::proveAllOn() {
    const auto require = [](bool holds, const char* what) {
        if (holds) return;
        std::fprintf(stderr, "bench: %s: its figures would be of nothing\n", what);
        std::abort();
    };
    require(gesture(kMiddle) == 2, "a finger in the middle of the panel is held back");
    require(gesture(50) == 0, "the notch filter is off");
    moveCover(1);
    require(gesture(kMiddle) == 1 && mRequests.cancelled.size() == 1, "the slide cover's filter is off");
    key(519, true);  // an enrolment holds back whatever lands in the filter area
    require(gesture(kNearSensor) == 0, "the front fingerprint filter is off");
    mWhen += 10'000'000'000;  // what the sensor has said is long past
}

android::RawPointerData fingersAt(uint32_t fingers, int32_t y) {
    android::RawPointerData data{};
    for (uint32_t id = 0; id < fingers; ++id) {
        auto& pointer = data.pointers[data.pointerCount];
        pointer.id = id;
        pointer.x = static_cast<int32_t>(50 + 100 * id);
        pointer.y = y;
        pointer.axes = {52, 12, 11, 0, 0, 0, 0, 0, 0, 1};
        data.touchingIdBits.markBit(id);
        data.idToIndex[id] = data.pointerCount++;
    }
    return data;
}

}  // namespace bench

#include "refhost/play/Player.h"

#include <algorithm>
#include <chrono>

#include "platform/control/LogSink.h"
#include "platform/control/Properties.h"
#include "platform/control/SensorService.h"
#include "platform/control/VirtualClock.h"

/// What the plug-in imports to report its decisions: the programs that play traces export it. It stands with its user:
/// a linker would not look for it in a library of its own, since all that refers to it does so weakly.
std::atomic<const android::DecisionListener*> aft_decision_listener_1 = nullptr;

namespace refhost {

namespace sensors = aftplatform::sensors;
using android::InputWindowHandle;
using android::NotifyKeyArgs;
using android::sp;

Player::World::World(const TraceHeader& header, Listening listening) {
    aftplatform::setVirtualTime(0);
    aftplatform::setLogSink([this](const aftplatform::LogLine& line) {
        result.log.push_back({line.priority, std::string(line.tag), std::string(line.text)});
    });
    aftplatform::properties::clearAll();
    for (const auto& [key, value] : header.properties) aftplatform::properties::set(key, value);
    sensors::reset();
    sensors::setDelivery(sensors::Delivery::Direct);
    sensors::setListener([this](const sensors::Reached& call) { result.requests.service.push_back(call); });
    if (header.sensors) {
        sensors::offer(*header.sensors);
        sensors::setPresent(true);
    }
    if (listening == Listening::On) aft_decision_listener_1.store(&mListener, std::memory_order_release);
}

void Player::World::onDecision(const android::DecisionRecord& made, void* world) {
    CallResult& result = static_cast<World*>(world)->result;
    const std::string_view lastLine = result.log.empty() ? std::string_view() : result.log.back().text;
    result.records.push_back(recordOf(made, lastLine));
    const HandedIn& handedIn = static_cast<World*>(world)->handedIn;
    for (Measurement& measured : result.records.back().measurements) {
        android::MeasurementCause& cause = measured.cause;
        const std::string_view event = cause.event != nullptr ? cause.event : "";
        if (event == "key" || event == "landing") cause.when = handedIn.exactly(cause.keyCode, cause.when);
    }
}

Player::World::~World() {
    aft_decision_listener_1.store(nullptr, std::memory_order_release);
    sensors::reset();
    aftplatform::setLogSink({});
    aftplatform::useRealClock();
}

Player::Player(const TraceHeader& header, const std::string& pluginPath, Listening listening)
    : mWorld(header, listening), mPlugin(pluginPath) {
    for (const DeviceDescription& device : header.devices) {
        mDevices.push_back(std::make_unique<HostDevice>(device, mResult.requests));
    }
}

Player::~Player() {
    aft_decision_listener_1.store(nullptr, std::memory_order_release);
    sensors::reset();  // what the service holds of the plug-in is code that goes with it
}

const CallResult& Player::play(const TraceLine& line) {
    mResult.line = line.line;
    mResult.keyResult.reset();
    mResult.hasFrame = false;
    mResult.requests.clear();
    mResult.log.clear();
    mResult.records.clear();
    mResult.durationNs.reset();
    mWorld.handedIn.add(line.event);
    if (line.t) aftplatform::setVirtualTime(*line.t);
    std::visit([this](const auto& event) { play(event); }, line.event);
    return mResult;
}

android::InputMapper* Player::mapper(const DeviceRef& device) {
    if (!device) return nullptr;
    for (const auto& known : mDevices) {
        if (known->id() == *device) return known->mapper();
    }
    return nullptr;
}

template <typename Call>
void Player::timed(Call call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    const auto end = std::chrono::steady_clock::now();
    mResult.durationNs = std::chrono::duration_cast<std::chrono::nanoseconds>(end - start).count();
}

void Player::play(const ProcessKey& call) {
    timed([&] {
        mResult.keyResult = mPlugin.processKey(mapper(call.device), call.when, call.keyCode, call.scanCode, call.down,
                                               call.metaState, call.policyFlags);
    });
}

void Player::play(const ProcessRawTouches& call) {
    FrameResult& result = mResult.frame;
    mResult.hasFrame = true;
    result.frame = call.frame;
    result.ids = call.ids;
    result.keys.clear();
    timed([&] { mPlugin.processRawTouches(mapper(call.device), call.when, result.frame, result.ids, mKeys); });
    result.removed.value = call.ids.value & ~result.ids.value;
    for (void* record : mKeys) {  // they are the host's now: to dispatch, then to give back
        result.keys.push_back(*static_cast<const NotifyKeyArgs*>(record));
        mPlugin.releaseNotifyKeyArgs(record);
    }
    mKeys.clear();
}

void Player::play(const ProcessInputWindow& call) {
    std::vector<sp<InputWindowHandle>> windows;
    windows.reserve(call.windows.size());
    for (const WindowDescription& described : call.windows) {
        sp<InputWindowHandle> window = new InputWindowHandle();
        window->token = described.token ? mToken.data() : nullptr;
        window->name = described.name;
        window->layoutParamsType = described.type;
        window->frameLeft = described.frame[0];
        window->frameTop = described.frame[1];
        window->frameRight = described.frame[2];
        window->frameBottom = described.frame[3];
        window->visible = described.visible;
        window->aftFlags = described.notchArea ? InputWindowHandle::kNotchArea : 0;
        windows.push_back(window);
    }
    const sp<InputWindowHandle> focused = call.focused ? windows[*call.focused] : sp<InputWindowHandle>();
    timed([&] { mPlugin.processInputWindow(windows, focused, call.keyguard); });
}

void Player::play(const ConfigureSurface& call) {
    android::TouchAffineTransformation calibration;
    calibration.c = call.calibration;
    android::RawPointerAxes axes;
    axes.x = {.valid = 1, .minValue = call.rawX[0], .maxValue = call.rawX[1]};
    axes.y = {.valid = 1, .minValue = call.rawY[0], .maxValue = call.rawY[1]};
    timed([&] {
        mPlugin.configureSurface(mapper(call.device), call.width, call.height, call.orientation, calibration, axes,
                                 call.scale[0], call.scale[1], call.translate[0], call.translate[1]);
    });
}

void Player::play(const NotifyInputStart& /*call*/) {
    timed([&] { mPlugin.notifyInputStart(); });
}

void Player::play(const NotifyInputExit& /*call*/) {
    timed([&] { mPlugin.notifyInputExit(); });
}

void Player::play(const NotifyScreenState& /*call*/) {
    timed([&] { mPlugin.notifyScreenState(); });
}

void Player::play(const SetProperty& happening) { aftplatform::properties::set(happening.key, happening.value); }

void Player::play(const SensorEvent& happening) {
    sensors::Event event;
    event.sensorType = static_cast<decltype(event.sensorType)>(happening.type);
    event.sensorHandle = happening.handle;
    event.timestamp = happening.timestamp;
    std::copy_n(happening.values.begin(), std::min(happening.values.size(), event.u.data.size()), event.u.data.begin());
    sensors::deliver(event);
}

void Player::play(const SensorService& happening) {
    if (happening.fails) sensors::setFaults(*happening.fails);
    if (!happening.state) return;
    switch (*happening.state) {
        case SensorService::State::Dies: return sensors::die();
        case SensorService::State::Registers: return sensors::registers();
        case SensorService::State::Absent: return sensors::setPresent(false);
        case SensorService::State::Present: return sensors::setPresent(true);
    }
}

}  // namespace refhost

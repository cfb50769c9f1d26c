#include "fuzz/CallsFromBytes.h"

#include <array>
#include <limits>

namespace fuzz {

using android::RawPointerData;
using namespace refhost;
using Pointer = RawPointerData::Pointer;

namespace {

constexpr uint32_t kMostLines = 400;
constexpr int64_t kMs = 1'000'000;
constexpr int32_t kCover = 65557;
constexpr int32_t kHinge = 3;
constexpr uint32_t kHingeWindow = 30;  ///< samples that the fold angle's filter looks back on

constexpr int32_t kPanel = 3;
constexpr int32_t kSecondPanel = 4;
constexpr int32_t kSensorKeys = 5;
constexpr int32_t kVirtual = -6;

constexpr std::array<int32_t, 2> kPlaces[] = {{540, 2200}, {540, 2050}, {420, 2300}, {300, 900}, {560, 40}, {20, 20}};
constexpr int32_t kKeys[] = {516, 513, 517, 601, 518, 514, 519, 515, 66, 501, 502, 511, 512, 503, 600};
constexpr uint32_t kFlags[] = {0, 0, Pointer::kOnEdge, Pointer::kAbnormal, Pointer::kStylusDirty, 0xffffffff};

const char* const kAreas[] = {"400,2100,680,2340", "280,240", "0,1,1080,2340",     "", "5", "-1,9,8,8",
                              "9,9,8,-9",          "280,-9",  "400,2100,2000,2340"};
const char* const kNotches[] = {"0,100,0,0", "", "0,2147483647,0,0", "0,-1,0,0", "0,100"};
const char* const kFolds[] = {"", "0,0,0,0,0,0", "0,5,0,0,0,0", "x"};
const char* const kAbnormalOff[] = {"0", "1"};
const char* const kHalls[] = {"1", "0"};
const char* const kWindows[] = {
    "Window{1f3a0c2 u0 NavigationBar}",
    "com.zorvia.camera/com.zorvia.camera.controller.SecureCameraActivity",
    "a com.android.incallui/com.android.incallui.InCallActivity, cancel it",
    "com.tencent.mobileqq/com.tencent.av.ui.AVActivity compensate point(",
    "Window{0123456789abcdef0123456789 u00000000000000000000 NavigationBar}",
};

}  // namespace

CallsFromBytes::CallsFromBytes(const uint8_t* data, size_t size) : mBytes(data, size) {
    makeHeader();
    const uint8_t begin = mBytes.byte();
    if ((begin & 0x80) == 0) {
        mNext.emplace_back(ConfigureSurface{kPanel, 1080, 2340, begin & 3, {1, 0, 0, 0, 1, 0}, {0, 1079}, {0, 2339}});
    }
    if ((begin & 0x40) == 0) mNext.emplace_back(NotifyInputStart{});
}

/// A property has one of the values that filters ask for, or any text.
void CallsFromBytes::makeHeader() {
    const auto property = [&](const char* key, const auto& values) {
        const uint32_t choice = mBytes.below(static_cast<uint32_t>(std::size(values)) + 1);
        mHeader.properties.emplace_back(key,
                                        choice < std::size(values) ? values[choice] : mBytes.text(mBytes.byte() % 91));
    };
    property("ro.zqaft.tpfp.filter_area", kAreas);
    property("persist.zqaft.disable_abt", kAbnormalOff);
    property("ro.config.zq_notch_size", kNotches);
    property("ro.config.zq_fold_disp", kFolds);
    property("ro.config.zq_hall_prop", kHalls);
    mHeader.devices = {{kPanel, "zorvia,ts_kit_0"},
                       {kSecondPanel, "pen", mBytes.flag()},
                       {kSensorKeys, "fingerprint"},
                       {kVirtual, "zorvia,ts_kit"}};
    if (mBytes.below(8) != 7) mHeader.sensors = {{kCover, 7}, {kHinge, 9}};
}

bool CallsFromBytes::next(TraceLine& line) {
    if ((mNext.empty() && mBytes.atEnd()) || mLine == kMostLines) return false;
    line.line = ++mLine;
    if (mNext.empty()) {
        passTime();
        mNext.push_back(event());
    }
    line.t = mNow;
    line.event = std::move(mNext.front());
    mNext.pop_front();
    return true;
}

void CallsFromBytes::passTime() {
    constexpr int64_t kSteps[] = {20, 20, 20, 1, 0, 80, 119, 150, 299, 300, 1000, 1001, 1700, 3000, -20};
    const uint32_t choice = mBytes.below(std::size(kSteps) + 3);
    if (choice < std::size(kSteps)) {
        mNow = static_cast<int64_t>(static_cast<uint64_t>(mNow) + static_cast<uint64_t>(kSteps[choice] * kMs));
    } else if (choice == std::size(kSteps)) {
        constexpr int64_t kEnds[] = {0, -1, std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max()};
        mNow = mBytes.pickOrAny(kEnds);
    }
}

TraceEvent CallsFromBytes::event() {
    const uint32_t choice = mBytes.below(24);
    if (choice >= 2 && choice <= 6) return key();
    switch (choice) {
        case 0: mFingers.clear(); return frame();
        case 1: return brokenFrame();
        case 7: return surface();
        case 8: return brokenSurface();
        case 9: return windows();
        case 10: return NotifyInputStart{};
        case 11: return NotifyInputExit{};
        case 12: return NotifyScreenState{};
        case 13: return SetProperty{"ro.config.zq_hall_prop", mBytes.text(3)};
        case 14: return coverMoves();
        case 15: return hingeTurns();
        case 16: return anySample();
        case 17: return service();
        default: return fingersMove();
    }
}

DeviceRef CallsFromBytes::device() {
    constexpr int32_t kDevices[] = {kPanel, kPanel,       kPanel,      kPanel,  kPanel,
                                    kPanel, kSecondPanel, kSensorKeys, kVirtual};
    const uint32_t choice = mBytes.below(std::size(kDevices) + 1);
    return choice < std::size(kDevices) ? DeviceRef(kDevices[choice]) : std::nullopt;
}

/// One finger lands, moves or lifts, and the frame shows all that are down.
ProcessRawTouches CallsFromBytes::fingersMove() {
    constexpr uint32_t kIds[] = {0, 0, 0, 0, 1, 1, 2, 31};
    const uint32_t id = mBytes.pick(kIds);
    const uint32_t action = mBytes.below(8);
    const auto known = mFingers.find(id);
    if (known == mFingers.end()) {
        Pointer& finger = mFingers[id];
        finger.id = id;
        const auto& place = mBytes.pick(kPlaces);
        finger.x = place[0];
        finger.y = place[1];
        finger.axes[0] = static_cast<int32_t>(action);
        if (action == 7) finger = {id, mBytes.number<int32_t>(), mBytes.number<int32_t>(), {}, 0, {}, 0, 5};
        finger.isHovering = action == 6 ? 1 : 0;
        finger.extraData = mBytes.pick(kFlags);
    } else if (action == 7) {
        mFingers.erase(known);
    } else if (action > 1) {
        constexpr int32_t kSteps[] = {0, -40, -39, 10, 101, -101, 200, 300};
        known->second.x += mBytes.pick(kSteps) * (mFingers.size() == 1 || known->second.x < 10'000 ? 1 : 0);
        known->second.y += mBytes.pick(kSteps) * (known->second.y < 10'000 ? 1 : 0);
        known->second.isHovering = action == 6 ? 1 : 0;
        if (action == 5) known->second.extraData = mBytes.pick(kFlags);
    }
    return frame();
}

ProcessRawTouches CallsFromBytes::frame() {
    ProcessRawTouches call;
    call.device = mFingers.empty() ? DeviceRef(kPanel) : device();
    call.when = mNow;
    for (const auto& [id, finger] : mFingers) {
        (finger.isHovering != 0 ? call.frame.hoveringIdBits : call.frame.touchingIdBits).markBit(id);
        call.frame.idToIndex[id] = call.frame.pointerCount;
        call.frame.pointers[call.frame.pointerCount++] = finger;
    }
    call.ids = {call.frame.touchingIdBits.value | call.frame.hoveringIdBits.value};
    return call;
}

ProcessRawTouches CallsFromBytes::brokenFrame() {
    ProcessRawTouches call = fingersMove();
    constexpr uint32_t kNumbers[] = {0, 1, 15, 16, 17, 31, 32, 40, 0xffffffff};
    const auto index = [&] { return mBytes.below(RawPointerData::kMaxPointers); };
    for (uint32_t faults = 1 + mBytes.below(4); faults > 0; --faults) {
        switch (mBytes.below(7)) {
            case 0: call.frame.pointerCount = mBytes.pickOrAny(kNumbers); break;
            case 1: call.frame.idToIndex[mBytes.below(RawPointerData::kMaxIds)] = mBytes.pickOrAny(kNumbers); break;
            case 2: call.frame.pointers[index()].id = mBytes.pickOrAny(kNumbers); break;
            case 3: call.frame.touchingIdBits.value = mBytes.number<uint32_t>(); break;
            case 4: call.frame.hoveringIdBits.value = mBytes.number<uint32_t>(); break;
            case 5: call.ids.value = mBytes.number<uint32_t>(); break;
            default: call.frame.pointers[index()] = mBytes.number<Pointer>(); break;
        }
    }
    return call;
}

ProcessKey CallsFromBytes::key() {
    ProcessKey call;
    const uint8_t how = mBytes.byte();
    call.device = (how & 0x0e) != 0 ? DeviceRef(kSensorKeys) : device();
    call.when = mNow;
    call.keyCode = mBytes.pickOrAny(kKeys);
    call.down = (how & 1) == 0;
    call.scanCode = how;
    if ((how & 0x80) != 0) {
        call.metaState = mBytes.number<int32_t>();
        call.policyFlags = mBytes.number<uint32_t>();
    }
    return call;
}

ConfigureSurface CallsFromBytes::surface() {
    ConfigureSurface call{kPanel, 1080, 2340, 0, {1, 0, 0, 0, 1, 0}, {0, 1079}, {0, 2339}};
    call.device = device();
    call.orientation = static_cast<int32_t>(mBytes.below(5));
    return call;
}

ConfigureSurface CallsFromBytes::brokenSurface() {
    constexpr int32_t kNumbers[] = {
        0, 1, -1, 1080, 2340, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()};
    constexpr float kFloats[] = {
        0, 1, -1, 1e30F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()};
    ConfigureSurface call = surface();
    if (mBytes.flag()) call.width = mBytes.pickOrAny(kNumbers);
    if (mBytes.flag()) call.height = mBytes.pickOrAny(kNumbers);
    call.orientation += 2 * call.orientation;
    for (int32_t& number : call.rawX) number = mBytes.pickOrAny(kNumbers);
    for (int32_t& number : call.rawY) number = mBytes.pickOrAny(kNumbers);
    for (float& number : call.calibration) number = mBytes.pickOrAny(kFloats);
    for (float& number : call.scale) number = mBytes.pickOrAny(kFloats);
    for (float& number : call.translate) number = mBytes.pickOrAny(kFloats);
    return call;
}

ProcessInputWindow CallsFromBytes::windows() {
    ProcessInputWindow call;
    for (uint32_t count = mBytes.below(4); count > 0; --count) {
        WindowDescription window;
        const uint32_t name = mBytes.below(std::size(kWindows) + 2);
        if (name < std::size(kWindows)) window.name = kWindows[name];
        if (name == std::size(kWindows)) window.name = mBytes.text(mBytes.byte());
        if (name > std::size(kWindows)) window.name = "Window{" + std::string(size_t{mBytes.byte()} * 256, 'a');
        const uint8_t how = mBytes.byte();
        window.type = (how & 1) == 0 ? 2019 : 1;
        window.visible = (how & 2) == 0;
        window.notchArea = (how & 4) != 0;
        window.token = (how & 8) == 0;
        constexpr int32_t kEdges[] = {0, 2214, 126, 2340, -1, std::numeric_limits<int32_t>::max()};
        for (int32_t& edge : window.frame) edge = mBytes.pick(kEdges);
        call.windows.push_back(std::move(window));
    }
    if (!call.windows.empty() && mBytes.below(4) != 0) call.focused = static_cast<uint32_t>(call.windows.size() - 1);
    call.keyguard = mBytes.flag();
    return call;
}

SensorEvent CallsFromBytes::coverMoves() { return {kCover, 7, mNow, {1, static_cast<float>(mBytes.below(4))}}; }

/// A hinge says much: as many samples as its filter looks back on.
SensorEvent CallsFromBytes::hingeTurns() {
    constexpr float kAngles[] = {0, 90, 180, 5, 2000};
    SensorEvent sample{kHinge, 9, mNow, {0, 0, mBytes.pick(kAngles)}};
    for (uint32_t more = mBytes.below(2) * kHingeWindow; more > 0; --more) mNext.emplace_back(sample);
    return sample;
}

SensorEvent CallsFromBytes::anySample() {
    SensorEvent sample{mBytes.flag() ? kCover : kHinge, mBytes.flag() ? 7 : 9, mBytes.number<int64_t>(), {}};
    constexpr float kValues[] = {1, 0, 1e30F, std::numeric_limits<float>::quiet_NaN()};
    for (uint32_t count = mBytes.below(SensorEvent::kMostValues + 1); count > 0; --count) {
        sample.values.push_back(mBytes.pickOrAny(kValues));
    }
    return sample;
}

SensorService CallsFromBytes::service() {
    using namespace aftplatform::sensors;
    constexpr Call kCalls[] = {Call::GetService,       Call::LinkToDeath,  Call::CreateEventQueue,
                               Call::GetDefaultSensor, Call::EnableSensor, Call::DisableSensor};
    constexpr Fault kFaults[] = {Fault::Transport, Fault::Result, Fault::NoQueue};
    constexpr SensorService::State kStates[] = {SensorService::State::Dies, SensorService::State::Registers,
                                                SensorService::State::Absent, SensorService::State::Present};
    SensorService happening;
    if (mBytes.flag()) {
        happening.fails.emplace();
        for (uint32_t count = mBytes.below(4); count > 0; --count) {
            const Call call = mBytes.pick(kCalls);
            (*happening.fails)[call] = mBytes.pick(kFaults);
        }
    }
    if (!happening.fails || mBytes.flag()) happening.state = mBytes.pick(kStates);
    return happening;
}

}  // namespace fuzz

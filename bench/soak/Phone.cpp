#include "bench/soak/Phone.h"

#include <android/log.h>
#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <tuple>

#include "platform/control/LogSink.h"
#include "platform/control/Properties.h"
#include "platform/control/VirtualClock.h"

namespace soak {

namespace sensors = aftplatform::sensors;
using android::InputWindowHandle;
using android::sp;

namespace {

constexpr int32_t kCover = 7;
constexpr int32_t kFoldAngle = 9;

/// What has to stand before the plug-in is called. Answers its argument.
const std::string& prepared(const std::string& plugin) {
    aftplatform::setMinimumLogPriority(ANDROID_LOG_ERROR);
    aftplatform::properties::set("ro.zqaft.tpfp.filter_area", "400,2100,680,2340");
    aftplatform::properties::set("ro.config.zq_hall_prop", "1");
    aftplatform::properties::set("ro.config.zq_notch_size", "0,80,0,0");
    sensors::setDelivery(sensors::Delivery::Direct);
    sensors::offer({{65557, kCover}, {3, kFoldAngle}});
    sensors::setPresent(true);
    return plugin;
}

sp<InputWindowHandle> window(const char* name, const std::array<int32_t, 4>& frame) {
    static int token = 0;
    sp<InputWindowHandle> made = new InputWindowHandle();
    made->token = &token;
    made->name = name;
    std::tie(made->frameLeft, made->frameTop, made->frameRight, made->frameBottom) =
        std::tie(frame[0], frame[1], frame[2], frame[3]);
    made->visible = true;
    return made;
}

[[noreturn]] void fault(const char* what, const Tally& at) {
    fmt::print(stderr, "zqaft_soak: after {} frames: {}\n", at.frames, what);
    std::exit(1);
}

}  // namespace

// NOLINTNEXTLINE(cert-msc32-c,cert-msc51-cpp): the same story each time is what is wanted
Phone::Phone(const std::string& plugin)
    : mPanel({.id = 3, .name = "touchpanel"}, mRequests),
      mSensor({.id = 5, .name = "fingerprint", .sources = 257}, mRequests),
      mPlugin(prepared(plugin)) {
    aftplatform::setVirtualTime(mNow);
    rotate(0);
    start();
}

Phone::~Phone() { sensors::reset(); }

int32_t Phone::any(int32_t least, int32_t most) {
    return least + static_cast<int32_t>(mRandom() % static_cast<uint32_t>(most - least + 1));
}

void Phone::pass(int64_t ms) {
    mNow += ms * 1'000'000;
    aftplatform::setVirtualTime(mNow);
}

void Phone::put(uint32_t id, int32_t x, int32_t y, uint32_t flags) {
    if (mIds.hasBit(id) || mData.pointerCount == android::RawPointerData::kMaxPointers) return;
    mIds.markBit(id);
    if (!mIds.hasBit(id)) return;
    mData.idToIndex[id] = mData.pointerCount;
    auto& pointer = mData.pointers[mData.pointerCount++];
    pointer = {};
    pointer.id = id;
    pointer.x = x;
    pointer.y = y;
    pointer.extraData = flags;
}

void Phone::frame(int64_t ms) {
    pass(ms);
    mData.touchingIdBits = mIds;
    const android::BitSet32 before = mIds;
    const uint32_t count = mData.pointerCount;
    mPlugin.processRawTouches(mPanel.mapper(), mNow, mData, mIds, mKeys);

    if (mIds != mData.touchingIdBits || (mIds.value & ~before.value) != 0) fault("the ids are not the frame's", mTally);
    if (mIds.count() != mData.pointerCount) fault("a pointer without an id, or an id without a pointer", mTally);
    for (const uint32_t id : mIds) {
        if (back(id) == nullptr || back(id)->id != id) fault("an id leads to another pointer", mTally);
    }
    if (!mKeys.empty() && mKeys.size() != 2) fault("half a key", mTally);

    ++mTally.frames;
    mTally.removed += count - mData.pointerCount;
    mTally.cancelled += mRequests.cancelled.size();
    mTally.reports += mRequests.reports.size();
    mTally.sent += mKeys.size();
    for (void* record : mKeys) mPlugin.releaseNotifyKeyArgs(record);
    mKeys.clear();
    mRequests.clear();
    mIds.clear();
    mData.pointerCount = 0;
}

const android::RawPointerData::Pointer* Phone::back(uint32_t id) const {
    return mData.touchingIdBits.hasBit(id) ? mData.find(id) : nullptr;
}

bool Phone::key(int32_t code, bool down) {
    const bool consumed = mPlugin.processKey(mSensor.mapper(), mNow, code, 7, down, 0, 2) != 0;
    if (down && consumed) ++mTally.consumed;
    return consumed;
}

bool Phone::press(int32_t code) {
    const bool consumed = key(code);
    key(code, false);
    return consumed;
}

void Phone::rotate(int32_t orientation) {
    android::TouchAffineTransformation calibration;
    android::RawPointerAxes axes{.x = {.valid = 1, .maxValue = 1079}, .y = {.valid = 1, .maxValue = 2339}};
    mPlugin.configureSurface(mPanel.mapper(), 1080, 2340, orientation, calibration, axes, 1, 1, 0, 0);
}

void Phone::show(const char* focused, bool barVisible, bool overNotch, bool keyguard) {
    std::vector<sp<InputWindowHandle>> windows = {window("Window{1f3a0c2 u0 NavigationBar}", {0, 2214, 1080, 2340}),
                                                  window("Window{77 u0 Map}", {0, 0, 2340, 540}),
                                                  window(focused, {0, 0, 1080, 2340})};
    windows[0]->layoutParamsType = InputWindowHandle::kTypeNavigationBar;
    windows[0]->visible = barVisible;
    windows[1]->aftFlags = overNotch ? InputWindowHandle::kNotchArea : 0;
    mPlugin.processInputWindow(windows, windows[2], keyguard);
}

void Phone::coverMoves(int32_t state) { sense(kCover, static_cast<float>(state), 0); }
void Phone::foldsTo(float angle) { sense(kFoldAngle, 0, angle); }

void Phone::sense(int32_t handle, float second, float third) {
    sensors::Event event;
    event.timestamp = mNow;
    event.sensorHandle = handle;
    event.u.data = {1, second, third};
    sensors::deliver(event);
}

void Phone::serviceRegisters(bool diesFirst) {
    if (diesFirst) sensors::die();
    sensors::registers();
}

}  // namespace soak

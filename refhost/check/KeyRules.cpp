#include "refhost/check/KeyRules.h"

#include <fmt/format.h>

#include <algorithm>

#include "refhost/play/LogLines.h"

namespace refhost {

namespace {

using android::NotifyKeyArgs;

constexpr std::string_view kSensorDevice = "fingerprint";

/// A key that is sent sooner after it came down would carry no later time.
constexpr int64_t kShortestHoldNs = 1'000'000;

bool isNotification(int32_t keyCode) { return 516 <= keyCode && keyCode <= 519; }

/// What the sensor makes of a finger on it, as a key for apps.
bool isEvent(int32_t keyCode) {
    constexpr int32_t kEvents[] = {66, 501, 502, 511, 512, 513, 514, 515, 601};
    return std::find(std::begin(kEvents), std::end(kEvents), keyCode) != std::end(kEvents);
}

/// Times that no clock can have wrap around.
int64_t elapsed(int64_t later, int64_t earlier) {
    return static_cast<int64_t>(static_cast<uint64_t>(later) - static_cast<uint64_t>(earlier));
}

}  // namespace

const DeviceDescription* KeyRules::find(const DeviceRef& device) const {
    const auto known = std::find_if(mDevices.begin(), mDevices.end(),
                                    [&](const DeviceDescription& one) { return device && one.id == *device; });
    return known == mDevices.end() ? nullptr : &*known;
}

/// Whether a key must be consumed; nothing where that is the filter's to decide.
std::optional<bool> KeyRules::consumedForSure(const Switches& on, const ProcessKey& call) const {
    if (!on.area) return isNotification(call.keyCode);
    const DeviceDescription* device = find(call.device);
    if (device == nullptr || device->name != kSensorDevice) return false;
    if (!isEvent(call.keyCode)) return isNotification(call.keyCode);
    if (call.down) return std::nullopt;
    const auto downs = mConsumedDowns.find(call.keyCode);
    return downs != mConsumedDowns.end() && downs->second > 0;
}

void KeyRules::check(const Switches& on, const ProcessKey& call, const CallResult& result, Breaches& breaches) {
    const bool consumed = result.keyResult.value_or(0) != 0;
    const auto expected = consumedForSure(on, call);
    if (expected && *expected != consumed) {
        breaches.push_back({result.line, "key-answer",
                            fmt::format("key {} {} was {}; expected it {}", call.keyCode, call.down ? "down" : "up",
                                        consumed ? "consumed" : "dispatched", *expected ? "consumed" : "dispatched")});
    }
    if (consumed && !expected) ++mConsumedDowns[call.keyCode];
    if (expected.value_or(false) && isEvent(call.keyCode)) --mConsumedDowns[call.keyCode];  // its key-up
    if (countLines(result, kFrontFpTag, "delayDispatchKey delay dispatch the key:") == 0) return;
    if (!consumed || mHeld) {
        breaches.push_back({result.line, "key-held",
                            fmt::format("key {} is held back, {}", call.keyCode,
                                        consumed ? "and so is another; expected one at a time"
                                                 : "and dispatched as well; expected it consumed")});
    }
    mHeld = call;
}

void KeyRules::check(const Switches& on, const ProcessRawTouches& call, const CallResult& result, Breaches& breaches) {
    const bool touches = !call.frame.touchingIdBits.isEmpty();
    if (touches && !mTouching) mHeld.reset();
    const bool asked = !touches || (mTouching && call.ids.count() >= 2);
    const bool due = on.area && mHeld && asked && elapsed(call.when, mHeld->when) >= kShortestHoldNs;
    mTouching = touches;

    const auto& keys = result.frame.keys;
    if (due ? !isPairOfHeld(keys, call.when) : !keys.empty()) {
        const std::string expected = due ? fmt::format("the down and up of key {}", mHeld->keyCode) : "none";
        breaches.push_back({result.line, "key-sent",
                            fmt::format("{} keys to send, of code {}; expected {}", keys.size(),
                                        keys.empty() ? 0 : keys.front().keyCode, expected)});
    }
    if (due || countLines(result, kFrontFpTag, "compensate point(") > 0) mHeld.reset();
}

bool KeyRules::isPairOfHeld(const std::vector<NotifyKeyArgs>& keys, int64_t when) const {
    const DeviceDescription* device = find(mHeld->device);
    const auto isOf = [&](const NotifyKeyArgs& key, int32_t action) {
        return device != nullptr && key.action == action && key.eventTime == when && key.downTime == when &&
               key.deviceId == device->id && key.source == device->sources && key.keyCode == mHeld->keyCode &&
               key.scanCode == mHeld->scanCode && key.metaState == mHeld->metaState &&
               key.policyFlags == mHeld->policyFlags && key.flags == NotifyKeyArgs::kFlagFromSystem;
    };
    return keys.size() == 2 && isOf(keys[0], NotifyKeyArgs::kActionDown) && isOf(keys[1], NotifyKeyArgs::kActionUp);
}

}  // namespace refhost

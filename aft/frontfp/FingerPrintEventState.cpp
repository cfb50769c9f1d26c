#include "aft/frontfp/FingerPrintEventState.h"

#include <memory>

#include "aft/frontfp/EventTime.h"
#include "aft/frontfp/FingerprintKeys.h"
#include "aft/frontfp/FrontFPLog.h"
#include "aft/host/PluginApi.h"

namespace android {

namespace {

/// A key this soon after the touch-down came from the same finger; later ones are a press of their own.
constexpr int64_t kSameFingerMs = 120;

/// A key cannot be sent again earlier than this after it came down: its pair would carry no later time.
constexpr int64_t kShortestHoldNs = 1'000'000;

constexpr Quantity kKeyHeldFor{.name = "key held for", .unit = "ns"};

struct ReleaseKeyRecord {
    void operator()(NotifyKeyArgs* args) const { releaseNotifyKeyArgs(args); }
};
using KeyRecord = std::unique_ptr<NotifyKeyArgs, ReleaseKeyRecord>;

KeyRecord allocKeyRecord() { return KeyRecord(static_cast<NotifyKeyArgs*>(allocNotifyKeyArgs())); }

}  // namespace

bool FingerPrintEventState::delayDispatchKey(uint32_t touchSeq, InputMapper* mapper, int64_t when, int32_t keyCode,
                                             int32_t scanCode, int32_t metaState, uint32_t policyFlags,
                                             Measurements& measured) {
    if (!FingerprintKeys::canBeHeldBack(keyCode)) return false;
    if (mPendingKey.touchSeq != touchSeq) {
        LOGI("delayDispatchKey, touchSeq#%d check pending key=%d mPendingKey.touchSeq=%d, no need to delay it",
             touchSeq, keyCode, mPendingKey.touchSeq);
        return false;
    }
    if (keyIsPending()) {
        LOGI("delayDispatchKey, it already has an pending key, do not delay current key!");
        return false;
    }
    if (!recently({.name = "since the finger landed", .unit = "ms"}, toMs(when), mTouchDownTime, kSameFingerMs,
                  eventAt("landing", mTouchDownTime), measured)) {
        return false;
    }
    mPendingKey = {keyCode, scanCode, metaState, policyFlags, when, touchSeq, mapper};
    LOGI("delayDispatchKey delay dispatch the key:%d", keyCode);
    return true;
}

bool FingerPrintEventState::InitNotifyKeyArgs(NotifyKeyArgs& args, int64_t when, int32_t action) {
    if (mPendingKey.mapper == nullptr) {
        LOGE("InputMapper device is null");
        return false;
    }
    args.eventTime = when;
    args.deviceId = mPendingKey.mapper->getDeviceId();
    args.source = mPendingKey.mapper->getSources();
    args.policyFlags = mPendingKey.policyFlags;
    args.action = action;
    args.flags = NotifyKeyArgs::kFlagFromSystem;
    args.keyCode = mPendingKey.keyCode;
    args.scanCode = mPendingKey.scanCode;
    args.metaState = mPendingKey.metaState;
    args.downTime = when;
    return true;
}

bool FingerPrintEventState::handlePendingKey(int64_t when, bool /*force*/, Vector<void*>& keys) {
    if (!keyIsPending()) return false;
    const DecisionRecorder recorder(kFrontFP, mPendingKey.mapper, when);
    Decision decision(recorder, mPendingKey.keyCode);
    const auto age = static_cast<int64_t>(static_cast<uint64_t>(when) - static_cast<uint64_t>(mPendingKey.when));
    const MeasurementCause down{"key", mPendingKey.keyCode, mPendingKey.when, 0};
    if (!decision.atLeast(kKeyHeldFor, age, kShortestHoldNs, down)) {
        LOGI("handlePendingKey, pending key's down after now!");
        decision.record(DecisionRecord::Outcome::HeldBack, "too-soon-to-send"_rule, true);
        return false;
    }
    LOGI("handlePendingKey, force re-dispatch keyCode=%d", mPendingKey.keyCode);

    KeyRecord keyDown = allocKeyRecord();
    if (keyDown == nullptr) {
        LOGE("handlePendingKey, allocNotifyKeyArgs for key-down failed");
        return false;
    }
    if (!InitNotifyKeyArgs(*keyDown, when, NotifyKeyArgs::kActionDown)) {
        LOGE("InitNotifyKeyArgs for key-down failed");
        return false;
    }
    KeyRecord keyUp = allocKeyRecord();
    if (keyUp == nullptr) {
        LOGE("handlePendingKey, allocNotifyKeyArgs for key-up failed");
        return false;
    }
    if (!InitNotifyKeyArgs(*keyUp, when, NotifyKeyArgs::kActionUp)) {
        LOGE("InitNotifyKeyArgs for key-up failed");
        return false;
    }

    LOGI("handlePendingKey, re-dispatch the pending keycode=%d down and up", mPendingKey.keyCode);
    decision.record(DecisionRecord::Outcome::SentAgain, "finger-no-gesture"_rule, true);
    keys.add(keyDown.release());
    keys.add(keyUp.release());
    clearPendingKey();
    return true;
}

void FingerPrintEventState::dropPendingKey(int64_t when, Rule why) {
    if (keyIsPending()) {
        const DecisionRecorder recorder(kFrontFP, mPendingKey.mapper, when);
        Decision(recorder, mPendingKey.keyCode).record(DecisionRecord::Outcome::Dropped, why);
    }
    clearPendingKey();
}

void FingerPrintEventState::updateFPKeyEvent(int64_t when, int32_t keyCode) {
    mLastKeyCode = keyCode;
    mLastKeyEventTime = toMs(when);
}

}  // namespace android

// Abnormal-touch cancellation: a pointer that the touch driver flags cancels the whole gesture.

#include <string>
#include <string_view>
#include <utility>

#include "aft/frontfp/FrontFPLog.h"
#include "aft/frontfp/FrontFPProperties.h"
#include "aft/frontfp/ZqFrontFPAftProcessor.h"
#include "aft/host/Contacts.h"

namespace android {

namespace {

using Outcome = DecisionRecord::Outcome;

/// Over the keyguard, the one window in which an accidental touch costs less than a lost one.
constexpr std::string_view kSecureCamera = "com.zorvia.camera/com.zorvia.camera.controller.SecureCameraActivity";

/// Windows in front of which a cheek touches the panel.
constexpr std::string_view kCallActivities[] = {
    "com.android.incallui/com.android.incallui.InCallActivity",
    "com.tencent.mm/com.tencent.mm.plugin.voip.ui.VideoActivity",
    "com.tencent.mobileqq/com.tencent.av.ui.AVActivity",
};

bool contains(const std::string& name, std::string_view component) { return name.find(component) != std::string::npos; }

}  // namespace

void ZqFrontFPAftProcessor::processInputWindowForAbt(const sp<InputWindowHandle>& focusedWindow, bool keyguardShowing) {
    sp<InputWindowHandle> released = focusedWindow;  // the old window goes after the lock: its end is the host's code
    Mutex::Autolock lock(mLock);
    std::swap(mFocusedWindow, released);
    mKeyguardShowing = keyguardShowing;
}

void ZqFrontFPAftProcessor::processRawTouchesForAbt(InputMapper* mapper, int64_t when, RawPointerData& data,
                                                    BitSet32& idBits) {
    if (mTouchCanceled) {
        if (data.touchingIdBits.isEmpty()) mTouchCanceled = false;
        return;
    }
    if (mapper == nullptr) return;
    const DecisionRecorder recorder(kAbnormalTouch, mapper, when);
    if (recorder.listening()) {
        cancelIfFlagged<Decision>(*mapper, recorder, when, data, idBits);
    } else {
        cancelIfFlagged<UnrecordedDecision>(*mapper, recorder, when, data, idBits);
    }
}

template <typename PointerDecision>
void ZqFrontFPAftProcessor::cancelIfFlagged(InputMapper& mapper, const DecisionRecorder& recorder, int64_t when,
                                            const RawPointerData& data, BitSet32 idBits) {
    for (auto [id, p] : contacts(data, idBits)) {
        PointerDecision decision(recorder, id, p);
        if (!cancelsGesture(p, decision)) continue;
        LOGI("Cancel abnormal touch seq for pointerCount=%d, point(%d, %d), id=%d, extraData=0x%08x", data.pointerCount,
             p.x, p.y, id, p.extraData);
        decision.record(Outcome::Cancelled, "abnormal-touch"_rule, true);
        mapper.cancelTouch(when);
        mTouchCanceled = true;
        return;
    }
}

bool ZqFrontFPAftProcessor::touchAbnormal(const RawPointerData::Pointer& p) const {
    return (p.extraData & RawPointerData::Pointer::kAbnormal) != 0;
}

bool ZqFrontFPAftProcessor::touchStylusDirty(const RawPointerData::Pointer& p) const {
    return (p.extraData & RawPointerData::Pointer::kStylusDirty) != 0;
}

/// Records why not, where that is so.
bool ZqFrontFPAftProcessor::cancelsGesture(const RawPointerData::Pointer& p, auto& decision) {
    const bool isAbnormal = decision.flag({.name = "flagged as abnormal"}, touchAbnormal(p));
    const bool isDirty = decision.flag({.name = "flagged as stylus dirty"}, touchStylusDirty(p));
    if (!isAbnormal) {
        if (!isDirty) decision.record(Outcome::OutOfScope, "not-flagged"_rule);
        return isDirty;
    }
    if (decision.flag({.name = "cancels in every window", .setting = kFoldDisplayProperty}, mFilterAllWindow)) {
        return true;
    }
    const bool isCostly = isFilteredWindowForeground(decision);  // asked, and logged, for every abnormal pointer
    if (!isCostly && !isDirty) decision.record(Outcome::Passed, "abnormal-allowed"_rule);
    return isCostly || isDirty;
}

bool ZqFrontFPAftProcessor::isFilteredWindowForeground(auto& decision) {
    Mutex::Autolock lock(mLock);
    if (mFocusedWindow == nullptr) return false;
    const std::string& name = mFocusedWindow->getName();
    if (decision.flag({.name = "keyguard in front"}, mKeyguardShowing)) {
        if (decision.flag({.name = "secure camera in front"}, contains(name, kSecureCamera))) return false;
        LOGD("filtered as keyguard showing");
        return true;
    }
    for (std::string_view activity : kCallActivities) {
        if (!contains(name, activity)) continue;
        LOGD("filtered as foreground window(%s)", name.c_str());
        return decision.flag({.name = "call window in front"}, true);
    }
    return decision.flag({.name = "call window in front"}, false);
}

}  // namespace android

// The key side of the front fingerprint filter: which of the sensor's keys are dispatched, and what its notifications
// tell the touch side.

#include <algorithm>

#include "aft/frontfp/EventTime.h"
#include "aft/frontfp/FingerprintKeys.h"
#include "aft/frontfp/FrontFPLog.h"
#include "aft/frontfp/ZqFrontFPAftProcessor.h"
#include "aft/host/Contacts.h"

namespace android {

namespace {

using Outcome = DecisionRecord::Outcome;

constexpr int kDispatch = 0;
constexpr int kConsume = 1;

/// A finger that the sensor reported longer ago than this is not the one on the panel.
constexpr int64_t kFingerDownRecentMs = 300;

/// How long after a key of the sensor a sideways slide still counts as what made it.
constexpr int64_t kSwipeKeyRecentMs = 300;

/// How long an enrolment keeps fingers off the panel after each of its starts.
constexpr int64_t kEnrollRecentMs = 1700;

}  // namespace

int ZqFrontFPAftProcessor::processKey(InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode, bool down,
                                      int32_t metaState, uint32_t policyFlags) {
    const DecisionRecorder recorder(kFrontFP, mapper, when);
    Decision decision(recorder, keyCode);
    if (mapper == nullptr || mapper->getDeviceName() != FingerprintKeys::kDeviceName) {
        return dispatched(decision, "another-device"_rule);
    }
    if (FingerprintKeys::isEvent(keyCode)) {
        if (!down) return fingerprintEventUp(keyCode, decision);
        return fingerprintEventDown(mapper, when, keyCode, scanCode, metaState, policyFlags, decision);
    }
    if (FingerprintKeys::isNotification(keyCode)) return notification(keyCode, down, when, decision);
    return dispatched(decision, "not-judged"_rule);
}

int ZqFrontFPAftProcessor::keyWhileOff(InputMapper* mapper, int64_t when, int32_t keyCode) {
    const DecisionRecorder recorder(kFrontFP, mapper, when);
    Decision decision(recorder, keyCode);
    if (internalKey(keyCode)) return consumed(decision, "sensor-notification"_rule);
    return dispatched(decision, "filter-off"_rule);
}

int ZqFrontFPAftProcessor::dispatched(Decision& decision, Rule rule, bool logged) {
    decision.record(Outcome::Dispatched, rule, logged);
    return kDispatch;
}

int ZqFrontFPAftProcessor::consumed(Decision& decision, Rule rule, bool logged) {
    decision.record(Outcome::Consumed, rule, logged);
    return kConsume;
}

/// Never dispatched; what it tells, later decisions ask for.
int ZqFrontFPAftProcessor::notification(int32_t keyCode, bool down, int64_t when, Decision& decision) {
    if (down && keyCode == FingerprintKeys::kFingerDown) {
        return consumed(decision, fingerDownOnSensor(when, decision), true);
    }
    bool logged = false;
    if (down && keyCode == FingerprintKeys::kIdentifyStart) logged = identifyStarted(when);
    if (down && keyCode == FingerprintKeys::kIdentifyEnd) identifyFinished(when);
    if (down && keyCode == FingerprintKeys::kEnrollStart) logged = enrollStarted(when);
    return consumed(decision, "sensor-notification"_rule, logged);
}

int ZqFrontFPAftProcessor::fingerprintEventUp(int32_t keyCode, Decision& decision) {
    mFPEventState.mFilterNextKey = false;
    mFPEventState.mFilterKeyCode = 0;

    const auto consumedDown = std::find(mFilteredKeys.begin(), mFilteredKeys.end(), keyCode);
    if (consumedDown == mFilteredKeys.end()) return dispatched(decision, "as-its-down"_rule);
    LOGD("remove the filtered key-up event keyCode=%d up", keyCode);
    decision.record(Outcome::Consumed, "as-its-down"_rule, true);
    mFilteredKeys.removeAt(static_cast<size_t>(consumedDown - mFilteredKeys.begin()));

    if (keyCode == FingerprintKeys::kEnter) {
        LOGD("%s, filter next AKEYCODE_KEYCODE_FINGERPRINT_FINGER_UP", mTouchSeqDesc.c_str());
        mFPEventState.mFilterNextKey = true;
        mFPEventState.mFilterKeyCode = FingerprintKeys::kFingerUp;
        mFPEventState.mFilterTouchSeq = mTouchSeq;
    }
    return kConsume;
}

int ZqFrontFPAftProcessor::fingerprintEventDown(InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode,
                                                int32_t metaState, uint32_t policyFlags, Decision& decision) {
    mFPEventState.updateFPKeyEvent(when, keyCode);
    const bool heldBack = mTouching && mFPEventState.delayDispatchKey(mTouchSeq, mapper, when, keyCode, scanCode,
                                                                      metaState, policyFlags, decision);
    if (heldBack) {
        decision.record(Outcome::HeldBack, "waits-for-finger"_rule, true);
    } else if (const KeyVerdict verdict = filterFingerPrint(keyCode, when, decision); verdict.consumes) {
        decision.record(Outcome::Consumed, verdict.rule, true);
    } else {
        LOGD("%s, process fingerprint event keycode=%d down", mTouchSeqDesc.c_str(), keyCode);
        mFPEventTime = toMs(when);
        mFPEventKeyCode = keyCode;
        return dispatched(decision, verdict.rule, true);
    }
    mFilteredKeys.add(keyCode);
    LOGI("%s, fingerprint event keycode=%d down filtered", mTouchSeqDesc.c_str(), keyCode);
    return kConsume;
}

/// Logs which of the two rules applies.
Rule ZqFrontFPAftProcessor::fingerDownOnSensor(int64_t when, Measurements& measured) {
    mFPEventState.updateFPKeyEvent(when, FingerprintKeys::kFingerDown);
    const AftArea filterArea = surface().filterArea;
    for (auto [id, p] : contacts(lastFrame(), lastFrame().touchingIdBits)) {
        LOGD("%s, receive finger down on FP, last touch point(id=%d, x=%d, y=%d), filter area:%s",
             mTouchSeqDesc.c_str(), id, p.x, p.y, filterArea.toString().c_str());
    }

    if (mNearbyPoints.touchRecently(when) && !mNearbyPoints.swipeOverEdge(measured)) {
        mFPEventState.mFilterNextKey = true;
        mFPEventState.mFilterKeyCode = 0;
        mFPEventState.mFilterTouchSeq = mTouchSeq;
        LOGI("%s, receive finger down on FP but TP touch recently, may filter next key with any keycode",
             mTouchSeqDesc.c_str());
        return "sensor-finger-explained"_rule;
    }
    LOGD("%s, new finger touch down on the FP, reset the wait state", mTouchSeqDesc.c_str());
    mFPEventState.mFilterNextKey = false;
    mFPEventState.mFilterKeyCode = 0;
    mFingerDownTime = toMs(when);
    return "sensor-finger-new"_rule;
}

/// @return whether it has been logged
bool ZqFrontFPAftProcessor::identifyStarted(int64_t when) {
    mIdentifyState.mState = IdentifyFPState::kIdentifying;
    mIdentifyState.mTouchSeq = mTouching ? mTouchSeq : 0;
    mIdentifyState.mStateTime = toMs(when);
    if (mIdentifyState.mTouchSeq == 0) return false;
    LOGD("Start identify finger in touchSeq#%d, mStateTime=%dms", mIdentifyState.mTouchSeq,
         static_cast<int32_t>(mIdentifyState.mStateTime));
    return true;
}

void ZqFrontFPAftProcessor::identifyFinished(int64_t when) {
    mIdentifyState.mState = IdentifyFPState::kIdentified;
    mIdentifyState.mStateTime = toMs(when);
}

/// @return whether it has been logged
bool ZqFrontFPAftProcessor::enrollStarted(int64_t when) {
    LOGI("start enroll the fingerprint");
    mEnrollTime = toMs(when);
    return true;
}

/// Logs what is consumed, and why.
ZqFrontFPAftProcessor::KeyVerdict ZqFrontFPAftProcessor::filterFingerPrint(int32_t keyCode, int64_t when,
                                                                           Measurements& measured) {
    if (touchingCentralArea(measured)) {
        LOGI("one or more fingers touching on centeral area, filter this fingerprint's event");
        return {true, "central-area"_rule};
    }
    if (mNearbyPoints.swipeOverEdge(measured)) {
        LOGI("finger may swipe over the fingerprint, report this fingerprint's event");
        return {false, "slide-over-sensor"_rule};
    }
    if (mNearbyPoints.touchRecently(when)) {
        LOGI("finger touching nearby the fingerprint, filter this fingerprint's event");
        return {true, "finger-nearby"_rule};
    }
    const bool meant = mFPEventState.mFilterKeyCode == 0 || mFPEventState.mFilterKeyCode == keyCode;
    if (mFPEventState.mFilterNextKey && meant) {
        mFPEventState.mFilterNextKey = false;
        LOGD("Finger down since touchSeq#%d mark this key should be filtered", mFPEventState.mFilterTouchSeq);
        return {true, "key-announced"_rule};
    }
    return {false, "no-finger"_rule};
}

/// Of the fingers outside the filter area, the one in the central area is measured, or else the last.
bool ZqFrontFPAftProcessor::touchingCentralArea(Measurements& measured) {
    const Surface on = surface();
    if (!mTouching || !on.landscape) return false;
    const uint32_t before = measured.count();
    for (auto [id, p] : contacts(lastFrame(), lastFrame().touchingIdBits)) {
        if (on.filterArea.contains(p.x, p.y)) continue;
        measured.forgetSince(before);
        if (measured.inside({.name = "x in the central area"}, {.name = "y in the central area"}, on.centralArea, p.x,
                            p.y)) {
            LOGI("During TouchSeq#%d point(%d, %d) in the central area", mTouchSeq, p.x, p.y);
            return true;
        }
    }
    return false;
}

/// The latest frame as it came in, or an empty one where there was no memory to keep it.
const RawPointerData& ZqFrontFPAftProcessor::lastFrame() const {
    static constexpr RawPointerData kNoFrame{};
    return mLastRawPointerData != nullptr ? *mLastRawPointerData : kNoFrame;
}

bool ZqFrontFPAftProcessor::fingerPrintDownRecently(int64_t when, Measurements& measured) const {
    const int32_t key = mFPEventTime > mFingerDownTime ? mFPEventKeyCode : FingerprintKeys::kFingerDown;
    const int64_t then = std::max(mFingerDownTime, mFPEventTime);
    return recently({.name = "since a finger on the sensor", .unit = "ms"}, toMs(when), then, kFingerDownRecentMs,
                    keyAt(key, then), measured);
}

bool ZqFrontFPAftProcessor::enrollFingerPrintRecently(int64_t when, Measurements& measured) const {
    return measured.withinSince({.name = "since enrolment", .unit = "ms"}, msFrom(mEnrollTime, toMs(when)), 0,
                                kEnrollRecentMs - 1,  // an enrolment of just now counts
                                keyAt(FingerprintKeys::kEnrollStart, mEnrollTime));
}

bool ZqFrontFPAftProcessor::swipeOnFPRecently(int64_t when, Measurements& measured) const {
    const int64_t then = mFPEventState.mLastKeyEventTime;
    const int32_t key = mFPEventState.mLastKeyCode;
    return recently({.name = "since the sensor's last key", .unit = "ms"}, toMs(when), then, kSwipeKeyRecentMs,
                    keyAt(key, then), measured) &&
           FingerprintKeys::comesFromSwipe(key) && mNearbyPoints.swipeOverEdge(measured);
}

}  // namespace android

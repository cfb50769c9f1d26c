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

constexpr int kDispatch = 0;
constexpr int kConsume = 1;

/// A finger that the sensor reported longer ago than this is not the one on the panel.
constexpr uint64_t kFingerDownRecentMs = 300;

/// How long after a key of the sensor a sideways slide still counts as what made it.
constexpr uint64_t kSwipeKeyRecentMs = 300;

/// How long an enrolment keeps fingers off the panel after each of its starts.
constexpr uint64_t kEnrollRecentMs = 1700;

}  // namespace

int ZqFrontFPAftProcessor::processKey(InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode, bool down,
                                      int32_t metaState, uint32_t policyFlags) {
    if (mapper == nullptr || mapper->getDeviceName() != FingerprintKeys::kDeviceName) return kDispatch;
    if (FingerprintKeys::isEvent(keyCode)) {
        if (!down) return fingerprintEventUp(keyCode);
        return fingerprintEventDown(mapper, when, keyCode, scanCode, metaState, policyFlags);
    }
    if (!FingerprintKeys::isNotification(keyCode)) return kDispatch;
    if (!down) return kConsume;
    switch (keyCode) {
        case FingerprintKeys::kFingerDown: fingerDownOnSensor(when); break;
        case FingerprintKeys::kIdentifyStart: identifyStarted(when); break;
        case FingerprintKeys::kIdentifyEnd: identifyFinished(when); break;
        case FingerprintKeys::kEnrollStart: enrollStarted(when); break;
        default: break;
    }
    return kConsume;
}

int ZqFrontFPAftProcessor::fingerprintEventUp(int32_t keyCode) {
    mFPEventState.mFilterNextKey = false;
    mFPEventState.mFilterKeyCode = 0;

    const auto consumed = std::find(mFilteredKeys.begin(), mFilteredKeys.end(), keyCode);
    if (consumed == mFilteredKeys.end()) return kDispatch;
    LOGD("remove the filtered key-up event keyCode=%d up", keyCode);
    mFilteredKeys.removeAt(static_cast<size_t>(consumed - mFilteredKeys.begin()));

    if (keyCode == FingerprintKeys::kEnter) {
        LOGD("%s, filter next AKEYCODE_KEYCODE_FINGERPRINT_FINGER_UP", mTouchSeqDesc.c_str());
        mFPEventState.mFilterNextKey = true;
        mFPEventState.mFilterKeyCode = FingerprintKeys::kFingerUp;
        mFPEventState.mFilterTouchSeq = mTouchSeq;
    }
    return kConsume;
}

int ZqFrontFPAftProcessor::fingerprintEventDown(InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode,
                                                int32_t metaState, uint32_t policyFlags) {
    mFPEventState.updateFPKeyEvent(when, keyCode);
    const bool heldBack =
        mTouching && mFPEventState.delayDispatchKey(mTouchSeq, mapper, when, keyCode, scanCode, metaState, policyFlags);
    if (!heldBack && !filterFingerPrint(keyCode, when)) {
        LOGD("%s, process fingerprint event keycode=%d down", mTouchSeqDesc.c_str(), keyCode);
        mFPEventTime = toMs(when);
        return kDispatch;
    }
    mFilteredKeys.add(keyCode);
    LOGI("%s, fingerprint event keycode=%d down filtered", mTouchSeqDesc.c_str(), keyCode);
    return kConsume;
}

void ZqFrontFPAftProcessor::fingerDownOnSensor(int64_t when) {
    mFPEventState.updateFPKeyEvent(when, FingerprintKeys::kFingerDown);
    const AftArea filterArea = surface().filterArea;
    for (auto [id, p] : contacts(lastFrame(), lastFrame().touchingIdBits)) {
        LOGD("%s, receive finger down on FP, last touch point(id=%d, x=%d, y=%d), filter area:%s",
             mTouchSeqDesc.c_str(), id, p.x, p.y, filterArea.toString().c_str());
    }

    if (mNearbyPoints.touchRecently(when) && !mNearbyPoints.swipeOverEdge()) {
        mFPEventState.mFilterNextKey = true;
        mFPEventState.mFilterKeyCode = 0;
        mFPEventState.mFilterTouchSeq = mTouchSeq;
        LOGI("%s, receive finger down on FP but TP touch recently, may filter next key with any keycode",
             mTouchSeqDesc.c_str());
        return;
    }
    LOGD("%s, new finger touch down on the FP, reset the wait state", mTouchSeqDesc.c_str());
    mFPEventState.mFilterNextKey = false;
    mFPEventState.mFilterKeyCode = 0;
    mFingerDownTime = toMs(when);
}

void ZqFrontFPAftProcessor::identifyStarted(int64_t when) {
    mIdentifyState.mState = IdentifyFPState::kIdentifying;
    mIdentifyState.mTouchSeq = mTouching ? mTouchSeq : 0;
    mIdentifyState.mStateTime = toMs(when);
    if (mIdentifyState.mTouchSeq != 0) {
        LOGD("Start identify finger in touchSeq#%d, mStateTime=%dms", mIdentifyState.mTouchSeq,
             static_cast<int32_t>(mIdentifyState.mStateTime));
    }
}

void ZqFrontFPAftProcessor::identifyFinished(int64_t when) {
    mIdentifyState.mState = IdentifyFPState::kIdentified;
    mIdentifyState.mStateTime = toMs(when);
}

void ZqFrontFPAftProcessor::enrollStarted(int64_t when) {
    LOGI("start enroll the fingerprint");
    mEnrollTime = toMs(when);
}

bool ZqFrontFPAftProcessor::filterFingerPrint(int32_t keyCode, int64_t when) {
    if (touchingCentralArea()) {
        LOGI("one or more fingers touching on centeral area, filter this fingerprint's event");
        return true;
    }
    if (mNearbyPoints.swipeOverEdge()) {
        LOGI("finger may swipe over the fingerprint, report this fingerprint's event");
        return false;
    }
    if (mNearbyPoints.touchRecently(when)) {
        LOGI("finger touching nearby the fingerprint, filter this fingerprint's event");
        return true;
    }
    const bool meant = mFPEventState.mFilterKeyCode == 0 || mFPEventState.mFilterKeyCode == keyCode;
    if (mFPEventState.mFilterNextKey && meant) {
        mFPEventState.mFilterNextKey = false;
        LOGD("Finger down since touchSeq#%d mark this key should be filtered", mFPEventState.mFilterTouchSeq);
        return true;
    }
    return false;
}

bool ZqFrontFPAftProcessor::touchingCentralArea() {
    const Surface on = surface();
    if (!mTouching || !on.landscape) return false;
    for (auto [id, p] : contacts(lastFrame(), lastFrame().touchingIdBits)) {
        if (!on.filterArea.contains(p.x, p.y) && on.centralArea.contains(p.x, p.y)) {
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

bool ZqFrontFPAftProcessor::fingerPrintDownRecently(int64_t when) const {
    return recently(toMs(when), std::max(mFingerDownTime, mFPEventTime), kFingerDownRecentMs);
}

bool ZqFrontFPAftProcessor::enrollFingerPrintRecently(int64_t when) const {
    return msSince(toMs(when), mEnrollTime) < kEnrollRecentMs;  // an enrolment of just now counts
}

bool ZqFrontFPAftProcessor::swipeOnFPRecently(int64_t when) const {
    return recently(toMs(when), mFPEventState.mLastKeyEventTime, kSwipeKeyRecentMs) &&
           FingerprintKeys::comesFromSwipe(mFPEventState.mLastKeyCode) && mNearbyPoints.swipeOverEdge();
}

}  // namespace android

#include "aft/foldable/ZqFoldableDeviceAftProcessor.h"

#include "aft/host/PluginApi.h"

#define AFT_LOG_TAG "ZqFoldableDeviceAftProcessor"

#include "aft/host/Log.h"

#ifndef ZQAFT_FOLDABLE
#define ZQAFT_FOLDABLE 0
#endif

ANDROID_SINGLETON_STATIC_INSTANCE(android::ZqFoldableDeviceAftProcessor)

namespace android {

ZqFoldableDeviceAftProcessor::ZqFoldableDeviceAftProcessor() : mFoldableStateManager(new ZqAftFoldableStateManager()) {}

bool ZqFoldableDeviceAftProcessor::enabled() { return ZQAFT_FOLDABLE != 0; }

void ZqFoldableDeviceAftProcessor::start() {
    LOGI("ZqFoldableDeviceAftProcessor::start");
    if (mFoldableStateManager != nullptr) mFoldableStateManager->enableSensor();
}

void ZqFoldableDeviceAftProcessor::stop() {
    LOGI("ZqFoldableDeviceAftProcessor::stop");
    if (mFoldableStateManager != nullptr) mFoldableStateManager->disableSensor();
    mCancelled = false;
}

void ZqFoldableDeviceAftProcessor::processRawTouches(InputMapper* mapper, long long when, RawPointerData& data,
                                                     BitSet32& idBits) {
    if (touchingEnd(data, when)) return;
    if (mFoldableStateManager == nullptr || !mFoldableStateManager->enabled()) {
        LOGW("mFoldableStateManager not enabled.");
        const DecisionRecorder recorder(kFoldAngle, mapper, when);
        if (!mIdle) Decision(recorder).record(DecisionRecord::Outcome::Noted, "fold-idle"_rule, true);
        mIdle = true;
        return;
    }
    mIdle = false;
    const DecisionRecorder recorder(kFoldAngle, mapper, when);
    Decision decision(recorder);
    const bool folds = mFoldableStateManager->getFoldState(decision) == ZqAftFoldableStateManager::kChanging;
    bool cancelled = mCancelled;
    if (folds && !cancelled) {
        LOGW("cancel touch during folding the device.");
        decision.record(DecisionRecord::Outcome::Cancelled, "folding"_rule, true);
        if (mapper != nullptr) mapper->cancelTouch(when);
        cancelled = true;
        mCancelled = true;
    }
    if (!cancelled) return;
    LOGW("cancel touch during folding the device.");
    if (recorder.listening()) {
        recordEach(recorder, data, idBits, DecisionRecord::Outcome::Removed, "fold-cancelled"_rule);
    }
    filterAndCompactPointers(&data, &idBits, &idBits);
}

bool ZqFoldableDeviceAftProcessor::touchingEnd(const RawPointerData& data, long long /*when*/) {
    if (!data.touchingIdBits.isEmpty()) return false;
    mCancelled = false;
    return true;
}

}  // namespace android

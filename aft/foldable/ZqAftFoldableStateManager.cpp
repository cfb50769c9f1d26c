#include "aft/foldable/ZqAftFoldableStateManager.h"

#define AFT_LOG_TAG "ZqFoldableDeviceAftProcessor"

#include "aft/host/Log.h"

namespace android {

using hardware::hidl_string;
using hardware::Return;
using hardware::Void;
using hidl::base::V1_0::IBase;

namespace {

/// Which value of an event is the angle.
constexpr size_t kAngle = 2;

/// Samples that a window holds. More would see a fold later, fewer would take a shake of the hand for one.
constexpr size_t kWindow = 30;

/// Averages that lie further apart show a device that is being folded.
constexpr float kSteadySpread = 10.0F;

/// Where the search for the lowest and the highest average begins. Averages that all lie beyond one of these are
/// measured against it.
constexpr float kAboveAll = 1000.0F;
constexpr float kBelowAll = -1000.0F;

}  // namespace

ZqAftFoldableStateManager::ZqAftFoldableStateManager()
    : SensorSubscription({.type = 3,
                          .filter = kFoldAngle,
                          .logTag = AFT_LOG_TAG,
                          .connecting = "ZqAftFoldableStateManager init",
                          .enable = "enableSensor",
                          .disable = "disableSensor",
                          .enabledFlag = "mSensorEnabled",
                          .null = "nullptr",
                          .enablingConnects = true}) {}

ZqAftFoldableStateManager::~ZqAftFoldableStateManager() { deInit(); }

bool ZqAftFoldableStateManager::enabled() {
    Mutex::Autolock lock(mOperationLock);
    return SensorSubscription::enabled();
}

int ZqAftFoldableStateManager::getFoldState(Measurements& measured) {
    RWLock::AutoRLock lock(mStateLock);
    measured.add(mMeasured);
    return mFoldState;
}

void ZqAftFoldableStateManager::handleSensorEvent(const Event& event) {
    Mutex::Autolock lock(mWindowsLock);
    const DecisionRecorder recorder(kFoldAngle);
    Decision decision(recorder);
    decision.fact({.name = "fold angle"}, double{event.u.data[kAngle]});
    Measurements measured(true);  // kept for the frames that ask for the state
    const int state = stablizeAngle(event.u.data[kAngle], measured);
    decision.add(measured);
    if (state == getFoldState()) return decision.record(DecisionRecord::Outcome::Sampled, "fold-state"_rule);
    decision.record(DecisionRecord::Outcome::Noted, "fold-state"_rule);
    RWLock::AutoWLock writing(mStateLock);
    mFoldState = state;
    mMeasured = measured;
}

int ZqAftFoldableStateManager::stablizeAngle(const float& angle, Measurements& measured) {
    const auto place = static_cast<uint8_t>(mAngleIndex);
    mAngleIndex = static_cast<int8_t>((place + 1) % kWindow);
    if (mAngles.size() < kWindow) {
        mAngles.add(angle);
        mAverages.add(angle);
        mAngleSum += angle;
        return kSteady;
    }
    mAngleSum -= mAngles[place];
    mAngles.editItemAt(place) = angle;
    mAngleSum += angle;
    mAverages.editItemAt(place) = mAngleSum / static_cast<float>(kWindow);
    return averagesSpread(measured) ? kChanging : kSteady;
}

bool ZqAftFoldableStateManager::averagesSpread(Measurements& measured) const {
    float lowest = kAboveAll;
    float highest = kBelowAll;
    for (const float average : mAverages) {
        if (average < lowest) lowest = average;
        if (average > highest) highest = average;
    }
    return measured.above({.name = "spread of the averages"}, highest - lowest, kSteadySpread);
}

/// The ring's next place stays: only a new connection begins at its start.
void ZqAftFoldableStateManager::emptyWindows() {
    Mutex::Autolock lock(mWindowsLock);
    mAngles.clear();
    mAverages.clear();
    mAngleSum = 0;
}

void ZqAftFoldableStateManager::haveInited() {
    Mutex::Autolock lock(mWindowsLock);
    mAngles.setCapacity(kWindow);
    mAverages.setCapacity(kWindow);
    mAngleSum = 0;
    mAngleIndex = 0;
}

sp<hidl_death_recipient> ZqAftFoldableStateManager::newDeathRecipient() { return new SensorDeathRecipient(); }

sp<IEventQueueCallback> ZqAftFoldableStateManager::newEventCallback() {
    return new ZqAftFoldableSensorEventCallback(this);
}

Return<void> ZqAftFoldableSensorEventCallback::onEvent(const Event& event) noexcept {
    if (const sp<ZqAftFoldableStateManager> manager = mManager.promote(); manager != nullptr) {
        manager->handleSensorEvent(event);
    }
    return Void();
}

void ZqAftFoldableStateManager::SensorDeathRecipient::serviceDied(uint64_t /*cookie*/,
                                                                  const wp<IBase>& /*who*/) noexcept {
    LOGI("ZqAftFoldableStateManager serviceDied!");
}

Return<void> ZqAftFoldableStateManager::SensorDeathRecipient::onRegistration(const hidl_string& /*fqName*/,
                                                                             const hidl_string& /*name*/,
                                                                             bool /*preexisting*/) noexcept {
    return Void();
}

}  // namespace android

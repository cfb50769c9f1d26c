#include "aft/sensor/SensorSubscription.h"

/// Each sensor's lines go out under its manager's tag, with the names of its manager's operations.
#define AFT_LOG_TAG mSensor.logTag

#include "aft/host/Decision.h"
#include "aft/host/Log.h"

namespace android {

using hardware::Return;

bool SensorSubscription::init() {
    Mutex::Autolock lock(mOperationLock);
    return initLocked();
}

bool SensorSubscription::initLocked() {
    if (mSensor.connecting != nullptr) LOGE("%s", mSensor.connecting);
    if (mInitCheck) return true;
    if (mSensorManager == nullptr && !findService()) return false;
    if (!makeQueue()) return false;
    mInitCheck = true;
    haveInited();
    return true;
}

/// A service that was found stays found, even where its death could not be linked.
bool SensorSubscription::findService() {
    mSensorManager = ISensorManager::getService("default", false);
    if (mSensorManager == nullptr) {
        LOGE("fail to get SensorManager");
        record("sensor-failed"_rule);
        return false;
    }
    if (mDeathRecipient == nullptr) mDeathRecipient = newDeathRecipient();
    const Return<bool> linked = mSensorManager->linkToDeath(mDeathRecipient, 0);
    if (!linked.isOk()) {
        LOGE("Transaction error in linking to SensorManager death");
        record("sensor-failed"_rule);
    }
    return linked.isOk();
}

/// What the service delivers is kept as it is, be it nothing: enabling looks at it.
bool SensorSubscription::makeQueue() {
    if (mSensorEventCallback == nullptr) mSensorEventCallback = newEventCallback();
    sp<IEventQueue> delivered;
    const Return<void> made = mSensorManager->createEventQueue(
        mSensorEventCallback, [&](const sp<IEventQueue>& queue, Result /*result*/) { delivered = queue; });
    if (!made.isOk()) {
        LOGI("createEventQueue hidl transport error");
        record("sensor-failed"_rule);
        return false;
    }
    mSensorEventQueue = delivered;
    return true;
}

void SensorSubscription::enable() {
    LOGI("%s", mSensor.enable);
    Mutex::Autolock lock(mOperationLock);
    if (mSensorEnabled) return;
    if (!mInitCheck && !(mSensor.enablingConnects && initLocked())) {
        LOGW("%s() mInitCheck is false", mSensor.enable);
        record("sensor-failed"_rule);
        return;
    }
    if (mSensorManager == nullptr || mSensorEventQueue == nullptr) {
        LOGW("%s() mSensorManager/mSensorEventQueue is %s", mSensor.enable, mSensor.null);
        record("sensor-failed"_rule);
        return;
    }
    SensorInfo sensor;
    if (!findSensor(sensor) || !enableOnQueue(sensor.sensorHandle)) return;
    LOGI("%s success", mSensor.enable);
    record("sensor-on"_rule);
    mSensorHandle = sensor.sensorHandle;
    mSensorEnabled = true;
}

bool SensorSubscription::findSensor(SensorInfo& sensor) {
    Result result = Result::OK;
    const Return<void> asked = mSensorManager->getDefaultSensor(static_cast<SensorType>(mSensor.type),
                                                                [&](const SensorInfo& found, Result delivered) {
                                                                    sensor = found;
                                                                    result = delivered;
                                                                });
    if (!asked.isOk()) {
        LOGE("getDefaultSensor(type=%d) Hidl transport error", mSensor.type);
        record("sensor-failed"_rule);
        return false;
    }
    if (result != Result::OK) {
        LOGI("%s getDefaultSensor res not ok", mSensor.enable);
        record("sensor-failed"_rule);
        return false;
    }
    return true;
}

bool SensorSubscription::enableOnQueue(int32_t handle) {
    constexpr int32_t kAsFastAsItCan = 0;  // sampling period, microseconds
    constexpr int64_t kNoBatching = 0;     // report latency, microseconds
    const Return<Result> asked = mSensorEventQueue->enableSensor(handle, kAsFastAsItCan, kNoBatching);
    if (!asked.isOk()) {
        LOGI("enableSensor %d Hidl transport error", handle);
        record("sensor-failed"_rule);
        return false;
    }
    const Result result = asked;
    if (result != Result::OK) {
        LOGI("sensorEventQueue enableSensor fail");
        record("sensor-failed"_rule);
        return false;
    }
    return true;
}

/// A sensor counts as disabled once the call has got through, even where the service refused.
void SensorSubscription::disable() {
    LOGI("%s", mSensor.disable);
    Mutex::Autolock lock(mOperationLock);
    if (!mInitCheck || !mSensorEnabled) {
        LOGW("%s() mInitCheck=%d, %s=%d", mSensor.disable, mInitCheck ? 1 : 0, mSensor.enabledFlag,
             mSensorEnabled ? 1 : 0);
        return;
    }
    if (mSensorEventQueue == nullptr) {
        LOGW("%s() mSensorEventQueue is %s", mSensor.disable, mSensor.null);
        record("sensor-failed"_rule);
        return;
    }
    const Return<Result> asked = mSensorEventQueue->disableSensor(mSensorHandle);
    if (!asked.isOk()) {
        LOGE("disable Sensor Hidl transport error");
        record("sensor-failed"_rule);
        return;
    }
    const Result result = asked;
    if (result != Result::OK) {
        LOGE("disableSensor fail:%d", mSensorHandle);
        record("sensor-failed"_rule);
    }
    mSensorEnabled = false;
    mSensorHandle = 0;
    haveDisabled();
    LOGI("disableSensor success");
    record("sensor-off"_rule);
}

void SensorSubscription::deInit() {
    Mutex::Autolock lock(mOperationLock);
    mInitCheck = false;
    mSensorEnabled = false;
    mDeathRecipient = nullptr;
    mSensorEventCallback = nullptr;
    mSensorEventQueue = nullptr;
    mSensorManager = nullptr;
    haveDeInited();
    record("sensor-lost"_rule, false);
}

void SensorSubscription::record(Rule rule, bool logged) const {
    const DecisionRecorder recorder(mSensor.filter);
    Decision(recorder).record(DecisionRecord::Outcome::Noted, rule, logged);
}

}  // namespace android

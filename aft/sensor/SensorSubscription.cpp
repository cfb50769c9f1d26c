#include "aft/sensor/SensorSubscription.h"

/// Each sensor's lines go out under its manager's tag, with the names of its manager's operations.
#define AFT_LOG_TAG kLogTag.of(mUser)

#include "aft/host/Log.h"

namespace android {

using hardware::Return;
using namespace sensor_differences;

bool SensorSubscription::init() {
    Mutex::Autolock lock(mOperationLock);
    return initLocked();
}

bool SensorSubscription::initLocked() {
    if (const char* entry = kConnecting.of(mUser)) LOGE("%s", entry);
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
        return false;
    }
    if (mDeathRecipient == nullptr) mDeathRecipient = newDeathRecipient();
    const Return<bool> linked = mSensorManager->linkToDeath(mDeathRecipient, 0);
    if (!linked.isOk()) LOGE("Transaction error in linking to SensorManager death");
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
        return false;
    }
    mSensorEventQueue = delivered;
    return true;
}

void SensorSubscription::enable() {
    LOGI("%s", kEnable.of(mUser));
    Mutex::Autolock lock(mOperationLock);
    if (mSensorEnabled) return;
    if (!mInitCheck && !(kEnablingConnects.of(mUser) && initLocked())) {
        LOGW("%s() mInitCheck is false", kEnable.of(mUser));
        return;
    }
    if (mSensorManager == nullptr || mSensorEventQueue == nullptr) {
        LOGW("%s() mSensorManager/mSensorEventQueue is %s", kEnable.of(mUser), kNull.of(mUser));
        return;
    }
    SensorInfo sensor;
    if (!findSensor(sensor) || !enableOnQueue(sensor.sensorHandle)) return;
    LOGI("%s success", kEnable.of(mUser));
    mSensorHandle = sensor.sensorHandle;
    mSensorEnabled = true;
}

bool SensorSubscription::findSensor(SensorInfo& sensor) {
    Result result = Result::OK;
    const Return<void> asked = mSensorManager->getDefaultSensor(static_cast<SensorType>(kSensorType.of(mUser)),
                                                                [&](const SensorInfo& found, Result delivered) {
                                                                    sensor = found;
                                                                    result = delivered;
                                                                });
    if (!asked.isOk()) {
        LOGE("getDefaultSensor(type=%d) Hidl transport error", kSensorType.of(mUser));
        return false;
    }
    if (result != Result::OK) {
        LOGI("%s getDefaultSensor res not ok", kEnable.of(mUser));
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
        return false;
    }
    const Result result = asked;
    if (result != Result::OK) {
        LOGI("sensorEventQueue enableSensor fail");
        return false;
    }
    return true;
}

/// A sensor counts as disabled once the call has got through, even where the service refused.
void SensorSubscription::disable() {
    LOGI("%s", kDisable.of(mUser));
    Mutex::Autolock lock(mOperationLock);
    if (!mInitCheck || !mSensorEnabled) {
        LOGW("%s() mInitCheck=%d, %s=%d", kDisable.of(mUser), mInitCheck ? 1 : 0, kEnabledFlag.of(mUser),
             mSensorEnabled ? 1 : 0);
        return;
    }
    if (mSensorEventQueue == nullptr) {
        LOGW("%s() mSensorEventQueue is %s", kDisable.of(mUser), kNull.of(mUser));
        return;
    }
    const Return<Result> asked = mSensorEventQueue->disableSensor(mSensorHandle);
    if (!asked.isOk()) {
        LOGE("disable Sensor Hidl transport error");
        return;
    }
    const Result result = asked;
    if (result != Result::OK) LOGE("disableSensor fail:%d", mSensorHandle);
    mSensorEnabled = false;
    mSensorHandle = 0;
    haveDisabled();
    LOGI("disableSensor success");
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
}

}  // namespace android

#include "aft/slidecover/ZqAftSCStateManager.h"

#include <cutils/properties.h>
#include <utils/Timers.h>

#include <cstdlib>
#include <optional>

#include "aft/host/Decision.h"
#include "aft/host/FloatToInt.h"

#define AFT_LOG_TAG "ZqAftSCStateManager"

#include "aft/host/Log.h"

namespace android {

using hardware::hidl_string;
using hardware::Return;
using hardware::Void;
using hidl::base::V1_0::IBase;

namespace {

constexpr char kHallProperty[] = "ro.config.zq_hall_prop";

/// What the first value of an event says when the second is the cover's state.
constexpr int32_t kTellsCoverState = 1;

/// The cover's state that an event tells, if it tells one.
std::optional<int32_t> coverState(const Event& event) {
    if (toInt32(event.u.data[0]) != kTellsCoverState) return std::nullopt;
    const std::optional<int32_t> state = toInt32(event.u.data[1]);
    return state && SCFitlterState::isKnown(*state) ? state : std::nullopt;
}

}  // namespace

Mutex ZqAftSCStateInterface::sLock;
sp<ZqAftSCStateInterface> ZqAftSCStateInterface::sInstance;

bool ZqAftSCStateInterface::isSupport() {
    char value[PROPERTY_VALUE_MAX];
    property_get(kHallProperty, value, "0");
    const int supported = static_cast<int>(std::strtol(value, nullptr, 10)) & 1;
    LOGI("isSupport=%d", supported);
    return supported != 0;
}

sp<ZqAftSCStateInterface> ZqAftSCStateInterface::getInstance() {
    LOGI("getInstance");
    Mutex::Autolock lock(sLock);
    if (sInstance == nullptr) sInstance = new ZqAftSCStateManager();
    return sInstance;
}

ZqAftSCStateManager::ZqAftSCStateManager()
    : SensorSubscription({.type = 65557,
                          .filter = kSlideCover,
                          .logTag = AFT_LOG_TAG,
                          .connecting = nullptr,
                          .enable = "enableSCSensor",
                          .disable = "disableSCSensor",
                          .enabledFlag = "mSCSensorEnabled",
                          .null = "NULL",
                          .enablingConnects = false}) {}

ZqAftSCStateManager::~ZqAftSCStateManager() { deInit(); }

bool ZqAftSCStateManager::getSCFilterState(SCFitlterState& out) {
    Mutex::Autolock lock(mLock);
    if (!enabled()) {
        LOGI("mSCSensorEnabled is false");
        return false;
    }
    out = mFilterState;
    return true;
}

void ZqAftSCStateManager::handleSensorEvent(const Event& event) {
    Mutex::Autolock lock(mLock);
    const std::optional<int32_t> state = coverState(event);
    const DecisionRecorder recorder(kSlideCover);
    Decision decision(recorder);
    if (state) decision.fact({.name = "cover state"}, *state);
    if (!state || *state == mFilterState.state) {
        return decision.record(DecisionRecord::Outcome::Sampled, "cover-state"_rule);
    }
    mFilterState = {.stateTime = systemTime(SYSTEM_TIME_MONOTONIC), .state = *state};
    LOGI("handleSensorEvent event.type=%d state=%d, timestamp=%lld ns, sensorHandle=%d",
         static_cast<int>(event.sensorType), *state, static_cast<long long>(event.timestamp), event.sensorHandle);
    decision.record(DecisionRecord::Outcome::Noted, "cover-state"_rule, true);
}

sp<hidl_death_recipient> ZqAftSCStateManager::newDeathRecipient() { return new SensorDeathRecipient(this); }

sp<IEventQueueCallback> ZqAftSCStateManager::newEventCallback() { return new ZqAftSCSensorEventCallback(this); }

Return<void> ZqAftSCSensorEventCallback::onEvent(const Event& event) noexcept {
    if (const sp<ZqAftSCStateManager> manager = mManager.promote(); manager != nullptr) {
        manager->handleSensorEvent(event);
    }
    return Void();
}

/// Letting go gives this recipient up: from there on nothing of it is used.
void ZqAftSCStateManager::SensorDeathRecipient::serviceDied(uint64_t /*cookie*/, const wp<IBase>& /*who*/) noexcept {
    const sp<ZqAftSCStateManager> manager = mSCFilter.promote();
    Mutex::Autolock lock(sLock);
    if (manager == nullptr) {
        LOGW("mSCFilter is NULL");
        return;
    }
    manager->deInit();
}

Return<void> ZqAftSCStateManager::SensorDeathRecipient::onRegistration(const hidl_string& /*fqName*/,
                                                                       const hidl_string& /*name*/,
                                                                       bool /*preexisting*/) noexcept {
    const sp<ZqAftSCStateManager> manager = mSCFilter.promote();
    Mutex::Autolock lock(sLock);
    if (manager == nullptr) {
        LOGW("mSCFilter is NULL");
        return Void();
    }
    manager->init();
    manager->enableSCSensor();
    return Void();
}

}  // namespace android

#pragma once

#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <utils/Mutex.h>
#include <utils/RefBase.h>

#include <cstdint>

#include "aft/sensor/SensorSubscription.h"
#include "aft/slidecover/SCFitlterState.h"
#include "aft/slidecover/ZqAftSCStateInterface.h"

namespace android {

/// Follows the hall sensor that tells where the slide cover is, and keeps the latest state with the time of its change.
/// It connects to the sensor service once, as it is made; the host's input start and exit enable and disable the
/// sensor. When the service dies it lets go, and stays without a connection unless the service's return is announced to
/// it. The last state outlives all of that.
///
/// Threads: events, deaths and registrations come on the platform's, getSCFilterState() on the input reader's, the rest
/// on any. Events and readers share mLock alone, which is never held while the service is called.
class ZqAftSCStateManager final : public ZqAftSCStateInterface, private SensorSubscription {
  public:
    ZqAftSCStateManager();
    ~ZqAftSCStateManager() override;

    /// Connects, once somebody holds the manager: from then on it may hear of things.
    void onFirstRef() override { init(); }

    void enableSCSensor() override { enable(); }
    void disableSCSensor() override { disable(); }
    bool getSCFilterState(SCFitlterState& out) override;

    using SensorSubscription::deInit;
    using SensorSubscription::enabled;
    using SensorSubscription::init;
    using SensorSubscription::initCheck;

    /// Takes in one event of any sensor; those that are no valid cover state are ignored.
    void handleSensorEvent(const Event& event);

    /// Hears of the service's death and return.
    class SensorDeathRecipient : public hidl::manager::V1_0::IServiceNotification, public hidl_death_recipient {
      public:
        explicit SensorDeathRecipient(ZqAftSCStateManager* manager) : mSCFilter(manager) {}

        hardware::Return<void> onRegistration(const hardware::hidl_string& fqName, const hardware::hidl_string& name,
                                              bool preexisting) noexcept override;
        void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) noexcept override;

      private:
        const wp<ZqAftSCStateManager> mSCFilter;
    };

  private:
    sp<hidl_death_recipient> newDeathRecipient() override;
    sp<IEventQueueCallback> newEventCallback() override;

    Mutex mLock;  ///< guards mFilterState
    SCFitlterState mFilterState;
};

/// Brings the events of the manager's queue to it.
class ZqAftSCSensorEventCallback : public IEventQueueCallback {
  public:
    explicit ZqAftSCSensorEventCallback(ZqAftSCStateManager* manager) : mManager(manager) {}

    hardware::Return<void> onEvent(const Event& event) noexcept override;

  private:
    const wp<ZqAftSCStateManager> mManager;
};

}  // namespace android

#pragma once

#include <android/hidl/manager/1.0/IServiceNotification.h>
#include <utils/Mutex.h>
#include <utils/RWLock.h>
#include <utils/RefBase.h>
#include <utils/Vector.h>

#include <cstdint>

#include "aft/host/Decision.h"
#include "aft/sensor/SensorSubscription.h"

namespace android {

/// The filter's name in decision records.
inline constexpr char kFoldAngle[] = "fold-angle";

/// Follows the fold angle and tells whether the device is being folded. Each sample goes into a window of the last 30;
/// while their moving averages, of which the last 30 are kept too, spread over more than 10 units, the angle is
/// changing. The unit is the sensor's own. A window that is not yet full says nothing.
///
/// It connects to the sensor service with the first enabling. The service's death is logged and changes nothing.
///
/// Threads: events come on the platform's, getFoldState() and enabled() on the input reader's, the rest on any. The
/// windows have a lock of their own, so that a sample and an emptying never meet; it is never held while the service is
/// called.
class ZqAftFoldableStateManager : public RefBase, private SensorSubscription {
  public:
    static constexpr int kSteady = 0;
    static constexpr int kChanging = 2;

    ZqAftFoldableStateManager();
    ~ZqAftFoldableStateManager() override;

    using SensorSubscription::deInit;
    using SensorSubscription::initLocked;  ///< for whoever has the manager to itself; enabling begins with it
    void enableSensor() { enable(); }
    void disableSensor() { disable(); }
    using SensorSubscription::initCheck;
    /// Whether the sensor is enabled. Waits while an enabling or disabling talks to the service.
    bool enabled();

    /// kSteady or kChanging. It stays as it is while the sensor is disabled.
    /// @param measured gains the comparison that made the state what it is
    int getFoldState(Measurements& measured = Measurements::unheard());

    /// Takes in one event of any sensor.
    void handleSensorEvent(const Event& event);

    /// Puts one sample into the windows. @return the fold state that they show now
    /// Takes no lock: handleSensorEvent() does.
    /// @param measured gains what was compared
    int stablizeAngle(const float& angle, Measurements& measured = Measurements::unheard());

    /// Hears of the service's death and return, and leaves all as it is.
    class SensorDeathRecipient : public hidl::manager::V1_0::IServiceNotification, public hidl_death_recipient {
      public:
        hardware::Return<void> onRegistration(const hardware::hidl_string& fqName, const hardware::hidl_string& name,
                                              bool preexisting) noexcept override;
        void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) noexcept override;
    };

  private:
    sp<hidl_death_recipient> newDeathRecipient() override;
    sp<IEventQueueCallback> newEventCallback() override;
    void haveInited() override;
    void haveDisabled() override { emptyWindows(); }
    void haveDeInited() override { emptyWindows(); }

    void emptyWindows();
    bool averagesSpread(Measurements& measured) const;

    Mutex mWindowsLock;       ///< guards the windows, their sum and the index
    Vector<float> mAngles;    ///< the last samples; a ring once it is full
    Vector<float> mAverages;  ///< the average at each place of that ring; the sample itself where there was none yet
    float mAngleSum = 0;      ///< of mAngles, kept up by subtracting and adding
    int8_t mAngleIndex = 0;   ///< the ring's next place
    RWLock mStateLock;        ///< guards the two below; taken after mWindowsLock
    int32_t mFoldState = kSteady;
    Measurements mMeasured{true};  ///< what was compared when mFoldState changed
};

/// Brings the events of the manager's queue to it.
class ZqAftFoldableSensorEventCallback : public IEventQueueCallback {
  public:
    explicit ZqAftFoldableSensorEventCallback(ZqAftFoldableStateManager* manager) : mManager(manager) {}

    hardware::Return<void> onEvent(const Event& event) noexcept override;

  private:
    const wp<ZqAftFoldableStateManager> mManager;
};

}  // namespace android

#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <hidl/HidlSupport.h>
#include <utils/Mutex.h>

#include <atomic>
#include <cstdint>

#include "aft/host/Rules.h"

namespace android {

using frameworks::sensorservice::V1_0::IEventQueue;
using frameworks::sensorservice::V1_0::IEventQueueCallback;
using frameworks::sensorservice::V1_0::ISensorManager;
using frameworks::sensorservice::V1_0::Result;
using hardware::hidl_death_recipient;
using hardware::sensors::V1_0::Event;
using hardware::sensors::V1_0::SensorInfo;
using hardware::sensors::V1_0::SensorType;

/// One sensor, and how its manager speaks of it. Literals.
struct SensorDescription {
    int32_t type;             ///< in the sensor service's numbering
    const char* filter;       ///< the filter's name in decision records
    const char* logTag;       ///< the manager's
    const char* connecting;   ///< error line at the start of connecting; null: none
    const char* enable;       ///< the manager's name for enabling, in log lines
    const char* disable;      ///< likewise
    const char* enabledFlag;  ///< likewise, for the flag that the sensor is enabled
    const char* null;         ///< likewise, for a null pointer
    bool enablingConnects;    ///< enabling connects where nothing has; else init() alone does
};

/// A live subscription to one sensor of the platform's sensor service: looked up, linked to its death, given a queue
/// with a callback, enabled and disabled. A state manager derives from it, describes its sensor and says what to do
/// with events and deaths.
///
/// Nothing is tried again by itself. Each failure is logged and ends the operation; where it stopped decides where the
/// next one goes on: a failed look-up is repeated, a failed death link is not.
///
/// Threads: any may call any operation. One operation runs at a time, its calls into the service included: the lock for
/// that is mOperationLock. What handles events must never take it, or a service that delivers an event before it
/// answers a call would wait for itself. A death waits for the operation under way, so it must come on another thread
/// than that operation's. The two flags are read without the lock.
class SensorSubscription {
  public:
    bool initCheck() const { return mInitCheck; }
    bool enabled() const { return mSensorEnabled; }

  protected:
    explicit SensorSubscription(const SensorDescription& sensor) : mSensor(sensor) {}
    ~SensorSubscription() = default;
    SensorSubscription(const SensorSubscription&) = delete;
    SensorSubscription& operator=(const SensorSubscription&) = delete;

    /// Looks the service up, links to its death and has it make a queue, as far as that has not been done.
    /// @return whether there is a connection
    bool init();
    bool initLocked();  ///< the same with mOperationLock held, as enabling does it
    void enable();
    void disable();
    /// Forgets the connection, without a call to the service: the sensor stays enabled, and the death linked.
    void deInit();

    // What each manager has of its own. All are called with mOperationLock held.
    virtual sp<hidl_death_recipient> newDeathRecipient() = 0;
    virtual sp<IEventQueueCallback> newEventCallback() = 0;
    virtual void haveInited() {}
    virtual void haveDisabled() {}
    virtual void haveDeInited() {}

    Mutex mOperationLock;

  private:
    bool findService();
    bool makeQueue();
    bool findSensor(SensorInfo& sensor);
    bool enableOnQueue(int32_t handle);

    void record(Rule rule, bool logged = true) const;

    const SensorDescription mSensor;
    sp<hidl_death_recipient> mDeathRecipient;      ///< made with the first connection
    sp<IEventQueue> mSensorEventQueue;             ///< null, although connected, where the service delivered none
    sp<ISensorManager> mSensorManager;             ///< null until looked up, and once let go
    sp<IEventQueueCallback> mSensorEventCallback;  ///< made with the first connection
    std::atomic<bool> mSensorEnabled = false;      ///< on the queue
    int32_t mSensorHandle = 0;                     ///< of the enabled sensor
    std::atomic<bool> mInitCheck = false;          ///< found, linked, and a queue made
};

}  // namespace android

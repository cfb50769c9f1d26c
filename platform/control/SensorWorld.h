#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "android/frameworks/sensorservice/1.0/ISensorManager.h"
#include "platform/control/Courier.h"
#include "platform/control/SensorService.h"

// How the sensor service is made; what hosts and tests drive is SensorService.h.

namespace aftplatform::sensors {

using android::sp;
using android::wp;
using android::frameworks::sensorservice::V1_0::IEventQueue;
using android::frameworks::sensorservice::V1_0::IEventQueueCallback;
using android::frameworks::sensorservice::V1_0::ISensorManager;
using android::frameworks::sensorservice::V1_0::Result;
using android::hardware::hidl_death_recipient;
using android::hardware::Return;
using android::hardware::sensors::V1_0::SensorInfo;
using android::hardware::sensors::V1_0::SensorType;
using android::hidl::base::V1_0::IBase;

class Queue;

/// One life of the service's process, from its start to its death. Guarded by the world's lock.
struct Life {
    struct Link {
        wp<hidl_death_recipient> recipient;  // the client keeps it, as on the phone
        uint64_t cookie;
        wp<IBase> who;
    };

    bool alive = true;
    std::vector<Link> links;     ///< in the order of linking
    std::vector<Queue*> queues;  ///< in the order of their making; they belong to the clients, and leave when they go
};

/// Who is told of deaths and registrations. Let go without the world's lock: their end is the client's code.
using Recipients = std::vector<sp<hidl_death_recipient>>;

/// How a call went, so far as the script has it.
struct Outcome {
    bool reached = true;
    bool refused = false;
    bool noQueue = false;
};

/// The service and what surrounds it. Its lock is held for short steps, never while anything is called or while
/// references are let go that may be the last to a client's object. Under it the courier takes over what has to be
/// told, so that this goes out in the order in which it came about.
class World {
  public:
    sp<ISensorManager> lookUp(const std::string& name, bool getStub);
    Outcome call(const Life& life, Call call, std::vector<int64_t> arguments);
    std::optional<SensorInfo> defaultSensor(SensorType type);

    void offer(std::vector<Sensor> sensors);
    void setPresent(bool present);
    void die();
    void registers();
    void setFaults(std::map<Call, Fault> faults);
    void deliver(const Event& event);
    void setListener(std::function<void(const Reached&)> listener);
    void reset();

    Courier courier;
    std::mutex lock;

  private:
    std::optional<Fault> faultOf(Call call);
    void begin();

    std::vector<Sensor> mSensors;
    bool mPresent = false;
    std::shared_ptr<Life> mLife;  ///< null: none has begun
    std::map<Call, Fault> mFaults;
    Recipients mTold;  ///< by the last death that told anybody; each once

    std::mutex mListenerLock;
    std::function<void(const Reached&)> mListener;
};

/// Lives until the process ends, as its courier's thread does.
World& world();

/// A client's queue on the service.
class Queue : public IEventQueue {
  public:
    Queue(std::shared_ptr<Life> life, sp<IEventQueueCallback> callback)
        : mLife(std::move(life)), mCallback(std::move(callback)) {}

    Return<Result> enableSensor(int32_t handle, int32_t period, int64_t latency) override;
    Return<Result> disableSensor(int32_t handle) override;

    /// Under the world's lock.
    bool isEnabled(int32_t handle) const { return mEnabled.contains(handle); }
    /// Hands an event to the client. The caller holds the queue meanwhile, and with it the callback.
    void bring(const Event& event) const;

  private:
    void onLastStrongRef(const void* id) override;

    const std::shared_ptr<Life> mLife;
    const sp<IEventQueueCallback> mCallback;
    std::set<int32_t> mEnabled;  ///< under the world's lock
};

/// What a look-up gives: a client's way to one life of the service.
class Proxy : public ISensorManager {
  public:
    explicit Proxy(std::shared_ptr<Life> life) : mLife(std::move(life)) {}

    Return<bool> linkToDeath(const sp<hidl_death_recipient>& recipient, uint64_t cookie) override;
    Return<void> getDefaultSensor(SensorType type, getDefaultSensor_cb completion) override;
    Return<void> createEventQueue(const sp<IEventQueueCallback>& callback, createEventQueue_cb completion) override;

  private:
    const std::shared_ptr<Life> mLife;
};

}  // namespace aftplatform::sensors

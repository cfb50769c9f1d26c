#include "platform/control/SensorService.h"

#include <utility>

#include "android/hidl/manager/1.0/IServiceNotification.h"
#include "platform/control/SensorWorld.h"

namespace aftplatform::sensors {

namespace {

using android::hidl::manager::V1_0::IServiceNotification;

constexpr char kInterface[] = "android.frameworks.sensorservice@1.0::ISensorManager";
constexpr char kInstance[] = "default";

}  // namespace

World& world() {
    static World& instance = *new World;
    return instance;
}

sp<ISensorManager> World::lookUp(const std::string& name, bool getStub) {
    if (name != kInstance || getStub) return nullptr;
    std::lock_guard held(lock);
    if (!mPresent || faultOf(Call::GetService)) return nullptr;
    return new Proxy(mLife);
}

Outcome World::call(const Life& life, Call call, std::vector<int64_t> arguments) {
    Outcome outcome;
    {
        std::lock_guard held(lock);
        const std::optional<Fault> fault = faultOf(call);
        outcome = {.reached = life.alive && fault != Fault::Transport,
                   .refused = fault == Fault::Result,
                   .noQueue = fault == Fault::NoQueue};
    }
    if (outcome.reached) {
        std::lock_guard held(mListenerLock);
        if (mListener) mListener({call, std::move(arguments)});
    }
    return outcome;
}

std::optional<Fault> World::faultOf(Call call) {
    const auto found = mFaults.find(call);
    return found == mFaults.end() ? std::nullopt : std::optional(found->second);
}

SensorInfo World::defaultSensor(SensorType type, bool& found) {
    std::lock_guard held(lock);
    for (const Sensor& sensor : mSensors) {
        if (sensor.type != static_cast<int32_t>(type)) continue;
        found = true;
        return {.sensorHandle = sensor.handle, .type = type};
    }
    return {};
}

void World::offer(std::vector<Sensor> sensors) {
    std::lock_guard held(lock);
    mSensors = std::move(sensors);
}

void World::begin() {
    mPresent = true;
    if (mLife == nullptr) mLife = std::make_shared<Life>();
}

void World::setPresent(bool present) {
    std::lock_guard held(lock);
    if (present) begin();
    mPresent = present;
}

void World::die() {
    struct Notice {
        sp<hidl_death_recipient> recipient;
        uint64_t cookie;
        wp<IBase> who;
    };
    std::vector<Notice> notices;
    std::vector<sp<hidl_death_recipient>> forgotten;  // let go without the lock: their end is the client's code
    {
        std::lock_guard held(lock);
        mPresent = false;
        if (mLife == nullptr) return;
        mLife->alive = false;
        for (const Life::Link& link : mLife->links) {
            if (sp<hidl_death_recipient> recipient = link.recipient.promote(); recipient != nullptr) {
                notices.push_back({recipient, link.cookie, link.who});
            }
        }
        mLife->links.clear();
        mLife.reset();
        if (!notices.empty()) mTold.swap(forgotten);
        for (const Notice& notice : notices) mTold.push_back(notice.recipient);
    }
    for (Notice& notice : notices) {
        courier.send([notice = std::move(notice)] { notice.recipient->serviceDied(notice.cookie, notice.who); });
    }
}

void World::registers() {
    std::vector<sp<hidl_death_recipient>> recipients;
    {
        std::lock_guard held(lock);
        begin();
        for (const Life::Link& link : mLife->links) {
            if (sp<hidl_death_recipient> recipient = link.recipient.promote(); recipient != nullptr) {
                recipients.push_back(std::move(recipient));
            }
        }
        if (recipients.empty()) recipients = mTold;
    }
    for (const sp<hidl_death_recipient>& recipient : recipients) {
        const sp<IServiceNotification> notified = dynamic_cast<IServiceNotification*>(recipient.get());
        if (notified == nullptr) continue;
        courier.send([notified] { (void)notified->onRegistration(kInterface, kInstance, false).isOk(); });
    }
}

void World::setFaults(std::map<Call, Fault> faults) {
    std::lock_guard held(lock);
    mFaults = std::move(faults);
}

void World::deliver(const Event& event) {
    courier.send([this, event] { bring(event); });
}

void World::bring(const Event& event) {
    std::vector<sp<Queue>> queues;
    {
        std::lock_guard held(lock);
        if (mLife == nullptr) return;
        std::erase_if(mLife->queues, [&](const wp<Queue>& queue) {
            queues.push_back(queue.promote());
            return queues.back() == nullptr;
        });
    }
    for (const sp<Queue>& queue : queues) {
        if (queue == nullptr) continue;
        sp<IEventQueueCallback> callback;
        {
            std::lock_guard held(lock);
            callback = queue->callbackFor(event.sensorHandle);
        }
        if (callback != nullptr) (void)callback->onEvent(event).isOk();
    }
}

void World::setListener(std::function<void(const Reached&)> listener) {
    std::lock_guard held(mListenerLock);
    mListener.swap(listener);
}

void World::reset() {
    courier.setDirect(false);
    setListener({});
    std::vector<sp<hidl_death_recipient>> told;  // let go without the lock
    std::lock_guard held(lock);
    mSensors.clear();
    mPresent = false;
    if (mLife != nullptr) mLife->alive = false;
    mLife.reset();
    mFaults.clear();
    mTold.swap(told);
}

void offer(std::vector<Sensor> sensors) { world().offer(std::move(sensors)); }
void setPresent(bool present) { world().setPresent(present); }
void die() { world().die(); }
void registers() { world().registers(); }
void setFaults(std::map<Call, Fault> faults) { world().setFaults(std::move(faults)); }
void deliver(const Event& event) { world().deliver(event); }
void setDelivery(Delivery delivery) { world().courier.setDirect(delivery == Delivery::Direct); }
void waitUntilDelivered() { world().courier.wait(); }
void setListener(std::function<void(const Reached&)> listener) { world().setListener(std::move(listener)); }
void reset() { world().reset(); }

}  // namespace aftplatform::sensors

namespace android::frameworks::sensorservice::V1_0 {

sp<ISensorManager> ISensorManager::getService(const std::string& serviceName, bool getStub) {
    return aftplatform::sensors::world().lookUp(serviceName, getStub);
}

}  // namespace android::frameworks::sensorservice::V1_0

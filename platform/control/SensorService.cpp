#include "platform/control/SensorService.h"

#include <algorithm>
#include <utility>

#include "android/hidl/manager/1.0/IServiceNotification.h"
#include "platform/control/SensorWorld.h"

namespace aftplatform::sensors {

namespace {

using android::hidl::manager::V1_0::IServiceNotification;

constexpr char kInterface[] = "android.frameworks.sensorservice@1.0::ISensorManager";
constexpr char kInstance[] = "default";

void addOnce(Recipients& recipients, const sp<hidl_death_recipient>& recipient) {
    const auto same = std::find(recipients.begin(), recipients.end(), recipient);
    if (same == recipients.end()) recipients.push_back(recipient);
}

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

std::optional<SensorInfo> World::defaultSensor(SensorType type) {
    std::lock_guard held(lock);
    for (const Sensor& sensor : mSensors) {
        if (sensor.type == static_cast<int32_t>(type)) return SensorInfo{.sensorHandle = sensor.handle, .type = type};
    }
    return std::nullopt;
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
    {
        Recipients told;
        std::lock_guard held(lock);
        mPresent = false;
        if (mLife == nullptr) return;
        for (const Life::Link& link : mLife->links) {
            const sp<hidl_death_recipient> recipient = link.recipient.promote();
            if (recipient == nullptr) continue;
            addOnce(told, recipient);
            courier.take([recipient, cookie = link.cookie, who = link.who] { recipient->serviceDied(cookie, who); });
        }
        mLife->alive = false;
        mLife.reset();
        if (!told.empty()) mTold.swap(told);
    }
    courier.carryOut();
}

void World::registers() {
    {
        Recipients recipients;
        std::lock_guard held(lock);
        begin();
        for (const Life::Link& link : mLife->links) {
            const sp<hidl_death_recipient> recipient = link.recipient.promote();
            if (recipient != nullptr) addOnce(recipients, recipient);
        }
        if (recipients.empty()) recipients = mTold;
        for (const sp<hidl_death_recipient>& recipient : recipients) {
            const sp<IServiceNotification> notified = dynamic_cast<IServiceNotification*>(recipient.get());
            if (notified == nullptr) continue;
            courier.take([notified] { (void)notified->onRegistration(kInterface, kInstance, false).isOk(); });
        }
    }
    courier.carryOut();
}

void World::setFaults(std::map<Call, Fault> faults) {
    std::lock_guard held(lock);
    mFaults = std::move(faults);
}

void World::deliver(const Event& event) {
    {
        std::lock_guard held(lock);
        if (mLife == nullptr) return;
        for (Queue* queue : mLife->queues) {
            if (!queue->isEnabled(event.sensorHandle)) continue;
            courier.take([to = wp<Queue>(queue), event] {
                if (const sp<Queue> reached = to.promote(); reached != nullptr) reached->bring(event);
            });
        }
    }
    courier.carryOut();
}

void World::setListener(std::function<void(const Reached&)> listener) {
    std::lock_guard held(mListenerLock);
    mListener.swap(listener);
}

void World::reset() {
    courier.wait();  // what is under way may still drive the service
    setListener({});
    {
        Recipients told;
        std::lock_guard held(lock);
        mSensors.clear();
        mPresent = false;
        if (mLife != nullptr) mLife->alive = false;
        mLife.reset();
        mFaults.clear();
        mTold.swap(told);
    }
    courier.setDirect(false);  // now nobody is left to be told, but for what others asked for meanwhile
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

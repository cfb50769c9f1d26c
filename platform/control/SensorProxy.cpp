// The sensor service as its clients see it.

#include <utility>

#include "platform/control/SensorWorld.h"

namespace aftplatform::sensors {

namespace {

using android::hardware::Status;
using android::hardware::Void;

Status lost() { return Status::fromExceptionCode(Status::EX_TRANSACTION_FAILED, "the sensor service is out of reach"); }

}  // namespace

void Queue::onLastStrongRef(const void* /*id*/) {
    std::lock_guard lock(world().lock);
    std::erase(mLife->queues, this);
}

Return<Result> Queue::enableSensor(int32_t handle, int32_t period, int64_t latency) {
    const Outcome outcome = world().call(*mLife, Call::EnableSensor, {handle, period, latency});
    if (!outcome.reached) return lost();
    if (outcome.refused) return Result::INVALID_OPERATION;
    std::lock_guard lock(world().lock);
    mEnabled.insert(handle);
    return Result::OK;
}

Return<Result> Queue::disableSensor(int32_t handle) {
    const Outcome outcome = world().call(*mLife, Call::DisableSensor, {handle});
    if (!outcome.reached) return lost();
    if (outcome.refused) return Result::INVALID_OPERATION;
    std::lock_guard lock(world().lock);
    mEnabled.erase(handle);
    return Result::OK;
}

void Queue::bring(const Event& event) const {
    if (mCallback != nullptr) (void)mCallback->onEvent(event).isOk();
}

Return<bool> Proxy::linkToDeath(const sp<hidl_death_recipient>& recipient, uint64_t cookie) {
    const Outcome outcome = world().call(*mLife, Call::LinkToDeath, {static_cast<int64_t>(cookie)});
    if (!outcome.reached) return lost();
    if (outcome.refused || recipient == nullptr) return false;
    std::lock_guard lock(world().lock);
    if (!mLife->alive) return lost();  // it died before it could answer, and has told all whom it knew
    mLife->links.push_back({recipient, cookie, this});
    return true;
}

Return<void> Proxy::getDefaultSensor(SensorType type, getDefaultSensor_cb completion) {
    const Outcome outcome = world().call(*mLife, Call::GetDefaultSensor, {static_cast<int64_t>(type)});
    if (!outcome.reached) return lost();
    const std::optional<SensorInfo> sensor = outcome.refused ? std::nullopt : world().defaultSensor(type);
    completion(sensor.value_or(SensorInfo{}), sensor ? Result::OK : Result::BAD_VALUE);
    return Void();
}

Return<void> Proxy::createEventQueue(const sp<IEventQueueCallback>& callback, createEventQueue_cb completion) {
    const Outcome outcome = world().call(*mLife, Call::CreateEventQueue, {});
    if (!outcome.reached) return lost();
    sp<Queue> queue;
    if (!outcome.noQueue) {
        queue = new Queue(mLife, callback);
        std::lock_guard lock(world().lock);
        mLife->queues.push_back(queue.get());
    }
    completion(queue, outcome.refused || outcome.noQueue ? Result::NO_MEMORY : Result::OK);
    return Void();
}

}  // namespace aftplatform::sensors

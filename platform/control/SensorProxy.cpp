// The sensor service as its clients see it.

#include <utility>

#include "platform/control/SensorWorld.h"

namespace aftplatform::sensors {

namespace {

using android::hardware::Status;
using android::hardware::Void;

Status lost() { return Status::fromExceptionCode(Status::EX_TRANSACTION_FAILED, "the sensor service is out of reach"); }

}  // namespace

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

Return<bool> Proxy::linkToDeath(const sp<hidl_death_recipient>& recipient, uint64_t cookie) {
    const Outcome outcome = world().call(*mLife, Call::LinkToDeath, {static_cast<int64_t>(cookie)});
    if (!outcome.reached) return lost();
    if (outcome.refused || recipient == nullptr) return false;
    std::lock_guard lock(world().lock);
    mLife->links.push_back({recipient, cookie, this});
    return true;
}

Return<void> Proxy::getDefaultSensor(SensorType type, getDefaultSensor_cb completion) {
    const Outcome outcome = world().call(*mLife, Call::GetDefaultSensor, {static_cast<int64_t>(type)});
    if (!outcome.reached) return lost();
    bool found = false;
    const SensorInfo info = world().defaultSensor(type, found);
    if (outcome.refused || !found) {
        completion({}, Result::BAD_VALUE);
    } else {
        completion(info, Result::OK);
    }
    return Void();
}

Return<void> Proxy::createEventQueue(const sp<IEventQueueCallback>& callback, createEventQueue_cb completion) {
    const Outcome outcome = world().call(*mLife, Call::CreateEventQueue, {});
    if (!outcome.reached) return lost();
    sp<Queue> queue;
    if (!outcome.noQueue) {
        queue = new Queue(mLife, callback);
        std::lock_guard lock(world().lock);
        mLife->queues.push_back(queue);
    }
    completion(queue, outcome.refused || outcome.noQueue ? Result::NO_MEMORY : Result::OK);
    return Void();
}

}  // namespace aftplatform::sensors

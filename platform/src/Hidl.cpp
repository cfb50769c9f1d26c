// What crosses between processes, as far as it lives in this library: the answers of calls, and the bases of
// interfaces.

#include <cstdlib>

#include "android/frameworks/sensorservice/1.0/ISensorManager.h"
#include "android/hidl/manager/1.0/IServiceNotification.h"
#include "android/log.h"
#include "hidl/Status.h"

namespace android::hardware {

namespace {

[[noreturn]] void misuse(const char* what, const std::string& status) {
    __android_log_print(ANDROID_LOG_FATAL, "HidlStatus", "%s: %s", what, status.c_str());
    std::abort();
}

}  // namespace

std::string Status::description() const {
    if (isOk()) return "ok";
    return "exception " + std::to_string(mException) + (mMessage.empty() ? "" : ": " + mMessage);
}

namespace details {

return_status::return_status(return_status&& other) noexcept
    : mStatus(std::move(other.mStatus)), mAsked(std::exchange(other.mAsked, true)) {}

return_status& return_status::operator=(return_status&& other) noexcept {
    if (this == &other) return *this;
    assertAsked();
    mStatus = std::move(other.mStatus);
    mAsked = std::exchange(other.mAsked, true);
    return *this;
}

return_status::~return_status() { assertAsked(); }

void return_status::assertOk() const {
    mAsked = true;
    if (!mStatus.isOk()) misuse("the value of a call that did not get through is read", description());
}

void return_status::assertAsked() const {
    if (!mAsked && !mStatus.isOk()) misuse("nobody asked whether a call got through, and it did not", description());
}

}  // namespace details

hidl_death_recipient::hidl_death_recipient() = default;
hidl_death_recipient::~hidl_death_recipient() = default;

}  // namespace android::hardware

namespace android::hidl {

base::V1_0::IBase::IBase() = default;
base::V1_0::IBase::~IBase() = default;

/// A service's proxy alone takes it on. An object of this process dies with whoever would have to be told, and a queue
/// with its service.
hardware::Return<bool> base::V1_0::IBase::linkToDeath(const sp<hardware::hidl_death_recipient>& /*recipient*/,
                                                      uint64_t /*cookie*/) {
    return false;
}

manager::V1_0::IServiceNotification::IServiceNotification() = default;
manager::V1_0::IServiceNotification::~IServiceNotification() = default;

}  // namespace android::hidl

namespace android::frameworks::sensorservice::V1_0 {

IEventQueueCallback::IEventQueueCallback() = default;
IEventQueueCallback::~IEventQueueCallback() = default;
IEventQueue::IEventQueue() = default;
IEventQueue::~IEventQueue() = default;
ISensorManager::ISensorManager() = default;
ISensorManager::~ISensorManager() = default;

}  // namespace android::frameworks::sensorservice::V1_0

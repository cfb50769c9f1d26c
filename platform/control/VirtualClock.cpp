#include "platform/control/VirtualClock.h"

#include <atomic>
#include <ctime>
#include <limits>

#include "utils/Timers.h"

namespace {

constexpr int64_t kReal = std::numeric_limits<int64_t>::min();

constinit std::atomic<int64_t> virtualTime{kReal};

clockid_t machineClock(int clock) {
    switch (clock) {
        case SYSTEM_TIME_REALTIME: return CLOCK_REALTIME;
        case SYSTEM_TIME_PROCESS: return CLOCK_PROCESS_CPUTIME_ID;
        case SYSTEM_TIME_THREAD: return CLOCK_THREAD_CPUTIME_ID;
        case SYSTEM_TIME_BOOTTIME: return CLOCK_BOOTTIME;
        default: return CLOCK_MONOTONIC;
    }
}

}  // namespace

nsecs_t systemTime(int clock) {
    const int64_t set = virtualTime.load(std::memory_order_acquire);
    if (set != kReal) return set;

    timespec now{};
    clock_gettime(machineClock(clock), &now);
    return nsecs_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

namespace aftplatform {

/// The earliest time of all stands for the real clock: it becomes the next.
void setVirtualTime(int64_t ns) { virtualTime.store(ns == kReal ? kReal + 1 : ns, std::memory_order_release); }

void useRealClock() { virtualTime.store(kReal, std::memory_order_release); }

}  // namespace aftplatform

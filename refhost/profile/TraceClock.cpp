#include "refhost/profile/TraceClock.h"

#include <libevdev/libevdev.h>

#include <algorithm>

namespace refhost {

namespace {

/// Devices that record together are out of order by less than this; a greater step back is a clock that was set.
constexpr int64_t kDisorderUs = 1'000'000;

/// A longer step forward is a clock that was set, too: a year.
constexpr int64_t kLongestPauseUs = int64_t{366} * 24 * 3600 * 1'000'000;

/// Where the trace's clock stops: 64 bits of nanoseconds hold no more.
constexpr int64_t kLongestTraceUs = (INT64_MAX - TraceClock::kStartNs) / 1000;

}  // namespace

TraceClock::TraceClock(const Recording& recording) : mHasTimes(recording.hasTimes) {
    if (!recording.events.empty()) mZeroUs = static_cast<uint64_t>(recording.events.front().timeUs);
}

int64_t TraceClock::at(const KernelEvent& event) {
    if (!mHasTimes) {
        const int64_t now = mNow;
        if (event.type == EV_SYN && event.code == SYN_REPORT) mNow += kReportWithoutTimeNs;
        return now;
    }
    const int64_t nowUs = (mNow - kStartNs) / 1000;
    auto elapsedUs = static_cast<int64_t>(static_cast<uint64_t>(event.timeUs) - mZeroUs);  // any two times differ
    if (elapsedUs < nowUs - kDisorderUs || elapsedUs > nowUs + kLongestPauseUs) {
        ++mJumps;
        mZeroUs = static_cast<uint64_t>(event.timeUs) - static_cast<uint64_t>(nowUs);
        elapsedUs = nowUs;
    }
    if (elapsedUs < nowUs) {
        ++mStepsBack;
    } else {
        mNow = kStartNs + std::min(elapsedUs, kLongestTraceUs) * 1000;
    }
    return mNow;
}

}  // namespace refhost

#pragma once

#include <cstdint>

#include "refhost/recording/Recording.h"

namespace refhost {

/// A recording's times on the trace's clock, which starts at kStartNs with the first event and never goes back. Events
/// a little out of order, as those of several devices are, wait for it; a clock that was set during the recording is
/// followed from there on. One thread.
class TraceClock {
  public:
    static constexpr int64_t kStartNs = 60'000'000'000;

    /// Where events carry no times, reports are this far apart.
    static constexpr int64_t kReportWithoutTimeNs = 10'000'000;

    explicit TraceClock(const Recording& recording);

    /// The time of the next event, in ns; events come in the recording's order.
    int64_t at(const KernelEvent& event);

    uint32_t jumps() const { return mJumps; }          ///< how often the recording's clock was set
    uint32_t stepsBack() const { return mStepsBack; }  ///< events that had to wait

  private:
    bool mHasTimes;
    uint64_t mZeroUs = 0;  ///< the recording's time at the trace's start
    int64_t mNow = kStartNs;
    uint32_t mJumps = 0;
    uint32_t mStepsBack = 0;
};

}  // namespace refhost

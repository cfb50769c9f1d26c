#pragma once

#include <cstdint>

#include "refhost/explain/Measure.h"
#include "refhost/explain/Phone.h"

namespace refhost {

/// Whether one of these doubts counts for a finger that the navigation bar would get.
bool outweighNavigationBar(const Measures& doubts);

/// What the fingerprint sensor's keys have said, as the front fingerprint filter took them: times in ms of the event
/// clock, 0 where there was none. One thread.
class SensorKeys {
  public:
    void hear(const TraceLine& line, const CallResult& result, const Phone& phone);

    /// What could cast doubt on a finger in the area that lands now, as far as anything is known.
    /// @param edge whether the panel says that the finger is on its edge
    Measures doubts(int64_t nowMs, bool landscape, bool edge) const;
    /// On the key that a slide over the sensor may have made.
    Measure sinceSlideKey(int64_t nowMs) const;

  private:
    int64_t mFinger = 0;         ///< 516 that no finger explained
    int64_t mDispatched = 0;     ///< an event key
    int64_t mEnrol = 0;          ///< 519
    int64_t mIdentify = 0;       ///< 517 or 518, until it is forgotten
    bool mTimedOut = false;      ///< this frame is the last one that may show the identification
    bool mAnotherTouch = false;  ///< the last frame's touch is not the one that is identified
    int64_t mLastKey = 0;        ///< an event key or 516
};

/// Milliseconds of an event time in ns, as the filters cut them.
constexpr int64_t toMs(int64_t when) { return when / 1'000'000; }

}  // namespace refhost

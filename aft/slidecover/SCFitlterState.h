#pragma once

#include <cstdint>

namespace android {

/// The filter's name in decision records.
inline constexpr char kSlideCover[] = "slide-cover";

/// Where the slide cover is, and since when. Copied whole.
struct SCFitlterState {
    int64_t stateTime = 0;  ///< ns, monotonic clock: when `state` last changed; 0 before any change
    int32_t state = -1;     ///< 0, 1 or 2, as the sensor reports it; -1: unknown

    static constexpr bool isKnown(int32_t state) { return 0 <= state && state <= 2; }
};

}  // namespace android

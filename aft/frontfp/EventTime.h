#pragma once

#include <cstdint>

namespace android {

/// Milliseconds of an event time in ns, truncated toward zero.
constexpr int64_t toMs(int64_t when) { return when / 1'000'000; }

/// How long ago `thenMs` was, as an unsigned number: a `thenMs` later than `nowMs` was very long ago.
constexpr uint64_t msSince(int64_t nowMs, int64_t thenMs) {
    return static_cast<uint64_t>(nowMs) - static_cast<uint64_t>(thenMs);
}

/// True when 0 < now - then < limit (ms). A `then` later than `now`, and one of just now, is never recent.
constexpr bool recently(int64_t nowMs, int64_t thenMs, uint64_t limitMs) {
    return 0 < msSince(nowMs, thenMs) && msSince(nowMs, thenMs) < limitMs;
}

}  // namespace android

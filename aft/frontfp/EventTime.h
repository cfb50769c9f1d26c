#pragma once

#include <cstdint>

#include "aft/host/Decision.h"

namespace android {

/// Milliseconds of an event time in ns, truncated toward zero.
constexpr int64_t toMs(int64_t when) { return when / 1'000'000; }

/// How long ago `thenMs` was, as an unsigned number: a `thenMs` later than `nowMs` was very long ago.
constexpr uint64_t msSince(int64_t nowMs, int64_t thenMs) {
    return static_cast<uint64_t>(nowMs) - static_cast<uint64_t>(thenMs);
}

/// The same, signed: a `thenMs` later than `nowMs` is a negative time ago.
constexpr int64_t msFrom(int64_t thenMs, int64_t nowMs) { return static_cast<int64_t>(msSince(nowMs, thenMs)); }

/// The event that a time counts from, for the record of a measurement.
constexpr MeasurementCause eventAt(const char* event, int64_t ms) { return {event, 0, ms * 1'000'000, 0}; }
constexpr MeasurementCause keyAt(int32_t keyCode, int64_t ms) { return {"key", keyCode, ms * 1'000'000, 0}; }

/// True when 0 < now - then < limit (ms). A `then` later than `now`, and one of just now, is never recent. A `then` of
/// 0 means that nothing has happened yet.
inline bool recently(Quantity what, int64_t nowMs, int64_t thenMs, int64_t limitMs, MeasurementCause from,
                     Measurements& measured) {
    return measured.withinSince(what, msFrom(thenMs, nowMs), 1, limitMs - 1, from);
}

}  // namespace android

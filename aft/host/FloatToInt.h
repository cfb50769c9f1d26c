#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace android {

// Floats cut to integers, toward zero. A plain conversion of what does not fit is undefined, and differs between
// machines.

/// The integer, or nothing where it is no int32 (too far from zero, or not a number).
constexpr std::optional<int32_t> toInt32(float value) {
    constexpr float kBeyond = 2147483648.0F;  // 2^31; the floats next to it are whole
    if (!(-kBeyond <= value && value < kBeyond)) return std::nullopt;
    return static_cast<int32_t>(value);
}

/// The integer, or the end of int32 beyond which the value lies; 0 for what is not a number.
constexpr int32_t toSaturatedInt32(float value) {
    if (const std::optional<int32_t> fits = toInt32(value)) return *fits;
    if (value > 0) return std::numeric_limits<int32_t>::max();
    return value < 0 ? std::numeric_limits<int32_t>::min() : 0;
}

}  // namespace android

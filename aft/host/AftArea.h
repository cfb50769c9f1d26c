#pragma once

#include <utils/String8.h>

#include <cstdint>

namespace android {

/// A rectangle in raw panel units (or, for window frames, display units). Plain data. Which edges count as inside is
/// said where it is tested; `contains` takes all four as inside.
struct AftArea {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;

    /// All four edges are inside.
    constexpr bool contains(int32_t x, int32_t y) const { return left <= x && x <= right && top <= y && y <= bottom; }

    String8 toString() const { return String8::format("[%d,%d ~ %d,%d]", left, top, right, bottom); }

    friend constexpr bool operator==(const AftArea&, const AftArea&) = default;
};

}  // namespace android

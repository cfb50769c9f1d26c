#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace android {

/// The host's calibration: (x, y) becomes (c[0] x + c[1] y + c[2], c[3] x + c[4] y + c[5]).
struct TouchAffineTransformation {
    std::array<float, 6> c{1, 0, 0, 0, 1, 0};
};

/// One raw axis as the host describes it, 24 bytes.
struct RawAbsoluteAxisInfo {
    uint8_t valid = 0;
    int32_t minValue = 0;  ///< inclusive
    int32_t maxValue = 0;  ///< inclusive
    int32_t flat = 0;
    int32_t fuzz = 0;
    int32_t resolution = 0;
};

/// The raw axes of a touch surface; the plug-in reads the ranges of x and y.
struct RawPointerAxes {
    RawAbsoluteAxisInfo x;
    RawAbsoluteAxisInfo y;
};

static_assert(sizeof(TouchAffineTransformation) == 24);
static_assert(offsetof(RawPointerAxes, x) + offsetof(RawAbsoluteAxisInfo, minValue) == 4);
static_assert(offsetof(RawPointerAxes, x) + offsetof(RawAbsoluteAxisInfo, maxValue) == 8);
static_assert(offsetof(RawPointerAxes, y) + offsetof(RawAbsoluteAxisInfo, minValue) == 28);
static_assert(offsetof(RawPointerAxes, y) + offsetof(RawAbsoluteAxisInfo, maxValue) == 32);

}  // namespace android

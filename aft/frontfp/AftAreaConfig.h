#pragma once

#include <array>
#include <cstdint>

#include "aft/host/AftArea.h"

namespace android {

/// What the system properties say of the front fingerprint filter; read once in the life of the process. Plain data,
/// guarded by the processor's sFrontFPLock.
struct AftAreaConfig {
    bool initialized = false;         ///< the properties have been read
    bool enabled = false;             ///< a valid filter area is configured, and no surface has refused it
    bool enabledAbt = true;           ///< abnormal-touch cancellation is on
    int8_t valueCount = 0;            ///< what the scanner answered: 4 or 2 are forms of an area, -1 is an empty text
    std::array<int32_t, 4> values{};  ///< left, top, right, bottom; or width and height above the bottom edge

    /// Reads the filter-area property's text; answers whether it is a valid area.
    bool scan(const char* text);

    /// Places the filter area on a surface. All its edges are inside.
    /// @param width, height raw panel units, any value
    /// @param area          gains the area; untouched where there is none
    /// @return              false: no area is configured, or it does not fit on such a surface
    bool areaOn(int32_t width, int32_t height, AftArea& area) const;
};

}  // namespace android

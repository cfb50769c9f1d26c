#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace refhost {

/// Places of a contact's axes, in the host's order.
enum Axis : size_t {
    kPressure,
    kTouchMajor,
    kTouchMinor,
    kToolMajor,  ///< ABS_MT_WIDTH_MAJOR
    kToolMinor,  ///< ABS_MT_WIDTH_MINOR
    kOrientation,
    kDistance,
    kTiltX,     ///< always 0: the kernel has no tilt of a contact
    kTiltY,     ///< always 0
    kToolType,  ///< 1 finger, 2 stylus
    kAxisCount,
};

/// One finger or pen in a frame, in raw panel units.
struct Contact {
    uint32_t id = 0;  ///< pointer id, 0..31
    int32_t x = 0;
    int32_t y = 0;
    /// Axes that the panel does not report are 0, but: a minor axis is as long as its major one, for the contact is
    /// round, and the tool is a finger.
    std::array<int32_t, kAxisCount> axes{};
    bool hovering = false;
    bool palm = false;
};

/// What one SYN_REPORT brings.
struct TouchFrame {
    int64_t timeUs = 0;  ///< of the SYN_REPORT
    uint32_t line = 0;   ///< of the SYN_REPORT
    std::vector<Contact> contacts;
};

}  // namespace refhost

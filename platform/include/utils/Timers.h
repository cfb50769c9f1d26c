#pragma once

#include <cstdint>

#include "aftplatform/export.h"

/// A time or a duration in nanoseconds.
using nsecs_t = int64_t;

enum {
    SYSTEM_TIME_REALTIME = 0,   ///< since 1970
    SYSTEM_TIME_MONOTONIC = 1,  ///< since boot, standing still while the phone sleeps
    SYSTEM_TIME_PROCESS = 2,    ///< processor time of this process
    SYSTEM_TIME_THREAD = 3,     ///< processor time of this thread
    SYSTEM_TIME_BOOTTIME = 4,   ///< since boot, sleep counted
};

extern "C" {

/// Reads a clock.
/// @param clock SYSTEM_TIME_*; any other value reads the monotonic clock
/// @return      ns. While a host runs the clock by hand, every clock reads the time that it set
/// Any thread; never fails.
AFTPLATFORM_API nsecs_t systemTime(int clock = SYSTEM_TIME_MONOTONIC);

}  // extern "C"

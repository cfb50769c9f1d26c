#include <gtest/gtest.h>

#include "platform/control/VirtualClock.h"
#include "utils/Timers.h"

// A replay would not be repeatable if any clock still ran by itself, and would leave the process in the recording's
// time.
TEST(Clock, StandsWhereItIsSetAndRunsAgainAfterwards) {
    const nsecs_t before = systemTime();
    for (const int64_t ns : {int64_t{9'007'199'254'740'993}, int64_t{0}, int64_t{-5}}) {
        aftplatform::setVirtualTime(ns);
        EXPECT_EQ(systemTime(), ns);
        for (int clock = SYSTEM_TIME_REALTIME; clock <= SYSTEM_TIME_BOOTTIME; ++clock) EXPECT_EQ(systemTime(clock), ns);
    }
    aftplatform::useRealClock();
    EXPECT_GE(systemTime(), before);
}

#pragma once

#include "aftplatform/export.h"

enum android_LogPriority {
    ANDROID_LOG_VERBOSE = 2,
    ANDROID_LOG_DEBUG = 3,
    ANDROID_LOG_INFO = 4,
    ANDROID_LOG_WARN = 5,
    ANDROID_LOG_ERROR = 6,
    ANDROID_LOG_FATAL = 7,
};

extern "C" {

/// Writes one line to the platform's log.
/// @param prio an android_LogPriority; a line below the log's minimum is dropped before anything is formatted
/// @param tag  who speaks; null is an empty tag
/// @param fmt  as for printf; the text is never cut
/// @return     bytes of text, 0 for a dropped line, negative when `fmt` could not be formatted
/// Allocates only for texts longer than a common line. Any thread.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the phone's name for it
AFTPLATFORM_API int __android_log_print(int prio, const char* tag, const char* fmt, ...)
    __attribute__((format(printf, 3, 4)));

}  // extern "C"

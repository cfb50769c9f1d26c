#pragma once

#include <functional>
#include <string_view>

#include "aftplatform/export.h"

/// Where the lines of __android_log_print() go in this process. Any thread.
namespace aftplatform {

/// One line of the log. The views live as long as the call of the sink.
struct LogLine {
    int priority;           ///< android_LogPriority
    std::string_view tag;   ///< empty when the line came without one
    std::string_view text;  ///< whole, whatever its length
};

/// Sends all lines from now on to `sink`; an empty function brings back the default, which writes to stderr
/// `MM-DD HH:MM:SS.mmm  PID  TID P TAG: text`, P being the first letter of the priority.
/// One call of a sink runs at a time; once this returns, no other thread is in the old one. A sink may log and may
/// change the sink. It must not throw: that ends the process. It must not wait for a thread that may be logging.
AFTPLATFORM_API void setLogSink(std::function<void(const LogLine&)> sink);

/// Drops lines of a lower priority before anything is formatted. At the start everything from VERBOSE up is kept.
AFTPLATFORM_API void setMinimumLogPriority(int priority);

/// "VERBOSE", "DEBUG", "INFO", "WARN", "ERROR", "FATAL"; "UNKNOWN" for other numbers.
AFTPLATFORM_API std::string_view priorityName(int priority);

}  // namespace aftplatform

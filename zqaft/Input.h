#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "refhost/play/DecisionLog.h"
#include "refhost/trace/Trace.h"
#include "zqaft/Commands.h"

namespace zqaft {

/// A command line that asks for what this build cannot do. what() says what can.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Opens a trace; "-" is standard input. Throws InputError or FileError.
std::unique_ptr<refhost::TraceSource> openTrace(const std::string& path);

/// Reads a recording and its profile, and says on stderr what the user should know of how they fit. `device` is the
/// recorded touch device's name or path, or empty. Throws InputError or FileError; UsageError where this build plays
/// traces alone.
std::unique_ptr<refhost::TraceSource> openRecording(const std::string& path, const std::string& profile,
                                                    const std::string& device);

/// The plug-in that the command line names, or this build's.
std::string pluginOr(const std::string& named);

/// What is played: a trace, or with a profile a recording. As the two above.
std::unique_ptr<refhost::TraceSource> openPlayed(const ReplayOptions& options);

/// Tells the user on stderr, a line each.
void say(const std::vector<std::string>& notes);

/// What the user should know once all has been played: that a filter is off, and what a recording had to do without.
void sayAtEnd(const refhost::Summary& summary, const refhost::TraceSource& source);

}  // namespace zqaft

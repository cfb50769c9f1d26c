#include "zqaft/Input.h"

#include <fmt/format.h>

#include <cstdio>

#include "refhost/InputError.h"
#include "refhost/play/Plugin.h"
#include "refhost/trace/TraceReader.h"

namespace zqaft {

std::unique_ptr<refhost::TraceSource> openTrace(const std::string& path) {
    return std::make_unique<refhost::TraceReader>(path);
}

std::unique_ptr<refhost::TraceSource> openPlayed(const ReplayOptions& options) {
    return options.profile.empty() ? openTrace(options.input)
                                   : openRecording(options.input, options.profile, options.device);
}

std::string pluginOr(const std::string& named) { return named.empty() ? refhost::Plugin::defaultPath() : named; }

void say(const std::vector<std::string>& notes) {
    for (const std::string& note : notes) fmt::print(stderr, "{}\n", refhost::onOneLine(note));
}

void sayAtEnd(const refhost::Summary& summary, const refhost::TraceSource& source) {
    if (summary.records == 0 && summary.calls.count() > 0) {
        say({"this library records no decisions: what came back is shown, but not why"});
    }
    if (!summary.filterOff.empty()) say({"the front fingerprint filter is off, its own words: " + summary.filterOff});
    say(source.leftOut());
}

}  // namespace zqaft

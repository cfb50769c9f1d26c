#include "zqaft/Input.h"

#include <fmt/format.h>

#include <cstdio>

#include "refhost/InputError.h"
#include "refhost/profile/ImportedTrace.h"
#include "refhost/profile/Profile.h"
#include "refhost/recording/Readers.h"
#include "refhost/trace/TraceReader.h"

namespace zqaft {

std::unique_ptr<refhost::TraceSource> openTrace(const std::string& path) {
    return std::make_unique<refhost::TraceReader>(path);
}

std::unique_ptr<refhost::TraceSource> openRecording(const std::string& path, const std::string& profile,
                                                    const std::string& device) {
    refhost::Profile phone = refhost::readProfile(profile);  // first: it is short, and its faults are quickly mended
    auto imported = std::make_unique<refhost::ImportedTrace>(refhost::readRecording(path), std::move(phone), device);
    say(imported->notes());
    return imported;
}

void say(const std::vector<std::string>& notes) {
    for (const std::string& note : notes) fmt::print(stderr, "{}\n", refhost::onOneLine(note));
}

}  // namespace zqaft

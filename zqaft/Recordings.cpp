#include "refhost/profile/ImportedTrace.h"
#include "refhost/profile/Profile.h"
#include "refhost/recording/Readers.h"
#include "zqaft/Input.h"

namespace zqaft {

std::unique_ptr<refhost::TraceSource> openRecording(const std::string& path, const std::string& profile,
                                                    const std::string& device) {
    refhost::Profile phone = refhost::readProfile(profile);  // first: it is short, and its faults are quickly mended
    auto imported = std::make_unique<refhost::ImportedTrace>(refhost::readRecording(path), std::move(phone), device);
    say(imported->notes());
    return imported;
}

}  // namespace zqaft

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "refhost/trace/Trace.h"

namespace refhost {

/// What a recording of the kernel's events cannot say: the phone that it is taken to come from, and what happened
/// beside the touches. docs/profile.md defines the file.

/// One of the phone's devices, and which device of a recording it is.
struct ProfileDevice {
    DeviceDescription device;
    std::string recorded;  ///< name or path in the recording, or empty
};

/// The key device: what its scan codes become.
struct ProfileKeys : ProfileDevice {
    std::map<uint16_t, int32_t> keyCodes;  ///< by scan code, the kernel's
    uint32_t policyFlags = 0;
};

/// Something that happens beside the touches, `atNs` after the recording's first event. A sensor's event gets its
/// timestamp when its time comes.
struct TimelineEntry {
    int64_t atNs = 0;
    TraceEvent event;
};

struct Profile {
    std::string file;
    std::vector<std::pair<std::string, std::string>> properties;
    ProfileDevice touch;
    std::optional<ProfileKeys> keys;
    std::optional<std::vector<aftplatform::sensors::Sensor>> sensors;  ///< absent: there is no sensor service
    std::optional<SensorService> sensorService;                        ///< before the input service starts
    ConfigureSurface surface;
    std::optional<ProcessInputWindow> windows;  ///< what is shown at the start
    std::vector<TimelineEntry> timeline;        ///< by time; entries of one time in the file's order
    std::string note;
    std::vector<std::string> notes;  ///< what the user should know of the profile itself, a sentence each
};

/// Reads a profile. Throws InputError at its first fault, FileError where it cannot be opened.
Profile readProfile(const std::string& path);

/// The same from a text; `folder` is where the files that it names are looked for.
Profile parseProfile(const std::string& text, const std::string& file, const std::string& folder);

}  // namespace refhost

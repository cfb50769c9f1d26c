#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace refhost {

/// One event as the kernel's input subsystem delivers it.
struct KernelEvent {
    int64_t timeUs = 0;   ///< microseconds on the recording's own clock; only differences mean anything
    uint32_t device = 0;  ///< index into Recording::devices
    uint32_t line = 0;    ///< line of the file, from 1
    uint16_t type = 0;    ///< EV_*
    uint16_t code = 0;
    int32_t value = 0;
};

/// Range of an absolute axis, inclusive, in the device's own units.
struct AxisRange {
    int32_t minimum = 0;
    int32_t maximum = 0;
};

struct RecordedDevice {
    std::string path;                    ///< "/dev/input/event2", or empty where the recording names none
    std::string name;                    ///< the kernel's name of the device, or empty
    std::map<uint16_t, AxisRange> axes;  ///< ABS_* code to range, as far as the recording describes the device
    uint32_t line = 0;                   ///< where the recording first speaks of it
};

/// A line that held no event and no description: shell prompts, error messages, what was cut off. Told to the user,
/// never dropped in silence. Blank lines are not worth telling.
struct SkippedLine {
    uint32_t line = 0;
    std::string text;  ///< the first 60 bytes, as they stand in the file
};

/// A recording as read, whatever its format.
struct Recording {
    std::string file;      ///< as the user named it; "-" for standard input
    std::string format;    ///< "getevent", "evemu" or "libinput"
    bool hasTimes = true;  ///< false where no event carries a time (getevent without -t); every timeUs is then 0
    std::vector<RecordedDevice> devices;
    std::vector<KernelEvent> events;  ///< in file order; libinput's per-device lists merged by time
    std::vector<SkippedLine> skipped;
    uint32_t lines = 0;        ///< lines in the file
    uint32_t quotedLines = 0;  ///< lines that carried a mail's "> " before what the tool wrote
};

}  // namespace refhost

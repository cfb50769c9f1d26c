#pragma once

#include <fmt/format.h>

#include <string>

#include "refhost/trace/Trace.h"

namespace refhost {

/// The groups of tracks, from top to bottom.
enum class TrackGroup { Panel, Keys, Context, Log };

/// "touchpanel (device 3)"
inline std::string nameOf(const TraceHeader& header, const DeviceRef& device) {
    if (!device) return "no device";
    for (const DeviceDescription& each : header.devices) {
        if (each.id == *device) return fmt::format("{} (device {})", each.name, *device);
    }
    return fmt::format("device {}", *device);
}

}  // namespace refhost

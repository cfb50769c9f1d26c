#include "refhost/profile/ImportNotes.h"

#include <fmt/format.h>
#include <libevdev/libevdev.h>

#include <algorithm>
#include <array>

#include "refhost/profile/TraceClock.h"

namespace refhost {

std::string counted(uint64_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

std::vector<std::string> notesOnReading(const Recording& recording) {
    std::vector<std::string> notes;
    const std::string& file = recording.file;
    if (!recording.skipped.empty()) {
        const SkippedLine& first = recording.skipped.front();
        notes.push_back(fmt::format("{}: {} skipped; the first is line {}: {}", file,
                                    counted(recording.skipped.size(), "line", "lines"), first.line, first.text));
    }
    if (recording.quotedLines > 0) {
        notes.push_back(fmt::format("{}: {} read without the mail's quotation mark", file,
                                    counted(recording.quotedLines, "line", "lines")));
    }
    if (!recording.hasTimes) {
        notes.push_back(fmt::format("{}: no times; reports are taken to be {} ms apart", file,
                                    TraceClock::kReportWithoutTimeNs / 1'000'000));
    }
    return notes;
}

std::vector<std::string> notesOnPanel(const Recording& recording, uint32_t panel, const Profile& profile) {
    const RecordedDevice& device = recording.devices[panel];
    const auto size = [&](uint16_t position, const std::array<int32_t, 2>& raw) {
        const auto axis = device.axes.find(position);
        if (axis == device.axes.end()) return std::string();
        if (axis->second.minimum == raw[0] && axis->second.maximum == raw[1]) return std::string();
        return fmt::format("{} {}..{} in the recording, {}..{} in the profile",
                           position == ABS_MT_POSITION_X ? "x" : "y", axis->second.minimum, axis->second.maximum,
                           raw[0], raw[1]);
    };
    const std::string x = size(ABS_MT_POSITION_X, profile.surface.rawX);
    const std::string y = size(ABS_MT_POSITION_Y, profile.surface.rawY);
    if (!x.empty() || !y.empty()) {
        return {fmt::format("{}: another panel than {}: {}{}{}", recording.file, profile.file, x,
                            x.empty() || y.empty() ? "" : "; ", y)};
    }
    if (device.axes.contains(ABS_MT_POSITION_X) && device.axes.contains(ABS_MT_POSITION_Y)) return {};

    // No description of the axes: positions beyond the surface say as much.
    const auto beyond = std::find_if(recording.events.begin(), recording.events.end(), [&](const KernelEvent& event) {
        if (event.device != panel || event.type != EV_ABS) return false;
        const auto outside = [&](const std::array<int32_t, 2>& raw) {
            return event.value < raw[0] || event.value > raw[1];
        };
        return (event.code == ABS_MT_POSITION_X && outside(profile.surface.rawX)) ||
               (event.code == ABS_MT_POSITION_Y && outside(profile.surface.rawY));
    });
    if (beyond == recording.events.end()) return {};
    return {fmt::format("{}: another panel than {}: {} {} on line {} lies outside the profile's surface",
                        recording.file, profile.file, beyond->code == ABS_MT_POSITION_X ? "x" : "y", beyond->value,
                        beyond->line)};
}

}  // namespace refhost

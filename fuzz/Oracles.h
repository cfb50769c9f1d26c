#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "refhost/InputError.h"
#include "refhost/profile/ImportedTrace.h"
#include "tests/refhost/TraceText.h"

// What must hold whatever bytes a reader is given. A fault ends the process, which is how a fuzzer hears of it.

namespace refhost {

inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// The number of the last line, or of the end behind it.
inline uint64_t lastLineOf(std::string_view text) {
    return 1 + static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n'));
}

/// Reads `text`, which goes by the name "in". A reader may refuse it, and must say where.
/// @return whether it was read
template <typename Read>
bool readsOrRefuses(std::string_view text, const Read& read) {
    try {
        read();
        return true;
    } catch (const InputError& refusal) {
        require(std::string_view(refusal.what()).substr(0, 3) == "in:", "a refusal names the file");
        const uint64_t line = std::strtoull(refusal.what() + 3, nullptr, 10);
        require(line >= 1 && line <= lastLineOf(text), "a refusal names a line of the text");
        return false;
    }
}

/// Reading and writing a written trace gives the same again.
inline void requireATrace(const std::string& text) try {
    require(rewritten(text) == text, "a written trace reads as the same");
} catch (const InputError& refusal) {
    require(false, refusal.what());
}

/// A recording speaks of its own lines and devices, and can be replayed.
inline void requireConsistent(const Recording& recording, std::string_view text) {
    const uint64_t last = lastLineOf(text);
    const auto inText = [last](uint64_t line) { return line >= 1 && line <= last; };
    for (const KernelEvent& event : recording.events) {
        require(event.device < recording.devices.size(), "an event comes from a device of the recording");
        require(inText(event.line), "an event stands on a line of the text");
        require(event.timeUs >= 0 && (recording.hasTimes || event.timeUs == 0), "an event has a time");
    }
    for (const RecordedDevice& device : recording.devices)
        require(inText(device.line), "a device stands on a line of the text");
    for (const SkippedLine& skipped : recording.skipped)
        require(inText(skipped.line) && skipped.text.size() <= 60, "what is skipped is told in short");
    static const Profile profile = parseProfile(
        "{touch: {name: p, id: 3, surface: {width: 9, height: 9}}, keys: {name: k, id: 5, scancodes: {KEY_POWER: 1}},"
        "timeline: [{at: 0.1, rotate: 1}]}",
        "profile", "");
    const auto imports = [&](const std::string& device) {
        std::optional<ImportedTrace> trace;
        if (!readsOrRefuses(text, [&] { trace.emplace(recording, profile, device); })) return false;
        requireATrace(written(*trace));
        for (const std::string& told : trace->leftOut()) require(told.rfind("in: ", 0) == 0, "notes name the file");
        return true;
    };
    if (!imports("") && !recording.devices.empty()) imports(recording.devices.back().path);
}

/// Reads a recording; true unless it was refused.
inline bool readsARecording(std::string_view text, Recording (*read)(std::string_view, const std::string&)) {
    return readsOrRefuses(text, [&] { requireConsistent(read(text, "in"), text); });
}

}  // namespace refhost

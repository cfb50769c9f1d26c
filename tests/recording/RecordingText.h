#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "refhost/InputError.h"
#include "refhost/recording/Recording.h"

namespace refhost {

/// The events of a recording as text, `device:type code value` in decimal, or with the time in front, then the numbers
/// of the skipped lines: `1000002/0:3 53 -1, 0:0 0 0; skipped 1 4`.
inline std::string eventsOf(const Recording& recording, bool withTimes = false) {
    std::vector<std::string> events;
    for (const auto& [timeUs, device, line, type, code, value] : recording.events) {
        const std::string time = withTimes ? fmt::format("{}/", timeUs) : "";
        events.push_back(fmt::format("{}{}:{} {} {}", time, device, type, code, value));
    }
    std::string skipped = recording.skipped.empty() ? "" : "; skipped";
    for (const SkippedLine& line : recording.skipped) skipped += fmt::format(" {}", line.line);
    return fmt::format("{}{}", fmt::join(events, ", "), skipped);
}

/// What the error that `call` throws says; empty when it throws none.
template <typename Call>
std::string errorOf(const Call& call) {
    try {
        call();
    } catch (const InputError& error) {
        return error.what();
    }
    return {};
}

inline bool beginsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

/// Expects `read(text)` to refuse each first text with a message that begins with `where` and the second.
template <typename Read>
void expectRefusals(const Read& read, const std::string& where,
                    const std::vector<std::pair<std::string, std::string>>& refusals) {
    for (const auto& [text, fault] : refusals) {
        const std::string error = errorOf([&, refused = text] { read(refused); });
        EXPECT_TRUE(beginsWith(error, where + fault)) << text.substr(0, 200) << " -> " << error;
    }
}

}  // namespace refhost

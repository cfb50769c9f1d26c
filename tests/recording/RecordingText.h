#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "refhost/InputError.h"
#include "refhost/recording/Recording.h"

namespace refhost {

/// The events of a recording as text, `device:type code value` in decimal, or with the time in front: `1000002/0:3 53
/// -1`.
inline std::string eventsOf(const Recording& recording, bool withTimes = false) {
    std::string text;
    for (const KernelEvent& event : recording.events) {
        if (!text.empty()) text += ", ";
        if (withTimes) text += std::to_string(event.timeUs) + "/";
        text += std::to_string(event.device) + ":" + std::to_string(event.type) + " " + std::to_string(event.code) +
                " " + std::to_string(event.value);
    }
    return text;
}

/// The numbers of the skipped lines: "1 4".
inline std::string skippedLinesOf(const Recording& recording) {
    std::string text;
    for (const SkippedLine& skipped : recording.skipped)
        text += (text.empty() ? "" : " ") + std::to_string(skipped.line);
    return text;
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

/// Expects `read(text)` to refuse each first text with a message that begins with the second.
template <typename Read>
void expectRefusals(const Read& read, const std::vector<std::pair<std::string, std::string>>& refusals) {
    for (const auto& refusal : refusals) {
        const std::string error = errorOf([&] { read(refusal.first); });
        EXPECT_TRUE(beginsWith(error, refusal.second)) << refusal.first.substr(0, 200) << " -> " << error;
    }
}

}  // namespace refhost

#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "refhost/play/CallResult.h"

namespace refhost {

/// The tags under which the filters log.
inline constexpr std::string_view kFrontFpTag = "ZqFrontFPAftProcessor";
inline constexpr std::string_view kCoverTag = "ZqSCAftProcessor";
inline constexpr std::string_view kFoldTag = "ZqFoldableDeviceAftProcessor";

/// How many lines of a call were logged under this tag and begin and end so. Where they hold a window's name, it stands
/// between the two: a name, which may hold anything, passes for no other line.
inline size_t countLines(const CallResult& result, std::string_view tag, std::string_view begin,
                         std::string_view end = "") {
    return static_cast<size_t>(std::count_if(result.log.begin(), result.log.end(), [&](const LogEntry& line) {
        const std::string_view text = line.text;
        return line.tag == tag && text.starts_with(begin) && text.ends_with(end);
    }));
}

}  // namespace refhost

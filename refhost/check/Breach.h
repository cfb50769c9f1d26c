#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace refhost {

/// Something that the plug-in has done, or left undone, against what a host relies on.
struct Breach {
    uint32_t line = 0;      ///< of the trace
    std::string_view rule;  ///< its name, for searches: "frame-order"; lives as long as the program
    std::string text;       ///< one sentence: what was seen, and what was expected
};

using Breaches = std::vector<Breach>;

}  // namespace refhost

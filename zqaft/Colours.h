#pragma once

#include <string_view>

namespace zqaft {

// What a terminal takes to change the colour of what follows.

inline constexpr std::string_view kGreen = "\x1b[32m";
inline constexpr std::string_view kYellow = "\x1b[33m";
inline constexpr std::string_view kCyan = "\x1b[36m";
inline constexpr std::string_view kRed = "\x1b[31m";
inline constexpr std::string_view kDim = "\x1b[2m";
inline constexpr std::string_view kPlain = "\x1b[0m";

}  // namespace zqaft

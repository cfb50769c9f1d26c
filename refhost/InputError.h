#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace refhost {

/// A fault in a file that the user gave us. what() is one line: `FILE:LINE: KEY: what is wrong and what is expected`.
class InputError : public std::runtime_error {
  public:
    InputError(std::string_view file, uint32_t line, std::string_view key, std::string_view fault)
        : std::runtime_error(fmt::format("{}:{}: {}: {}", file, line, key, fault)) {}
    /// The whole line, put together elsewhere.
    explicit InputError(const std::string& line) : std::runtime_error(line) {}
};

/// A file that cannot be opened or read at all. what() says which and why.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace refhost

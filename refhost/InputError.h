#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace refhost {

/// A fault in a file that the user gave us. what() is one line: `FILE:LINE: KEY: what is wrong and what is expected`.
/// Control characters, which such a file may hold, become '?'.
class InputError : public std::runtime_error {
  public:
    /// @param file as the user named it
    /// @param line from 1
    /// @param key  the field or construct at fault: "pointers[1].x", "E: value", "device"
    InputError(std::string_view file, uint32_t line, std::string_view key, std::string_view fault);

    /// The whole line, put together elsewhere.
    explicit InputError(const std::string& line);
};

/// The text with '?' for each control character, which would move a terminal's cursor, or worse.
std::string onOneLine(std::string text);

/// A file that cannot be opened or read at all. what() says which and why.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace refhost

#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace refhost {

/// A recording that cannot be used. `what()` is one line of text: `FILE:LINE: KEY: what is wrong and what is expected`.
class RecordingError : public std::runtime_error {
  public:
    /// @param file as the user named it
    /// @param line from 1; 0 where the fault belongs to no line, such as a file that cannot be opened
    /// @param key  the field or construct at fault: "E: value", "format", "device"
    /// @param text what is wrong and what is expected. Control characters, which a recording may hold, become '?'
    RecordingError(const std::string& file, uint32_t line, const std::string& key, const std::string& text);
};

}  // namespace refhost

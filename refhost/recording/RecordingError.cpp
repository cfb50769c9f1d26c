#include "refhost/recording/RecordingError.h"

#include <fmt/format.h>

namespace refhost {

namespace {

std::string onOneLine(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
    }
    return text;
}

}  // namespace

RecordingError::RecordingError(const std::string& file, uint32_t line, const std::string& key, const std::string& text)
    : std::runtime_error(onOneLine(fmt::format("{}:{}: {}: {}", file, line, key, text))) {}

}  // namespace refhost

#include "refhost/InputError.h"

#include <fmt/format.h>

namespace refhost {

std::string onOneLine(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
    }
    return text;
}

InputError::InputError(std::string_view file, uint32_t line, std::string_view key, std::string_view fault)
    : InputError(fmt::format("{}:{}: {}: {}", file, line, key, fault)) {}

InputError::InputError(const std::string& line) : std::runtime_error(onOneLine(line)) {}

}  // namespace refhost

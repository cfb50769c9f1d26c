#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace refhost {

/// "EV_ABS" to its number.
std::optional<uint16_t> eventTypeNamed(std::string_view name);

/// "ABS_MT_POSITION_X" to its number within `type`. Knows second names of a code ("BTN_DIGI", "KEY_SCREENLOCK") and a
/// name that getevent has cut to 20 characters, as long as only one name begins so.
std::optional<uint16_t> eventCodeNamed(uint16_t type, std::string_view name);

/// "DOWN", "UP" and "REPEAT" of a key, "MT_TOOL_PALM" and its like of ABS_MT_TOOL_TYPE.
std::optional<int32_t> eventValueNamed(uint16_t type, uint16_t code, std::string_view name);

/// A code's name, or its number in hexadecimal where it has none: for messages.
std::string nameOfEventCode(uint16_t type, uint16_t code);

}  // namespace refhost

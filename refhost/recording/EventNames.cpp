#include "refhost/recording/EventNames.h"

#include <fmt/format.h>
#include <libevdev/libevdev.h>
#include <linux/input-event-codes.h>

namespace refhost {

namespace {

/// getevent prints a code's first name in the kernel's header, libevdev knows the last one of each.
struct SecondName {
    std::string_view name;
    uint16_t code;
};
constexpr SecondName kSecondKeyNames[] = {
    {"BTN_MISC", BTN_MISC},
    {"BTN_MOUSE", BTN_MOUSE},
    {"BTN_JOYSTICK", BTN_JOYSTICK},
    {"BTN_GAMEPAD", BTN_GAMEPAD},
    {"BTN_DIGI", BTN_DIGI},
    {"BTN_WHEEL", BTN_WHEEL},
    {"BTN_TRIGGER_HAPPY", BTN_TRIGGER_HAPPY},
    {"KEY_HANGUEL", KEY_HANGUEL},
    {"KEY_SCREENLOCK", KEY_SCREENLOCK},
    {"KEY_DIRECTION", KEY_DIRECTION},
    {"KEY_DASHBOARD", KEY_DASHBOARD},
    {"KEY_BRIGHTNESS_ZERO", KEY_BRIGHTNESS_ZERO},
    {"KEY_BRIGHTNESS_TOGGLE", KEY_BRIGHTNESS_TOGGLE},
    {"KEY_WIMAX", KEY_WIMAX},
    {"KEY_ZOOM", KEY_ZOOM},
    {"KEY_SCREEN", KEY_SCREEN},
};

constexpr size_t kCutNameLength = 20;

std::optional<uint16_t> onlyCodeBeginningWith(uint16_t type, std::string_view cut) {
    std::optional<uint16_t> found;
    for (int code = 0; code <= libevdev_event_type_get_max(type); ++code) {
        const char* const name = libevdev_event_code_get_name(type, static_cast<unsigned>(code));
        if (!name || std::string_view(name).substr(0, kCutNameLength) != cut) continue;
        if (found) return std::nullopt;
        found = static_cast<uint16_t>(code);
    }
    return found;
}

}  // namespace

std::optional<uint16_t> eventTypeNamed(std::string_view name) {
    const int type = libevdev_event_type_from_name_n(name.data(), name.size());
    if (type < 0) return std::nullopt;
    return static_cast<uint16_t>(type);
}

std::optional<uint16_t> eventCodeNamed(uint16_t type, std::string_view name) {
    const int code = libevdev_event_code_from_name_n(type, name.data(), name.size());
    if (code >= 0) return static_cast<uint16_t>(code);
    if (type == EV_KEY) {
        for (const SecondName& second : kSecondKeyNames) {
            if (second.name.substr(0, kCutNameLength) == name) return second.code;
        }
    }
    if (name.size() != kCutNameLength) return std::nullopt;
    return onlyCodeBeginningWith(type, name);
}

std::optional<int32_t> eventValueNamed(uint16_t type, uint16_t code, std::string_view name) {
    if (type == EV_KEY) {
        if (name == "UP") return 0;
        if (name == "DOWN") return 1;
        if (name == "REPEAT") return 2;
        return std::nullopt;
    }
    const int value = libevdev_event_value_from_name_n(type, code, name.data(), name.size());
    if (value < 0) return std::nullopt;
    return value;
}

std::string nameOfEventCode(uint16_t type, uint16_t code) {
    const char* const name = libevdev_event_code_get_name(type, code);
    return name ? std::string(name) : fmt::format("code {:04x}", code);
}

}  // namespace refhost

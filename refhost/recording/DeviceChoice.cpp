#include "refhost/recording/DeviceChoice.h"

#include <fmt/format.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "refhost/recording/EventNames.h"

namespace refhost {

namespace {

/// What the events of a device show it to be, the nearest to a touch panel last.
enum class Kind { Silent, Other, Keys, UnknownAxes, SingleTouch, TouchWithoutPosition, Touch };

struct Evidence {
    Kind kind = Kind::Silent;
    const KernelEvent* first = nullptr;  ///< the first event that shows it
};

bool isTouchKey(uint16_t code) { return code >= BTN_DIGI && code < BTN_WHEEL; }

Kind kindShownBy(const KernelEvent& event) {
    if (event.type == EV_SYN) return event.code == SYN_MT_REPORT ? Kind::TouchWithoutPosition : Kind::Other;
    if (event.type == EV_KEY && !isTouchKey(event.code)) return Kind::Keys;
    if (event.type != EV_ABS) return Kind::Other;
    if (event.code == ABS_MT_POSITION_X || event.code == ABS_MT_POSITION_Y) return Kind::Touch;
    if (event.code >= ABS_MT_SLOT && event.code <= ABS_MT_TOOL_Y) return Kind::TouchWithoutPosition;
    if (event.code == ABS_X || event.code == ABS_Y) return Kind::SingleTouch;
    return Kind::UnknownAxes;
}

std::vector<Evidence> evidencePerDevice(const Recording& recording) {
    std::vector<Evidence> evidence(recording.devices.size());
    for (const KernelEvent& event : recording.events) {
        Evidence& of = evidence[event.device];
        const Kind kind = kindShownBy(event);
        if (kind > of.kind) of = {kind, &event};
    }
    return evidence;
}

bool goesBy(const RecordedDevice& device, std::string_view wanted) {
    if (device.name == wanted || device.path == wanted) return true;
    const size_t slash = device.path.rfind('/');
    return slash != std::string::npos && std::string_view(device.path).substr(slash + 1) == wanted;
}

std::string listOf(const Recording& recording, const std::vector<uint32_t>& devices) {
    constexpr size_t kListed = 20;
    std::vector<std::string> words;
    for (const uint32_t device : devices) {
        if (words.size() == kListed) {
            words.push_back(fmt::format("and {} more", devices.size() - kListed));
            break;
        }
        words.push_back(describeDevice(recording.devices[device]));
    }
    return fmt::format("{}", fmt::join(words, ", "));
}

/// The axes other than positions that the device sends, by name.
std::string unknownAxes(const Recording& recording, uint32_t device) {
    std::vector<std::string> names;
    for (const KernelEvent& event : recording.events) {
        if (event.device != device || event.type != EV_ABS) continue;
        const std::string name = nameOfEventCode(EV_ABS, event.code);
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
        if (names.size() == 4) break;
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

constexpr const char* kExpected = "expected events with ABS_MT_POSITION_X and ABS_MT_POSITION_Y";

[[noreturn]] void refuse(const Recording& recording, uint32_t line, const std::string& text) {
    throw InputError(recording.file, line, "device", fmt::format("{}; {}", text, kExpected));
}

/// Nobody has said a thing: there may be descriptions, one of which may be a touch panel's.
[[noreturn]] void refuseSilence(const Recording& recording, const std::vector<uint32_t>& devices) {
    if (devices.empty()) refuse(recording, 1, "the recording holds no event");
    const auto panel = std::find_if(devices.begin(), devices.end(), [&recording](uint32_t device) {
        return recording.devices[device].axes.count(ABS_MT_POSITION_X) != 0;
    });
    const RecordedDevice& shown = recording.devices[panel != devices.end() ? *panel : devices.front()];
    if (!recording.events.empty()) {
        refuse(recording, shown.line, fmt::format("{} is described here but sends no event", describeDevice(shown)));
    }
    const bool capabilities = std::any_of(recording.devices.begin(), recording.devices.end(),
                                          [](const RecordedDevice& device) { return !device.axes.empty(); });
    refuse(recording, shown.line,
           fmt::format("the recording only {} ({}) and holds no event",
                       capabilities ? "describes what devices can do" : "lists devices", listOf(recording, devices)));
}

/// Says what the devices send instead, by the one that is nearest to a touch panel.
[[noreturn]] void refuseWithoutTouch(const Recording& recording, const std::vector<uint32_t>& devices,
                                     const std::vector<Evidence>& evidence) {
    const auto nearest = std::max_element(devices.begin(), devices.end(), [&evidence](uint32_t a, uint32_t b) {
        return evidence[a].kind < evidence[b].kind;
    });
    if (nearest == devices.end() || evidence[*nearest].kind == Kind::Silent) refuseSilence(recording, devices);

    const Evidence& shown = evidence[*nearest];
    const std::string who = describeDevice(recording.devices[*nearest]);
    switch (shown.kind) {
        case Kind::TouchWithoutPosition:
            refuse(recording, shown.first->line, fmt::format("{} sends multi-touch events without a position", who));
        case Kind::SingleTouch:
            refuse(recording, shown.first->line, fmt::format("{} is single-touch: it sends ABS_X and ABS_Y only", who));
        case Kind::UnknownAxes:
            refuse(recording, shown.first->line,
                   fmt::format("{} sends {}, which are no touch positions", who, unknownAxes(recording, *nearest)));
        case Kind::Keys:
            refuse(
                recording, shown.first->line,
                fmt::format("there are key events only: {} sends {}", who, nameOfEventCode(EV_KEY, shown.first->code)));
        default: refuse(recording, shown.first->line, fmt::format("{} sends events, but none of touch", who));
    }
}

}  // namespace

uint32_t chooseTouchDevice(const Recording& recording, const std::optional<std::string>& wanted) {
    std::vector<uint32_t> all;
    std::vector<uint32_t> candidates;
    for (uint32_t device = 0; device < recording.devices.size(); ++device) {
        all.push_back(device);
        if (!wanted || goesBy(recording.devices[device], *wanted)) candidates.push_back(device);
    }
    if (wanted && candidates.empty() && !all.empty()) {
        throw InputError(recording.file, recording.devices.front().line, "device",
                         fmt::format("no device goes by '{}', expected one of: {}", *wanted, listOf(recording, all)));
    }

    const std::vector<Evidence> evidence = evidencePerDevice(recording);
    std::vector<uint32_t> touching;
    for (const uint32_t device : candidates) {
        if (evidence[device].kind == Kind::Touch) touching.push_back(device);
    }
    if (touching.empty()) refuseWithoutTouch(recording, candidates, evidence);
    if (touching.size() > 1) {
        throw InputError(recording.file, evidence[touching[1]].first->line, "device",
                         fmt::format("{} devices send touches, expected the name or path of one: {}", touching.size(),
                                     listOf(recording, touching)));
    }
    return touching.front();
}

bool sendsKeys(const Recording& recording, uint32_t device) {
    return std::any_of(recording.events.begin(), recording.events.end(), [device](const KernelEvent& event) {
        return event.device == device && event.type == EV_KEY && !isTouchKey(event.code);
    });
}

std::string describeDevice(const RecordedDevice& device) {
    if (device.path.empty() && device.name.empty()) return fmt::format("the unnamed device of line {}", device.line);
    if (device.path.empty()) return fmt::format("\"{}\"", device.name);
    if (device.name.empty()) return device.path;
    return fmt::format("{} \"{}\"", device.path, device.name);
}

}  // namespace refhost

#include "refhost/recording/GeteventLine.h"

#include <linux/input-event-codes.h>

#include <limits>

#include "refhost/recording/EventNames.h"
#include "refhost/recording/Text.h"

namespace refhost::getevent {

namespace {

// Longer than any there is. Without a limit, a line without end that looks like one of them again and again would be
// read again and again.
constexpr size_t kMaxPathLength = 256;
constexpr size_t kMaxNameLength = 40;

constexpr std::string_view kDevices = "/dev/";

bool isWordCharacter(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

std::string_view name(Cursor& at) { return at.run(isWordCharacter, kMaxNameLength); }

/// Exactly four hexadecimal digits and then a blank: an event's type or code.
std::optional<uint16_t> hexColumn(Cursor& at) {
    Cursor ahead = at;
    const std::string_view digits = ahead.run(isHexDigit, 4);
    if (digits.size() < 4 || !isBlank(ahead.peek())) return std::nullopt;
    at = ahead;
    return static_cast<uint16_t>(*hexNumber(digits));
}

std::optional<uint16_t> typeColumn(Cursor& at) {
    if (const auto type = hexColumn(at)) return *type <= EV_MAX ? type : std::nullopt;
    return eventTypeNamed(name(at));
}

std::optional<uint16_t> codeColumn(Cursor& at, uint16_t type) {
    if (const auto code = hexColumn(at)) return code;
    return eventCodeNamed(type, name(at));
}

/// Eight digits. More of them can only be the type of an event that follows without a line end, or what a cut has left
/// of it; anything else is a number that somebody has mistyped.
std::optional<int32_t> hexValue(Cursor& at, bool lineHoldsSeveral) {
    Cursor ahead = at;
    const std::string_view digits = ahead.run(isHexDigit, 8);
    if (digits.size() < 8) return std::nullopt;
    const Cursor behind = ahead;
    const size_t more = ahead.run(isHexDigit, 5).size();
    const bool nextEventFollows = more == 4 && isBlank(ahead.peek());
    const bool cutHere = lineHoldsSeveral && more <= 4 && ahead.atEnd();
    if (more != 0 && !nextEventFollows && !cutHere) return std::nullopt;
    at = behind;
    return static_cast<int32_t>(*hexNumber(digits));
}

std::optional<int32_t> valueColumn(Cursor& at, uint16_t type, uint16_t code, bool lineHoldsSeveral) {
    if (const auto value = hexValue(at, lineHoldsSeveral)) return value;
    return eventValueNamed(type, code, name(at));
}

bool typeCodeValue(Cursor& at, Event& event, bool lineHoldsSeveral) {
    const auto type = typeColumn(at);
    if (!type || !at.blanks()) return false;
    const auto code = codeColumn(at, *type);
    if (!code || !at.blanks()) return false;
    const auto value = valueColumn(at, *type, *code, lineHoldsSeveral);
    if (!value) return false;
    event.type = *type;
    event.code = *code;
    event.value = *value;
    return true;
}

/// `[   18983.942141]`
bool bracketedTime(Cursor& at, Event& event) {
    at.literal("[");
    at.blanks();
    const auto seconds = decimalNumber(at.run(isDigit));
    if (!seconds || !at.literal(".")) return false;
    const std::string_view fraction = at.run(isDigit);
    if (fraction.size() != 6 || !at.literal("]")) return false;
    event.timeUs = microseconds(*seconds, *decimalNumber(fraction));
    return event.timeUs.has_value();
}

std::string_view path(Cursor& at) {
    return at.run([](char c) { return !isBlank(c) && c != ':'; }, kMaxPathLength);
}

/// ` rate 90`, printed after SYN_REPORT with -r. Without line ends the next event's type is glued to the number: its
/// last four digits, told by the columns that follow.
void passOverRate(Cursor& at) {
    Cursor ahead = at;
    ahead.blanks();
    if (!ahead.literal("rate ")) return;
    ahead.literal("-");
    for (;;) {
        Cursor next = ahead;
        Event ignored;
        if (typeCodeValue(next, ignored, true) || ahead.run(isDigit, 1).empty()) break;
    }
    at = ahead;
}

std::optional<Event> kernelEvent(Cursor& at, bool lineHoldsSeveral) {
    Event event;
    Cursor ahead = at;
    if (ahead.peek() == '[' && !bracketedTime(ahead, event)) return std::nullopt;
    ahead.blanks();
    if (ahead.peek() == '/') {
        event.path = path(ahead);
        if (!ahead.literal(":")) return std::nullopt;
        ahead.blanks();
    }
    if (!typeCodeValue(ahead, event, lineHoldsSeveral)) return std::nullopt;
    if (event.type == EV_SYN && event.code == SYN_REPORT) passOverRate(ahead);
    at = ahead;
    return event;
}

/// `sendevent PATH TYPE CODE VALUE`, all decimal; -1 is also written 4294967295.
std::optional<Event> sentEvent(Cursor& at) {
    constexpr auto kNumber = [](char c) { return isDigit(c) || c == '-'; };
    Cursor ahead = at;
    if (!ahead.literal("sendevent") || !ahead.blanks()) return std::nullopt;
    Event event;
    event.path = path(ahead);
    ahead.literal(":");
    int64_t numbers[3] = {};
    for (int64_t& number : numbers) {
        if (!ahead.blanks()) return std::nullopt;
        const auto parsed = decimalNumber(ahead.run(kNumber));
        if (!parsed) return std::nullopt;
        number = *parsed;
    }
    const auto [type, code, value] = numbers;
    if (type < 0 || type > EV_MAX || code < 0 || code > std::numeric_limits<uint16_t>::max()) return std::nullopt;
    if (value < std::numeric_limits<int32_t>::min() || value > std::numeric_limits<uint32_t>::max())
        return std::nullopt;
    event.type = static_cast<uint16_t>(type);
    event.code = static_cast<uint16_t>(code);
    event.value = static_cast<int32_t>(value);
    at = ahead;
    return event;
}

std::optional<Hotplug> hotplug(Cursor& at) {
    Cursor ahead = at;
    const bool added = ahead.literal("add device ");
    if (!added && !ahead.literal("remove device ")) return std::nullopt;
    if (ahead.run(isDigit).empty() || !ahead.literal(": ") || ahead.peek() != '/') return std::nullopt;
    const std::string_view device = path(ahead);
    at = ahead;
    return Hotplug{added, device};
}

std::optional<Item> itemAt(Cursor& at, bool strayBefore, bool lineHoldsSeveral) {
    switch (at.peek()) {
        case '[': break;  // stray characters may stand right before a time or a path
        case '/':
            if (at.rest().substr(0, kDevices.size()) != kDevices) return std::nullopt;
            break;
        case 's':
            if (const auto event = sentEvent(at)) return *event;
            return std::nullopt;
        case 'a':
        case 'r':
            if (const auto plugged = hotplug(at)) return *plugged;
            return std::nullopt;
        default:
            if (strayBefore || !isWordCharacter(at.peek())) return std::nullopt;
    }
    if (const auto event = kernelEvent(at, lineHoldsSeveral)) return *event;
    return std::nullopt;
}

}  // namespace

std::optional<Item> Items::next() {
    bool strayBefore = false;
    for (size_t i = mAfterItem; i < mLine.size(); ++i) {
        Cursor at(mLine, i);
        if (auto item = itemAt(at, strayBefore, mAfterItem > 0)) {
            mAfterItem = at.at();
            return item;
        }
        strayBefore |= !isBlank(mLine[i]);
    }
    return std::nullopt;
}

std::optional<std::string_view> deviceName(std::string_view line) {
    Cursor at(line);
    if (!at.blanks() || !at.literal("name:")) return std::nullopt;
    at.blanks();
    const std::string_view quoted = at.rest();
    const size_t closing = quoted.rfind('"');
    if (quoted.empty() || quoted.front() != '"' || closing == 0) return std::nullopt;
    return quoted.substr(1, closing - 1);
}

constexpr std::string_view kAxisValue = " : value ";

bool looksLikeAxis(std::string_view line) { return line.find(kAxisValue) != std::string_view::npos; }

std::optional<Axis> axis(std::string_view line) {
    const size_t valueAt = line.find(kAxisValue);
    if (valueAt == std::string_view::npos) return std::nullopt;

    std::string_view label = line.substr(0, valueAt);
    while (!label.empty() && isBlank(label.back())) label.remove_suffix(1);
    const size_t beforeLabel = label.find_last_of(" \t");
    if (beforeLabel != std::string_view::npos) label.remove_prefix(beforeLabel + 1);
    const auto number = label.size() == 4 ? hexNumber(label) : std::nullopt;
    const auto code = number ? static_cast<uint16_t>(*number) : eventCodeNamed(EV_ABS, label);
    if (!code) return std::nullopt;

    // `flat` must be there, for a line cut in the middle of `max` has a wrong one; `resolution` came with later
    // kernels.
    constexpr std::string_view kFields[] = {kAxisValue, ", min ", ", max ", ", fuzz ", ", flat "};
    constexpr auto kNumber = [](char c) { return isDigit(c) || c == '-'; };
    Cursor at(line, valueAt);
    std::optional<int32_t> values[std::size(kFields)];
    for (size_t i = 0; i < std::size(kFields); ++i) {
        if (!at.literal(kFields[i])) return std::nullopt;
        values[i] = decimalInt32(at.run(kNumber));
        if (!values[i]) return std::nullopt;
    }
    return Axis{*code, {*values[1], *values[2]}};
}

}  // namespace refhost::getevent

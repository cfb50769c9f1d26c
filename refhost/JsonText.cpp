#include "refhost/JsonText.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace refhost {

namespace {

/// Text that stands in JSON as it is: most of what is written.
bool isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return ' ' <= c && c <= '~' && c != '"' && c != '\\'; });
}

}  // namespace

void appendJson(TextBuffer& out, std::string_view text) {
    if (isPlain(text)) {
        out.push_back('"');
        append(out, text);
        return out.push_back('"');
    }
    append(out, nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

bool isUtf8(std::string_view text) {
    try {
        return !nlohmann::json(text).dump().empty();
    } catch (const nlohmann::json::type_error&) {
        return false;
    }
}

void appendJson(TextBuffer& out, android::BitSet32 ids) { appendJsonNumbers(out, ids); }

void appendJson(TextBuffer& out, const android::RawPointerData::Pointer& pointer) {
    append(out, FMT_COMPILE(R"({{"id":{},"x":{},"y":{},"axes":)"), pointer.id, pointer.x, pointer.y);
    appendJsonNumbers(out, pointer.axes);
    append(out, FMT_COMPILE(R"(,"hovering":{},"extraData":{},"reserved":{}}})"), pointer.isHovering != 0,
           pointer.extraData, pointer.reserved);
}

}  // namespace refhost

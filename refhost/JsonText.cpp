#include "refhost/JsonText.h"

#include <nlohmann/json.hpp>

namespace refhost {

void appendJson(TextBuffer& out, std::string_view text) {
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

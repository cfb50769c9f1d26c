#pragma once

#include <fmt/compile.h>
#include <fmt/format.h>

#include <cmath>
#include <concepts>
#include <string_view>
#include <type_traits>

#include "aft/host/RawPointerData.h"

namespace refhost {

/// Text that grows at its end; written out and used again.
using TextBuffer = fmt::memory_buffer;

template <typename Format, typename First, typename... Rest>
void append(TextBuffer& out, const Format& format, const First& first, const Rest&... rest) {
    fmt::format_to(fmt::appender(out), format, first, rest...);
}
inline void append(TextBuffer& out, std::string_view text) { out.append(text.data(), text.data() + text.size()); }

/// A JSON string, quoted and escaped. Bytes that are not UTF-8 come out as the replacement character.
void appendJson(TextBuffer& out, std::string_view text);

/// True of text that a JSON string says as it is.
bool isUtf8(std::string_view text);

/// `[0,1,5]`, lowest id first.
void appendJson(TextBuffer& out, android::BitSet32 ids);

/// One pointer with all its fields.
void appendJson(TextBuffer& out, const android::RawPointerData::Pointer& pointer);

/// `[a,b,c]` of numbers. A negative zero is a float's, "-0.0": readers take "-0" for an integer, which has no such.
template <typename Range>
void appendJsonNumbers(TextBuffer& out, const Range& numbers) {
    char separator = '[';
    for (const auto& number : numbers) {
        append(out, FMT_COMPILE("{}{}"), separator, number);
        if constexpr (std::floating_point<std::remove_cvref_t<decltype(number)>>) {
            if (number == 0 && std::signbit(number)) append(out, ".0");
        }
        separator = ',';
    }
    append(out, separator == '[' ? "[]" : "]");
}

/// `"key":[...]` of one text per element; `each(out, element)` writes it.
template <typename Range, typename Each>
void appendJsonArray(TextBuffer& out, const Range& elements, Each each) {
    char separator = '[';
    for (const auto& element : elements) {
        out.push_back(separator);
        each(element);
        separator = ',';
    }
    append(out, separator == '[' ? "[]" : "]");
}

}  // namespace refhost

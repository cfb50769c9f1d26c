#include <fmt/format.h>

#include <algorithm>

#include "refhost/Files.h"
#include "refhost/recording/GeteventLine.h"
#include "refhost/recording/LibinputText.h"
#include "refhost/recording/Readers.h"
#include "refhost/recording/Text.h"

namespace refhost {

namespace {

using TextReader = Recording (*)(std::string_view, const std::string&);

constexpr std::string_view kExpected = "expected a recording made with getevent, evemu-record or libinput record";

bool isEvemu(std::string_view line) {
    Cursor at(line);
    if (at.literal("# EVEMU ")) return true;
    if (at.literal("E: ")) return isDigit(at.peek());
    if (at.literal("N: ")) return true;
    for (const std::string_view hexLine : {"I: ", "P: ", "B: ", "A: "}) {
        if (at.literal(hexLine)) return isHexDigit(at.peek());
    }
    return false;
}

/// The reader of what this line alone proves the text to be, or nullptr.
TextReader readerFor(std::string_view line) {
    // In this order: an evemu event also holds three numbers such as getevent prints.
    if (isEvemu(line)) return readEvemu;
    if (libinput::beginsDocument(line)) return readLibinput;
    if (getevent::Items(line).next()) return readGetevent;
    return nullptr;
}

/// What gives away a text that is something else.
struct ForeignMark {
    std::string_view mark;
    bool onlyAtStart;
    const char* whatItIs;
};
constexpr ForeignMark kForeignMarks[] = {
    {"\xff\xfe", true, "UTF-16 text, as a Windows shell writes it; save it as UTF-8"},
    {"\xfe\xff", true, "UTF-16 text; save it as UTF-8"},
    {"{\"trace\"", true, "a trace, not a recording; replay it without --profile"},
    {"Event: time ", false, "output of evtest"},
    {std::string_view("\0", 1), false, "binary data"},
};

[[noreturn]] void refuse(std::string_view text, const std::string& file) {
    if (text.find_first_not_of(" \t\v\f\r\n") == std::string_view::npos) {
        throw InputError(file, 1, "format", fmt::format("the file is empty; {}", kExpected));
    }
    for (const ForeignMark& foreign : kForeignMarks) {
        const size_t at = text.find(foreign.mark);
        if (at == std::string_view::npos || (foreign.onlyAtStart && at != 0)) continue;
        const auto line = static_cast<uint32_t>(1 + std::count(text.begin(), text.begin() + at, '\n'));
        throw InputError(file, line, "format", fmt::format("{}; {}", foreign.whatItIs, kExpected));
    }
    throw InputError(file, 1, "format", fmt::format("no line holds an event or describes a device; {}", kExpected));
}

}  // namespace

Recording readRecordingText(std::string_view text, const std::string& file) {
    constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) text.remove_prefix(kByteOrderMark.size());
    Lines lines(text);
    while (lines.next()) {
        if (const TextReader read = readerFor(lines.line())) return read(text, file);
    }
    refuse(text, file);
}

Recording readRecording(const std::string& path) { return readRecordingText(readFile(path), path); }

}  // namespace refhost

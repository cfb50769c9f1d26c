#include "refhost/recording/LibinputText.h"

#include <optional>

#include "refhost/recording/Text.h"

namespace refhost::libinput {

namespace {

/// "> > " of a line that a mail quotes twice; of others, nothing.
std::string_view quotePrefix(std::string_view line) {
    Cursor at(line);
    if (at.peek() != '>') return {};
    return at.run([](char c) { return c == '>' || c == ' '; });
}

/// The line without the prefix, nothing if it does not carry it: a reply that somebody wrote in between. Mail programs
/// take the blank off the end of a line that is empty otherwise.
std::optional<std::string_view> withoutQuote(std::string_view line, std::string_view prefix) {
    if (line.substr(0, prefix.size()) == prefix) return line.substr(prefix.size());
    if (isBlankLine(line) || line == prefix.substr(0, prefix.find_last_not_of(' ') + 1)) return std::string_view();
    return std::nullopt;
}

/// At the left edge the tool writes keys, list items, comments and document marks, never a prompt or a sentence.
bool belongsToDocument(std::string_view line) {
    if (line.empty() || isBlank(line[0]) || line[0] == '-' || line[0] == '#' || line == "...") return true;
    Cursor at(line);
    at.run(
        [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigit(c) || c == '_' || c == '-'; });
    return at.at() > 0 && at.literal(":") && (at.atEnd() || isBlank(at.peek()));
}

/// The tool writes an event and its brackets on one line.
bool isCutOff(std::string_view line) {
    if (line.find('[') != std::string_view::npos) return line.find(']') == std::string_view::npos;
    Cursor at(line);
    at.blanks();
    constexpr std::string_view kFrame = "- evdev:";
    return at.rest().size() < kFrame.size() && kFrame.substr(0, at.rest().size()) == at.rest();
}

}  // namespace

bool beginsDocument(std::string_view line) {
    line.remove_prefix(quotePrefix(line).size());
    for (const std::string_view start : {"# libinput record", "version:", "ndevices:", "libinput:", "devices:"}) {
        if (line.substr(0, start.size()) == start) return true;
    }
    return false;
}

std::string documentIn(std::string_view text, Recording& recording) {
    std::string document;
    document.reserve(text.size());
    std::optional<std::string_view> prefix;  // of the whole document, once it has begun
    Lines lines(text);
    while (lines.next()) {
        if (!prefix && beginsDocument(lines.line())) prefix = quotePrefix(lines.line());
        const auto line = prefix ? withoutQuote(lines.line(), *prefix) : std::nullopt;
        if (line && belongsToDocument(*line) && (lines.terminated() || !isCutOff(*line))) {
            if (!prefix->empty()) ++recording.quotedLines;
            document += *line;
        } else {
            skipLine(recording, lines.number(), lines.line());
        }
        if (lines.terminated()) document += '\n';
    }
    recording.lines = lines.number();
    return document;
}

}  // namespace refhost::libinput

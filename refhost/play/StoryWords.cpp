#include "refhost/play/StoryWords.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace refhost {

namespace {

constexpr std::string_view kRestoring = "compensate point(";
constexpr std::string_view kCoverCancels = "need to cancel touch.";
constexpr std::string_view kFolding = "cancel touch during folding";

/// The lines of the first call, which reads the properties: about the filter, not about a finger or a key.
bool isOnStartup(std::string_view text) {
    return text.starts_with("invalid config value:") || text.starts_with("enabledAbt:") ||
           text.starts_with("version: ");
}

std::string textOf(const LogEntry* line) { return line != nullptr ? line->text : ""; }

/// The front fingerprint filter's first line on a finger for which `wanted` holds.
template <typename Wanted>
std::string firstOnFinger(const CallResult& result, uint32_t id, Wanted wanted) {
    for (const LogEntry& entry : result.log) {
        if (entry.tag != kFrontFpTag || !wanted(entry.text)) continue;
        if (const auto named = numberAfter(entry.text, "id="); named && *named == static_cast<int32_t>(id)) {
            return entry.text;
        }
    }
    return "";
}

}  // namespace

const LogEntry* lineOf(const CallResult& result, std::string_view tag, std::string_view part) {
    for (const LogEntry& entry : result.log) {
        if (entry.tag == tag && says(entry.text, part)) return &entry;
    }
    return nullptr;
}

std::optional<int32_t> numberAfter(std::string_view text, std::string_view name) {
    const size_t at = text.find(name);
    if (at == std::string_view::npos) return std::nullopt;
    int32_t number = 0;
    const char* begin = text.data() + at + name.size();
    const auto read = std::from_chars(begin, text.data() + text.size(), number);
    return read.ec == std::errc() ? std::optional(number) : std::nullopt;
}

bool isRestoring(std::string_view words) { return says(words, kRestoring); }

/// The first of what the filter says about a finger is the decision; what follows are its consequences. Putting it back
/// goes before all.
std::string wordsOnFinger(const CallResult& result, uint32_t id) {
    std::string restoring = firstOnFinger(result, id, isRestoring);
    if (!restoring.empty()) return restoring;
    return firstOnFinger(result, id, [](std::string_view text) { return !says(text, "Cancel "); });
}

std::string wordsOnRestraining(const CallResult& result, uint32_t id) {
    return firstOnFinger(result, id, [](std::string_view text) { return says(text, "restraint current point("); });
}

std::string wordsOnRestoring(const CallResult& result) { return textOf(lineOf(result, kFrontFpTag, kRestoring)); }

/// The fold's filter says of every frame that it empties what it says of its cancel: there the line stands twice.
std::string wordsOnCancel(const CallResult& result, std::string_view canceller) {
    if (canceller == kCoverTag) return textOf(lineOf(result, kCoverTag, kCoverCancels));
    if (canceller == kFoldTag) {
        const auto folds = [](const LogEntry& entry) { return entry.tag == kFoldTag && says(entry.text, kFolding); };
        return std::count_if(result.log.begin(), result.log.end(), folds) > 1
                   ? textOf(lineOf(result, kFoldTag, kFolding))
                   : "";
    }
    const LogEntry* sensor = lineOf(result, kFrontFpTag, ", cancel it");
    return textOf(sensor != nullptr ? sensor : lineOf(result, kFrontFpTag, "Cancel "));
}

std::string wordsOnFolding(const CallResult& result) { return textOf(lineOf(result, kFoldTag, kFolding)); }

/// The last line of a key says what became of it; where that is an event key taken, the line before says why.
std::string wordsOnKey(const CallResult& result) {
    std::vector<std::string_view> said;
    for (const LogEntry& entry : result.log) {
        if (!isOnStartup(entry.text)) said.push_back(entry.text);
    }
    if (said.empty()) return "";
    const size_t last = said.size() - 1;
    return std::string(last > 0 && said[last].ends_with(" down filtered") ? said[last - 1] : said[last]);
}

std::string wordsOnHoldingKey(const CallResult& result) {
    return textOf(lineOf(result, kFrontFpTag, "delayDispatchKey delay dispatch the key:"));
}

std::string wordsOnSendingKey(const CallResult& result) {
    return textOf(lineOf(result, kFrontFpTag, "handlePendingKey, re-dispatch"));
}

std::string wordsOnNoArea(const CallResult& result) {
    const LogEntry* none = lineOf(result, kFrontFpTag, "invalid config value:");
    return textOf(none != nullptr ? none : lineOf(result, kFrontFpTag, "configure exceeds the limits"));
}

}  // namespace refhost

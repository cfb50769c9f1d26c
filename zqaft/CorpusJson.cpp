#include <array>

#include "refhost/JsonText.h"
#include "zqaft/CorpusPrinter.h"

namespace zqaft {

namespace {

using refhost::append;
using refhost::appendJson;
using refhost::TextBuffer;

void appendTextOrNull(TextBuffer& out, std::string_view key, const std::optional<std::string>& text) {
    append(out, FMT_COMPILE(R"(,"{}":)"), key);
    text ? appendJson(out, *text) : append(out, "null");
}

/// Of a trace that has not been played to its end, every number is null.
void appendCounts(TextBuffer& out, const refhost::PlayedTrace::Counts& counts, bool played) {
    const std::pair<std::string_view, uint64_t> named[] = {
        {"frames", counts.frames},
        {"fingers", counts.fingers},
        {"kept", counts.kept},
        {"lost", counts.lost},
        {"restored", counts.restored},
        {"letThrough", counts.letThrough},
        {"interrupted", counts.interrupted},
        {"fingersCancelled", counts.fingersCancelled},
        {"latestMs", static_cast<uint64_t>(counts.latestNs / 1'000'000)},
        {"judged", counts.pointersJudged},
        {"removed", counts.pointersRemoved},
        {"cancelled", counts.cancelled},
        {"reported", counts.reports},
        {"keysConsumed", counts.keysConsumed},
        {"keysHeldBack", counts.keysHeldBack},
        {"keysReSent", counts.keysReSent},
        {"keysDropped", counts.keysDropped},
        {"keysDispatched", counts.keysDispatched}};
    for (const auto& [name, count] : named) {
        append(out, FMT_COMPILE(R"(,"{}":)"), name);
        played ? append(out, FMT_COMPILE("{}"), count) : append(out, "null");
    }
}

std::string_view wordOf(Standing standing) {
    constexpr std::array<std::string_view, 6> kWords = {"ok", "new", "changed", "updated", "faulty", "crashed"};
    return kWords[static_cast<size_t>(standing)];
}

}  // namespace

void writeJson(TextBuffer& out, const CorpusRow& row) {
    const bool played = !row.failed();
    append(out, R"({"trace":)");
    appendJson(out, row.trace.path);
    appendCounts(out, row.played.counts, played);
    append(out, R"(,"breaches":)");
    refhost::appendJsonArray(out, row.played.breaches, [&out](const auto& breach) {
        append(out, FMT_COMPILE(R"({{"line":{},"rule":"{}","text":)"), breach.line, breach.rule);
        appendJson(out, breach.text);
        append(out, "}");
    });
    append(out, FMT_COMPILE(R"(,"verdicts":"{}","changed":)"), wordOf(row.standing));
    refhost::appendJsonArray(out, row.changes, [&out](const auto& change) {
        append(out, FMT_COMPILE(R"({{"time":{},"subject":)"), change.at);
        appendJson(out, change.subject);
        appendTextOrNull(out, "was", change.was);
        appendTextOrNull(out, "is", change.is);
        append(out, "}");
    });
    appendTextOrNull(out, "error", played ? std::nullopt : std::optional(row.fault));
    played ? append(out, FMT_COMPILE(R"(,"ms":{:.3f}}})"), static_cast<double>(row.played.ns) / 1e6)
           : append(out, R"(,"ms":null})");
    append(out, "\n");
}

}  // namespace zqaft

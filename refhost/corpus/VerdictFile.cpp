#include "refhost/corpus/VerdictFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <deque>
#include <map>
#include <utility>

#include "refhost/InputError.h"
#include "refhost/corpus/FindTraces.h"

namespace refhost {

namespace {

constexpr std::string_view kHeader = "# zqaft verdicts 1";
constexpr std::string_view kColumnGap = "  ";
constexpr std::string_view kAfterTime = " s  ";

/// What stands before `mark`, which leaves `text` together with it; all of the text where there is no mark.
std::string_view takeUpTo(std::string_view& text, std::string_view mark) {
    const std::string_view before = text.substr(0, text.find(mark));
    text.remove_prefix(std::min(before.size() + mark.size(), text.size()));
    return before;
}

std::string_view withoutLeadingBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text;
}

/// A line of the text; a file that came by way of another system may have its line ends.
std::string_view takeLine(std::string_view& text) {
    std::string_view line = takeUpTo(text, "\n");
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

/// "60.062": nothing but what a story prints.
bool isTime(std::string_view at) {
    const size_t point = at.find('.');
    const std::string_view digits = at.starts_with('-') ? at.substr(1) : at;
    return point != std::string_view::npos && at.size() - point == 4 && point > 0 &&
           digits.find_first_not_of("0123456789.") == std::string_view::npos;
}

std::optional<Verdict> readVerdict(std::string_view line) {
    std::string_view rest = withoutLeadingBlanks(line);
    const std::string_view at = takeUpTo(rest, kAfterTime);
    const std::string_view subject = takeUpTo(rest, kColumnGap);
    const std::string_view fate = withoutLeadingBlanks(rest);
    if (!isTime(at) || subject.empty() || fate.empty()) return std::nullopt;
    return Verdict{std::string(at), std::string(subject), std::string(fate)};
}

/// Of times as stories print them: all have as many digits behind the point.
bool earlier(const Change& one, const Change& other) {
    return std::pair(one.at.size(), std::string_view(one.at)) < std::pair(other.at.size(), std::string_view(other.at));
}

}  // namespace

std::string verdictFileOf(const std::string& trace) { return withoutEnding(trace) + ".verdicts.txt"; }

std::string textOf(const Verdicts& verdicts) {
    std::string text = std::string(kHeader) + "\n";
    for (const auto& [at, subject, fate] : verdicts) {
        text += fmt::format("{:>11}{}{:<24}{}{}\n", at, kAfterTime, subject, kColumnGap, fate);
    }
    return text;
}

Verdicts readVerdicts(std::string_view text, const std::string& file) {
    const auto fault = [&file](uint32_t line, std::string_view key, std::string_view what) {
        return InputError(file, line, key, fmt::format("{}; remove the file, and --update writes it anew", what));
    };
    if (takeLine(text) != kHeader) throw fault(1, "verdicts", fmt::format("expected \"{}\"", kHeader));
    Verdicts verdicts;
    for (uint32_t line = 2; !text.empty(); ++line) {
        std::optional<Verdict> verdict = readVerdict(takeLine(text));
        if (!verdict) throw fault(line, "verdict", "expected a time, a finger or key, and its fate, in columns");
        verdicts.push_back(std::move(*verdict));
    }
    return verdicts;
}

/// Two keys of the same time and code are told apart by their order.
Changes changesBetween(const Verdicts& was, const Verdicts& is) {
    std::map<std::pair<std::string_view, std::string_view>, std::deque<const Verdict*>> before;
    for (const Verdict& verdict : was) before[{verdict.at, verdict.subject}].push_back(&verdict);

    Changes changes;
    for (const Verdict& verdict : is) {
        std::deque<const Verdict*>& same = before[{verdict.at, verdict.subject}];
        std::optional<std::string> fate;
        if (!same.empty()) {
            fate = same.front()->fate;
            same.pop_front();
        }
        if (fate != verdict.fate) changes.push_back({verdict.at, verdict.subject, std::move(fate), verdict.fate});
    }
    for (const auto& [key, gone] : before) {
        for (const Verdict* verdict : gone) {
            changes.push_back({verdict->at, verdict->subject, verdict->fate, std::nullopt});
        }
    }
    std::stable_sort(changes.begin(), changes.end(), earlier);
    return changes;
}

}  // namespace refhost

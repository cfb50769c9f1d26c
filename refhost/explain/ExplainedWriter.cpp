#include "refhost/explain/ExplainedWriter.h"

#include <cmath>
#include <string>

#include "refhost/play/RecordWriter.h"

namespace refhost {

namespace {

/// A number with its unit, the digits of a float's noise left out. Times in ns are shown in ms.
std::string number(double value, std::string_view unit) {
    if (unit == "ns") return number(value / 1e6, "ms");
    const bool isWhole = fmt::format("{:.6f}", value).find(".000000") != std::string::npos;
    return fmt::format("{:.{}f}{}{}", value, isWhole ? 0 : 3, unit.empty() ? "" : " ", unit);
}

/// The same without its unit.
std::string bareNumber(double value, std::string_view unit) {
    return unit == "ns" ? number(value / 1e6, "") : number(value, "");
}

std::string rangeOf(const Measurement& measured) {
    const auto& [least, most] = std::pair(measured.least, measured.most);
    if (isFlag(measured)) return "set";
    if (isFact(measured)) return "";
    if (std::isinf(least)) return "at most " + number(most, measured.unit);
    if (std::isinf(most)) return "at least " + number(least, measured.unit);
    return bareNumber(least, measured.unit) + " to " + number(most, measured.unit);
}

std::string marginText(const Measurement& measured) {
    if (isFact(measured)) return "";
    if (isFlag(measured)) return measured.holds ? "yes" : "no";
    const double margin = marginOf(measured);
    const bool hasTwoEnds = !std::isinf(measured.least) && !std::isinf(measured.most);
    if (margin >= 0 && hasTwoEnds) {
        return fmt::format("yes, by {} and {}", bareNumber(measured.value - measured.least, measured.unit),
                           number(measured.most - measured.value, measured.unit));
    }
    if (margin >= 0) return "yes, by " + number(margin, measured.unit);
    return fmt::format("no, {} too {}", number(-margin, measured.unit),
                       measured.value < measured.least ? "little" : "much");
}

/// "key 516 at 60.000 s, fixed": what the value counts from, and what can change the range.
std::string originOf(const Measurement& measured) {
    std::string text;
    const android::MeasurementCause& cause = measured.cause;
    if (cause.event != nullptr) {
        text = cause.event;
        if (cause.keyCode != 0) text += fmt::format(" {}", cause.keyCode);
        text += fmt::format(" at {:.3f} s", static_cast<double>(cause.when) / 1e9);
    }
    if (measured.setting != nullptr) return text + (text.empty() ? "" : ", ") + "setting " + measured.setting;
    if (isFact(measured) || isFlag(measured)) return text;
    return text + (text.empty() ? "" : ", ") + "fixed";
}

}  // namespace

void writeExplained(TextBuffer& out, std::string_view kind, const Explained& explained) {
    const Decision& decision = explained.decision;
    append(out, FMT_COMPILE(R"({{"kind":"{}","time":{},"verdict":"{}","subject":)"), kind, decision.when,
           wordOf(decision.outcome));
    appendJson(out, decision.subject);
    append(out, R"(,"device":)");
    append(out, decision.target.device ? std::to_string(*decision.target.device) : "null");
    append(out, R"(,"ids":)");
    appendJson(out, decision.target.pointers);
    append(out, R"(,"key":)");
    append(out, decision.target.key ? std::to_string(*decision.target.key) : "null");
    append(out, R"(,"filter":)");
    appendJson(out, decision.filter);
    append(out, R"(,"rule":)");
    appendJson(out, decision.rule);
    append(out, R"(,"words":)");
    appendJson(out, decision.message);
    append(out, R"(,"measures":)");
    writeMeasurements(out, decision.measurements);
    append(out, R"(,"log":)");
    appendJsonArray(out, explained.log, [&](const LogEntry& entry) { appendJson(out, entry.text); });
    append(out, "}\n");
}

void printReason(TextBuffer& out, const Explained& explained) {
    append(out, FMT_COMPILE("{:15}rule  {}\n"), "", explained.decision.rule);
    for (const Measurement& each : explained.decision.measurements) {
        std::string line = fmt::format("{:21}{:<29} {:<10} {:<17} {:<26} {}", "", each.name,
                                       number(each.value, each.unit), rangeOf(each), marginText(each), originOf(each));
        line.erase(line.find_last_not_of(' ') + 1);
        append(out, FMT_COMPILE("{}\n"), line);
    }
    for (const LogEntry& entry : explained.log) append(out, FMT_COMPILE("{:15}log   {}\n"), "", entry.text);
}

}  // namespace refhost

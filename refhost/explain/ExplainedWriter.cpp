#include "refhost/explain/ExplainedWriter.h"

#include <cmath>
#include <string>

#include "refhost/explain/Thresholds.h"

namespace refhost {

namespace {

/// A number with its unit, the digits of a float's noise left out.
std::string number(double value, std::string_view unit) {
    return fmt::format("{:.6f}", value).find(".000000") != std::string::npos
               ? fmt::format("{:.0f}{}{}", value, unit.empty() ? "" : " ", unit)
               : fmt::format("{:.3f}{}{}", value, unit.empty() ? "" : " ", unit);
}

bool isFlag(const Range& range) { return range.least == kFlagSet.least && range.most == kFlagSet.most; }

std::string rangeOf(const Measure& measure) {
    const auto& [least, most] = measure.range;
    if (isFlag(measure.range)) return "set";
    if (std::isinf(least)) return "at most " + number(most, measure.unit);
    if (std::isinf(most)) return "at least " + number(least, measure.unit);
    return number(least, "") + " to " + number(most, measure.unit);
}

std::string marginOf(const Measure& measure) {
    const double margin = measure.margin();
    if (isFlag(measure.range)) return measure.holds() ? "yes" : "no";
    const bool twoEnds = !std::isinf(measure.range.least) && !std::isinf(measure.range.most);
    if (margin >= 0 && twoEnds) {
        return fmt::format("yes, by {} and {}", number(measure.value - measure.range.least, ""),
                           number(measure.range.most - measure.value, measure.unit));
    }
    if (margin >= 0) return "yes, by " + number(margin, measure.unit);
    return fmt::format("no, {} too {}", number(-margin, measure.unit),
                       measure.value < measure.range.least ? "little" : "much");
}

void writeEnd(TextBuffer& out, std::string_view key, double end) {
    append(out, FMT_COMPILE(R"("{}":)"), key);
    if (std::isinf(end)) return append(out, "null,");
    append(out, FMT_COMPILE("{},"), end);
}

}  // namespace

void writeExplained(TextBuffer& out, std::string_view kind, const Explained& explained) {
    const Decision& decision = explained.decision;
    append(out, FMT_COMPILE(R"({{"kind":"{}","time":{},"verdict":"{}","subject":)"), kind, decision.when,
           wordOf(decision.fate));
    appendJson(out, decision.subject);
    append(out, R"(,"device":)");
    append(out, decision.about.device ? std::to_string(*decision.about.device) : "null");
    append(out, R"(,"ids":)");
    appendJson(out, decision.about.fingers);
    append(out, R"(,"key":)");
    append(out, decision.about.key ? std::to_string(*decision.about.key) : "null");
    append(out, FMT_COMPILE(R"(,"rule":"{}","words":)"), explained.reason.rule);
    appendJson(out, decision.words);
    append(out, R"(,"measures":)");
    appendJsonArray(out, explained.reason.measures, [&](const Measure& measure) {
        append(out, FMT_COMPILE(R"({{"name":"{}","value":{},)"), measure.name, measure.value);
        writeEnd(out, "least", measure.range.least);
        writeEnd(out, "most", measure.range.most);
        append(out, FMT_COMPILE(R"("unit":"{}","holds":{},"margin":{}}})"), measure.unit, measure.holds(),
               measure.margin());
    });
    append(out, R"(,"log":)");
    appendJsonArray(out, explained.log, [&](const LogEntry& entry) { appendJson(out, entry.text); });
    append(out, "}\n");
}

void tellExplained(TextBuffer& out, const Explained& explained) {
    append(out, FMT_COMPILE("{:15}rule  {}\n"), "", explained.reason.rule);
    for (const Measure& measure : explained.reason.measures) {
        append(out, FMT_COMPILE("{:21}{:<30}{:<11}{:<18}{}\n"), "", measure.name, number(measure.value, measure.unit),
               rangeOf(measure), marginOf(measure));
    }
    for (const LogEntry& entry : explained.log) append(out, FMT_COMPILE("{:15}log   {}\n"), "", entry.text);
}

}  // namespace refhost

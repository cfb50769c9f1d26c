#include "refhost/export/DecisionArguments.h"

#include "refhost/explain/RuleMeaning.h"
#include "refhost/play/RecordWriter.h"

namespace refhost {

std::string argumentsOf(const Decision& decision, bool ended) {
    TextBuffer out;
    const auto add = [&](std::string_view key, std::string_view text) {
        append(out, FMT_COMPILE(R"("{}":)"), key);
        appendJson(out, text);
        out.push_back(',');
    };
    out.push_back('{');
    if (!decision.rule.empty()) {
        add("filter", decision.filter);
        add("rule", decision.rule);
        add("meaning", meaningOf(decision.rule));
        append(out, R"("measurements":)");
        writeMeasurements(out, decision.measurements);
        out.push_back(',');
    }
    if (!decision.message.empty()) add("message", decision.message);
    if (!ended) append(out, R"("ended":false,)");
    append(out, R"("subject":)");
    appendJson(out, decision.subject);
    out.push_back('}');
    return fmt::to_string(out);
}

}  // namespace refhost

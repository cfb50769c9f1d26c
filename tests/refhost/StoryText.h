#pragma once

#include <fmt/format.h>

#include <string>

#include "refhost/check/TraceCheck.h"
#include "refhost/explain/Explainer.h"
#include "refhost/explain/RuleMeanings.h"
#include "refhost/play/Player.h"
#include "refhost/play/Story.h"

namespace refhost {

/// The fates of a trace in ms, with the story's own words but without the filters', which their own tests hold. Among
/// them what has no rule of its own; behind them what of the contract has been broken.
/// @param foldAngle whether to tell of that sensor, as a plug-in with its filter does of every phone
inline std::string storyOf(TraceSource& trace, bool foldAngle) {
    Player player(trace.header(), ZQAFT_PLUGIN_UNDER_TEST);
    Story story;
    TraceCheck check(trace.header());
    Explainer explainer(trace.header());
    std::string told;
    TraceLine line;
    while (trace.next(line)) {
        const CallResult& result = player.play(line);
        check.hear(line, result);
        for (const auto& [decision, reason, log] : explainer.explain(line, result)) {
            const bool found = !meaningOf(reason.rule).empty() && reason.rule != "gesture-cancelled" &&
                               reason.rule != "after-cancel" && reason.rule != "cancel-in-silence";
            if (!found) told += fmt::format("no rule for {} {}; ", wordOf(decision.fate), decision.subject);
        }
        for (const Decision& decision : story.tell(line, result)) {
            if (!foldAngle && decision.subject.starts_with("fold-angle")) continue;
            told += fmt::format("{} {} {}{}; ", (decision.when + 500'000) / 1'000'000, wordOf(decision.fate),
                                decision.subject, decision.words.starts_with('(') ? " " + decision.words : "");
        }
    }
    for (const Breach& breach : check.breaches()) told += fmt::format("{} {}; ", breach.rule, breach.text);
    return told;
}

}  // namespace refhost

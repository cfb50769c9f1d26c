#pragma once

#include <fmt/format.h>

#include <string>

#include "refhost/check/TraceCheck.h"
#include "refhost/explain/RuleMeaning.h"
#include "refhost/play/DecisionLog.h"
#include "refhost/play/Playback.h"

namespace refhost {

/// The decisions of a trace with their times in ms and their rules, a "*" where the filter logged the decision, then
/// what of the contract is broken, then the summary of the fingers.
inline std::string decisionsOf(TraceSource& trace) {
    Player player(trace.header(), ZQAFT_PLUGIN_UNDER_TEST);
    DecisionLog log;
    TraceCheck check(trace.header());
    std::string text;
    playLines(trace, player, nullptr, [&](const TraceLine& line, const CallResult& result) {
        check.hear(line, result);
        for (const Decision& decision : log.onLine(line, result)) {
            const bool isFold = decision.filter == "fold-angle" && decision.outcome == Outcome::Noted;
            if (isFold) continue;  // a plug-in with that filter notes its sensor on every phone
            const bool isKnown = !meaningOf(decision.rule).empty() || decision.filter.empty();
            text += fmt::format("{} {} {}", (decision.when + 500'000) / 1'000'000, wordOf(decision.outcome),
                                decision.subject);
            if (decision.outcome != Outcome::Noted) text += fmt::format(": {}", decision.rule);
            const bool isLogged = !decision.message.empty() && !decision.message.starts_with('(');
            text += fmt::format("{}{}; ", isKnown ? "" : "?", isLogged ? "*" : "");
        }
    });
    for (const Breach& breach : check.breaches()) text += fmt::format("{} {}; ", breach.rule, breach.text);
    return text + log.summary().fingers.text();
}

}  // namespace refhost

#pragma once

#include <fmt/format.h>

#include <string>

#include "refhost/check/Contract.h"
#include "refhost/play/Player.h"
#include "refhost/play/Story.h"

namespace refhost {

inline constexpr const char* kFates[] = {"kept",     "held back",  "restored", "let through", "lost",     "cancelled",
                                         "consumed", "dispatched", "re-sent",  "dropped",     "reported", "noted"};

/// The fates of a trace in ms, with the story's own words but without the filters', which their own tests hold. Behind
/// them what of the contract has been broken.
/// @param foldAngle whether to tell of that sensor, as a plug-in with its filter does of every phone
inline std::string storyOf(TraceSource& trace, bool foldAngle) {
    Player player(trace.header(), ZQAFT_PLUGIN_UNDER_TEST);
    Story story;
    Contract contract(trace.header());
    std::string told;
    TraceLine line;
    while (trace.next(line)) {
        const CallResult& result = player.play(line);
        contract.hear(line, result);
        for (const Decision& decision : story.tell(line, result)) {
            if (!foldAngle && decision.subject.starts_with("fold-angle")) continue;
            told += fmt::format("{} {} {}{}; ", (decision.when + 500'000) / 1'000'000,
                                kFates[static_cast<size_t>(decision.fate)], decision.subject,
                                decision.words.starts_with('(') ? " " + decision.words : "");
        }
    }
    for (const Breach& breach : contract.breaches()) told += fmt::format("{} {}; ", breach.rule, breach.text);
    return told;
}

}  // namespace refhost

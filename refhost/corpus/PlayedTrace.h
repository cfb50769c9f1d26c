#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/corpus/Verdicts.h"

namespace refhost {

/// What came of a trace that was played and held against what a host relies on.
struct PlayedTrace {
    /// As the decision log's summary has them.
    struct Counts {
        uint64_t frames = 0;
        uint64_t fingers = 0;           ///< each counts once, from landing to lift; the next six add up to these
        uint64_t kept = 0;              ///< apps saw it from landing to lift
        uint64_t lost = 0;              ///< no app saw it
        uint64_t restored = 0;          ///< apps saw it late, from where it landed
        uint64_t letThrough = 0;        ///< apps saw it late, from where it then was
        uint64_t interrupted = 0;       ///< it was taken out while apps saw it, without a cancel
        uint64_t fingersCancelled = 0;  ///< apps saw it, and its gesture was cancelled
        int64_t latestNs = 0;           ///< ns: the longest time from a landing until apps saw the finger
        uint64_t pointersJudged = 0;
        uint64_t pointersRemoved = 0;
        uint64_t cancelled = 0;  ///< gestures
        uint64_t reports = 0;
        uint64_t keysConsumed = 0;
        uint64_t keysHeldBack = 0;
        uint64_t keysReSent = 0;
        uint64_t keysDropped = 0;
        uint64_t keysDispatched = 0;

        Counts& operator+=(const Counts& other);
    };

    struct ToldBreach {
        uint32_t line = 0;
        std::string rule;
        std::string text;
    };

    Counts counts;
    int64_t ns = 0;  ///< how long it took, loading the plug-in included, on the real clock
    std::vector<ToldBreach> breaches;
    Verdicts verdicts;
    std::string fault;     ///< why it could not be played to its end; else empty
    std::string noPlugin;  ///< why the plug-in could not be loaded; else empty
};

/// Plays a trace through the plug-in at `pluginPath`. Once per process, since the plug-in reads the properties once.
/// Does not throw: what goes wrong is in the answer.
PlayedTrace playTrace(const std::string& path, const std::string& pluginPath);

/// As bytes for another process of this very program.
std::string packed(const PlayedTrace& played);
/// Nothing where the bytes are not all there.
std::optional<PlayedTrace> unpacked(std::string_view bytes);

}  // namespace refhost

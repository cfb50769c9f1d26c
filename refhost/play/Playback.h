#pragma once

#include <cstdint>
#include <optional>

#include "refhost/play/Player.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Looks on while a trace is played: shows progress, and shows what there is when the next line has to be waited for.
class PlaybackObserver {
  public:
    virtual ~PlaybackObserver() = default;
    /// @param lines played so far
    virtual void afterLine(uint64_t lines, TraceSource& source) = 0;
};

/// The time of a line, ns: that of its frame or key, else the trace's clock.
inline int64_t timeOf(const TraceLine& line, int64_t clock) {
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) return frame->when;
    if (const auto* key = std::get_if<ProcessKey>(&line.event)) return key->when;
    return clock;
}

/// Plays the lines of a trace in order and hands each to `each(line, result)` with what came back. Throws InputError.
/// @param until ns: stops before the first line at or after this time
template <typename Each>
void playLines(TraceSource& source, Player& player, PlaybackObserver* observer, std::optional<int64_t> until,
               Each each) {
    TraceLine line;
    int64_t clock = 0;
    for (uint64_t lines = 1; source.next(line); ++lines) {
        clock = line.t.value_or(clock);
        if (until && timeOf(line, clock) >= *until) return;
        each(line, player.play(line));
        if (observer != nullptr) observer->afterLine(lines, source);
    }
}

template <typename Each>
void playLines(TraceSource& source, Player& player, PlaybackObserver* observer, Each each) {
    playLines(source, player, observer, std::nullopt, each);
}

}  // namespace refhost

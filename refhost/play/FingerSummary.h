#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace refhost {

/// What a finger met with from landing to lift, in one word.
enum class FingerFate : uint8_t {
    Kept,         ///< apps saw it from landing to lift
    Restored,     ///< apps saw it late, from where it had landed
    LetThrough,   ///< apps saw it late, from where it then was
    Lost,         ///< no app saw it
    Cancelled,    ///< apps saw it, and its gesture was cancelled
    Interrupted,  ///< apps saw it, and it was taken out while it was down, without a cancel
};

/// How many fingers met with what: each finger counts once, however many frames it is in.
struct FingerSummary {
    uint64_t kept = 0;
    uint64_t lost = 0;
    uint64_t cancelled = 0;
    uint64_t interrupted = 0;
    std::vector<int64_t> restoredLate;    ///< ns from landing until apps saw it, one for each finger
    std::vector<int64_t> letThroughLate;  ///< likewise

    uint64_t total() const {
        return kept + lost + cancelled + interrupted + restoredLate.size() + letThroughLate.size();
    }
    /// @param late ns from landing until apps saw it
    void add(FingerFate fate, int64_t late);
    /// "3: 1 kept, 1 restored (66 ms late), 1 lost"
    std::string text() const;
};

}  // namespace refhost

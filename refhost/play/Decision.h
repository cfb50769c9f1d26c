#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/trace/Trace.h"

namespace refhost {

/// What has become of a finger, a gesture or a key; or what else there is to tell.
enum class Fate {
    Kept,        ///< a finger landed and was passed on
    HeldBack,    ///< a finger was taken out of the frame, or a key kept for later
    Restored,    ///< a held-back finger came back where it had landed
    LetThrough,  ///< a held-back finger came back where it was
    Lost,        ///< a finger lifted that had been held back all the time: nobody saw it
    Cancelled,   ///< the gesture was cancelled
    Consumed,    ///< a key was taken
    Dispatched,  ///< a key was passed on
    ReSent,      ///< a held-back key was sent again, as a down and up pair
    Dropped,     ///< a held-back key was forgotten
    Reported,    ///< the host was told of a gesture that had been cancelled
    Noted,       ///< nobody's fate, but what explains those that follow: a sensor, the service, how the phone is held
};

/// The word for it, as stories and explanations have it.
constexpr std::string_view wordOf(Fate fate) {
    constexpr std::string_view kWords[] = {"kept",     "held back",  "restored", "let through", "lost",     "cancelled",
                                           "consumed", "dispatched", "re-sent",  "dropped",     "reported", "noted"};
    return kWords[static_cast<size_t>(fate)];
}

/// Whom a decision concerns. All empty: nobody.
struct About {
    DeviceRef device{};            ///< of the frame or the key
    android::BitSet32 fingers{};   ///< pointer ids; of a gesture, those that apps have seen
    std::optional<int32_t> key{};  ///< key code
};

/// One thing that changed a fate: a line of the story.
struct Decision {
    int64_t when = 0;  ///< ns, event time
    Fate fate = Fate::Kept;
    std::string subject;  ///< "finger 0 at (540, 2200)", "key 513 down"
    std::string words;    ///< the filter's own; in parentheses the story's, where the filter says nothing; or empty
    About about{};
};

using Decisions = std::vector<Decision>;

}  // namespace refhost

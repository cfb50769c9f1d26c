#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/play/Record.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What a finger, a gesture or a key has met with, as apps see it.
enum class Outcome {
    Kept,        ///< a finger landed and was passed on
    HeldBack,    ///< a finger was taken out of the frame, or a key kept for later
    Restored,    ///< a held-back finger came back where it had landed
    LetThrough,  ///< a held-back finger came back where it was
    Lost,        ///< a finger lifted that had been held back all the time: no app saw it
    Cancelled,   ///< the gesture was cancelled
    Consumed,    ///< a key was taken
    Dispatched,  ///< a key was passed on
    ReSent,      ///< a held-back key was sent again, as a down and up pair
    Dropped,     ///< a held-back key was forgotten
    Reported,    ///< the host got a report of a gesture that had been cancelled
    Noted,       ///< context that explains those that follow: a sensor, the service, how the phone is held
};

/// The word for it, as every output has it.
constexpr std::string_view wordOf(Outcome outcome) {
    constexpr std::string_view kWords[] = {"kept",     "held back",  "restored", "let through", "lost",     "cancelled",
                                           "consumed", "dispatched", "re-sent",  "dropped",     "reported", "noted"};
    return kWords[static_cast<size_t>(outcome)];
}

/// What a decision is about. All empty: context.
struct Target {
    DeviceRef device{};            ///< of the frame or the key
    android::BitSet32 pointers{};  ///< ids; of a gesture, those that apps have seen
    std::optional<int32_t> key{};  ///< key code
};

/// One change for a finger, a gesture or a key, with the library's reason.
struct Decision {
    int64_t when = 0;  ///< ns, event time
    Outcome outcome = Outcome::Kept;
    std::string subject{};  ///< "finger 0 at (540, 2200)", "key 513 down"
    std::string message{};  ///< the filter's own words; in parentheses the host's; or empty
    Target target{};
    // Of the library's record; empty where the library recorded nothing.
    std::string_view filter{};
    std::string_view rule{};
    std::vector<Measurement> measurements{};
};

using Decisions = std::vector<Decision>;

}  // namespace refhost

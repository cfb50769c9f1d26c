#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "refhost/explain/FoldSpread.h"
#include "refhost/explain/Phone.h"
#include "refhost/explain/SensorKeys.h"
#include "refhost/explain/SensorSlide.h"

namespace refhost {

struct Place {
    int32_t x = 0;
    int32_t y = 0;
};

/// What is known of a finger since it landed. Raw panel units, ns.
struct Finger {
    Place now{};
    bool edge = false;  ///< as the panel says
    bool passed = true;
    bool seenOutside = false;  ///< outside the filter area, or restored: never held back again in this sequence
    bool leftNotch = false;    ///< seen where the notch filter does not take it: never taken in this sequence
    struct Held {
        int64_t when;
        Place place;
    };
    std::optional<Held> held;  ///< by the front fingerprint filter, last
    std::string_view takenBy;  ///< the rule that took it out of frames, last
};

/// All that rules look at.
struct Facts {
    explicit Facts(const TraceHeader& header) : phone(header) {}

    Phone phone;
    SensorKeys keys;
    SensorSlide slide;
    FoldSpread fold;
    std::map<std::pair<DeviceRef, uint32_t>, Finger> fingers;  ///< on the glass
    std::optional<int64_t> onlyLanding;  ///< ns: when the sequence began with a single finger in the area
    std::optional<int64_t> keyHeld;      ///< ns: since when a key waits
    int64_t coverSince = 0;              ///< ns, the trace's clock: when the cover's state changed
    int32_t coverState = -1;             ///< as that filter knows it; -1: it does not
};

}  // namespace refhost

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
#include "refhost/explain/Takers.h"

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
    bool seenOutside = false;     ///< outside the filter area, or restored: never held back again in this sequence
    bool inMarkedWindow = false;  ///< where fingers are wanted in the notch band, too
    Taker taker = Taker::Nobody;  ///< who took it out of the last frame that it was missing from
    std::optional<HeldAtSensor::Landed> held;  ///< where the front fingerprint filter held it back last
};

/// All that rules look at.
struct Facts {
    explicit Facts(const TraceHeader& header) : takers(header), fold(header) {}

    const Phone& phone() const { return takers.phone(); }

    Takers takers;
    SensorKeys keys;
    SensorSlide slide;
    FoldSpread fold;
    std::map<std::pair<DeviceRef, uint32_t>, Finger> fingers;  ///< on the glass
    DeviceRef lastPanel;                                       ///< of the last frame
    std::optional<int64_t> onlyLanding;  ///< ns: when the sequence began with a single finger in the area
    std::optional<int64_t> keyHeld;      ///< ns: since when a key waits
    int64_t coverSince = 0;              ///< ns, the trace's clock: when the cover's state changed
    int32_t coverState = -1;             ///< as that filter knows it; -1: it does not
};

}  // namespace refhost

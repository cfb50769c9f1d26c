#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>

#include "aft/host/RawPointerData.h"
#include "refhost/explain/Phone.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// How far fingers have slid over the sensor. The front fingerprint filter follows those that it lets through in its
/// area, from the frame after on, until the sequence of touches ends; it tells the sizes of a slide, but not of one
/// that fell short. One thread.
class SensorSlide {
  public:
    /// Takes any line. `phone` has heard it.
    void hear(const TraceLine& line, const CallResult& result, const Phone& phone);

    struct Size {
        double width = 0;  ///< raw panel units
        double height = 0;
    };

    /// Of the finger that has slid furthest along x; nothing where none has moved along it.
    std::optional<Size> furthest() const;

  private:
    struct Box {
        int32_t left = std::numeric_limits<int32_t>::max();
        int32_t top = std::numeric_limits<int32_t>::max();
        int32_t right = std::numeric_limits<int32_t>::min();
        int32_t bottom = std::numeric_limits<int32_t>::min();
    };

    void hearFrame(const ProcessRawTouches& call, const CallResult& result, const Phone& phone);
    void hearMarks(const CallResult& result);

    android::BitSet32 mSeenOutside{};  ///< the area, or restored
    android::BitSet32 mFollowed{};
    android::BitSet32 mFromOutside{};  ///< of these, come into the area or restored: they slide over nothing
    std::array<Box, android::RawPointerData::kMaxIds> mBoxes{};
};

}  // namespace refhost

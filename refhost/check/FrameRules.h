#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "aft/host/RawPointerData.h"
#include "refhost/check/Breach.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What becomes of a frame:
/// - "frame-adds"     no id and no record comes out that did not go in, and the hovering ids stay
/// - "frame-order"    records keep their order, and all that no filter may touch of them
/// - "frame-index"    every id of both sets has one record, to which its index leads
/// - "frame-sets"     a record leaves with its id, and no other id leaves
/// - "frame-altered"  a record has the place, pressure and flags with which it came, or those with which that finger
///                    came at most 1 s ago, since when it has been taken out of every frame
/// The last three are asked of frames alone that keep them when they are handed in, and the last one where all frames
/// before it in the gesture do.
class FrameRules {
  public:
    void check(const ProcessRawTouches& call, const CallResult& result, Breaches& breaches);
    /// Whether every frame of the gesture in progress keeps them as it is handed in.
    bool isSound() const { return mSound; }

  private:
    using Pointer = android::RawPointerData::Pointer;

    /// A finger as it came in when it was taken out.
    struct Held {
        int64_t when = 0;  ///< ns
        Pointer finger{};
    };

    void checkSound(const ProcessRawTouches& call, const CallResult& result, Breaches& breaches) const;
    static std::optional<size_t> firstOutOfOrder(const android::RawPointerData& in, const android::RawPointerData& out);
    bool mayBecome(const Pointer& came, const Pointer& went, int64_t when) const;
    void remember(const ProcessRawTouches& call, const CallResult& result);

    std::array<std::vector<Held>, android::RawPointerData::kMaxIds> mHeld;  ///< per id, since it was last passed on
    bool mSound = true;                                                     ///< every frame of the gesture in progress
};

}  // namespace refhost

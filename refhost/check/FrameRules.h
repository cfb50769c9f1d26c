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

/// The rules on what becomes of a frame; CheckRules.h says what each demands. `frame-index`, `frame-sets` and
/// `frame-altered` apply to frames that keep them as they are handed in; the last one where all frames before it in the
/// gesture do.
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

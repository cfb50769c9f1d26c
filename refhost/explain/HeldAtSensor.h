#pragma once

#include <array>
#include <cstdint>

#include "aft/host/RawPointerData.h"
#include "refhost/explain/Phone.h"
#include "refhost/explain/SensorKeys.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Which fingers the front fingerprint filter may hold back, and when it must let them go: it says when it begins, at
/// most once for a pointer id and a sequence of touches, and after that the finger's way decides. All of it is of the
/// phone, not of a panel: two panels share their pointer ids. One thread.
class HeldAtSensor {
  public:
    /// Takes any line. `phone` has heard it.
    void hear(const TraceLine& line, const CallResult& result, const Phone& phone);

    /// Where a finger was when it was held back: raw panel units, ms of the event clock.
    struct Landed {
        int32_t x = 0;
        int32_t y = 0;
        int64_t ms = 0;
    };

    /// The fingers of the frame just heard that this filter takes out, where it acts as it should.
    android::BitSet32 taken() const { return mTaken; }
    /// Whether it holds this one back no more in this sequence of touches.
    bool passes(uint32_t id) const { return mSeenOutside.hasBit(id); }
    /// Of one that it has held back last.
    const Landed& landed(uint32_t id) const { return mLanded[id]; }

  private:
    using Pointer = android::RawPointerData::Pointer;

    void hearFrame(const ProcessRawTouches& call, const CallResult& result, const Phone& phone);
    void hearSaid(const CallResult& result, android::BitSet32& restrained);
    bool takes(const Pointer& finger, int64_t nowMs, bool told, const Phone& phone);
    bool comesBack(const Pointer& finger, int64_t nowMs) const;

    SensorKeys mKeys;
    android::BitSet32 mHeld{};         ///< pointer ids, since `mLanded`
    android::BitSet32 mSeenOutside{};  ///< or restored: never held back in this sequence
    android::BitSet32 mSpokenOf{};     ///< of these the filter says no more in this sequence
    android::BitSet32 mTaken{};
    std::array<Landed, android::RawPointerData::kMaxIds> mLanded{};
};

}  // namespace refhost

#pragma once

#include <cstdint>

#include "aft/host/Decision.h"

namespace android {

/// Whether the fingerprint sensor is identifying a finger or has just done so, since when, and which touch sequence
/// that finger makes on the panel. Forgotten 1700 ms after it began or ended; an ended one also when another touch
/// asks. Times in ms of the event clock. No lock of its own: keys and frames come on one thread.
struct IdentifyFPState {
    static constexpr uint32_t kIdle = 0;
    static constexpr uint32_t kIdentifying = 1;
    static constexpr uint32_t kIdentified = 2;

    uint32_t mState = kIdle;
    uint32_t mTouchSeq = 0;      ///< touch sequence tied to the identification; 0: none yet
    int64_t mStateTime = 0;      ///< when mState last became 1 or 2
    int64_t mTouchDownTime = 0;  ///< when the sequence began with one finger in the filter area, else 0

    /// Whether the touch sequence `touchSeq` belongs to an identification that is still fresh. Asking ties the first
    /// sequence after the start to it, and forgets a stale one, and an ended one that belongs to another. Logs. `when`
    /// in ns.
    /// @param measured gains what was compared, where the identification belongs to this sequence
    bool identifyingRecently(uint32_t touchSeq, int64_t when, Measurements& measured = Measurements::unheard());

    /// Whether the identification started 1 to 300 ms after the touch came down: the touch is the finger on the sensor.
    /// Logs. `when` is not needed.
    /// @param measured gains what was compared
    bool touchBeforeIdentify(int64_t when, Measurements& measured = Measurements::unheard());

  private:
    void forget();
};

}  // namespace android

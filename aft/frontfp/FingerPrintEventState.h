#pragma once

#include <utils/Vector.h>

#include <cstdint>

#include "aft/host/Decision.h"
#include "aft/host/InputMapper.h"
#include "aft/host/NotifyKeyArgs.h"

namespace android {

/// What the fingerprint sensor's keys have said: the last key, a mark that the next one is to be consumed, and one
/// event key that is held back while a touch that began on the sensor shows what it is. A held-back key is either sent
/// again as a down and up pair, or dropped. Times in ms of the event clock unless they say ns. No lock of its own: keys
/// and frames come on one thread.
struct FingerPrintEventState {
    /// A held-back event key.
    struct PendingKey {
        int32_t keyCode = 0;  ///< 0: none is held back
        int32_t scanCode = 0;
        int32_t metaState = 0;
        uint32_t policyFlags = 0;
        int64_t when = 0;               ///< ns, the key's own time
        uint32_t touchSeq = 0;          ///< the touch sequence that may hold a key, or does
        InputMapper* mapper = nullptr;  ///< not owned; null: none is held back
    };

    bool mFilterNextKey = false;    ///< the next event key-down is to be consumed
    int32_t mLastKeyCode = 0;       ///< last key-down of an event key or of 516
    int64_t mLastKeyEventTime = 0;  ///< its time
    int32_t mFilterKeyCode = 0;     ///< with mFilterNextKey: this code alone; 0: any
    uint32_t mFilterTouchSeq = 0;   ///< touch sequence that set mFilterNextKey, for the log
    int64_t mTouchDownTime = 0;     ///< when the sequence began with one finger in the filter area, else 0
    PendingKey mPendingKey;

    /// Whether this event key-down is held back; it is then the pending key and the caller consumes it. Only 513, 514
    /// and 601 can be, within 120 ms of the touch-down that the sequence `touchSeq` recorded, one at a time.
    /// @param measured gains what was compared
    bool delayDispatchKey(uint32_t touchSeq, InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode,
                          int32_t metaState, uint32_t policyFlags, Measurements& measured = Measurements::unheard());

    /// Fills the record's own fields from the pending key, with `when` (ns) as its time. False: no mapper.
    bool InitNotifyKeyArgs(NotifyKeyArgs& args, int64_t when, int32_t action);

    /// Sends the pending key again as a down and up pair at time `when` (ns), if one has been pending for at least 1
    /// ms. Records what becomes of it.
    /// @param force always true: there is no milder way, and what asks for one is the caller's
    /// @param keys gains both records, which are then the host's; nothing on failure, and the key stays pending
    /// @return     true: sent
    bool handlePendingKey(int64_t when, bool force, Vector<void*>& keys);

    /// Forgets the pending key, and the touch sequence that might hold one.
    void clearPendingKey() { mPendingKey = {}; }
    /// The same, and records that a key was dropped, and why.
    void dropPendingKey(int64_t when, Rule why);

    void updateFPKeyEvent(int64_t when, int32_t keyCode);
    int32_t getLastKeyCode() const { return mLastKeyCode; }
    int64_t getLastKeyEventTime() const { return mLastKeyEventTime; }

  private:
    bool keyIsPending() const { return mPendingKey.mapper != nullptr && mPendingKey.keyCode != 0; }
};

}  // namespace android

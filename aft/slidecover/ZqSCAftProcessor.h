#pragma once

#include <utils/Mutex.h>
#include <utils/RefBase.h>

#include <cstdint>

#include "aft/host/Decision.h"
#include "aft/host/InputMapper.h"
#include "aft/host/RawPointerData.h"
#include "aft/slidecover/ZqAftSCStateInterface.h"

namespace android {

/// Whether the filter is on, decided once.
struct AftEnableConfig {
    bool decided = false;
    bool enabled = false;
};

/// A touch's position, raw panel units.
struct ScPoint {
    int32_t x = 0;
    int32_t y = 0;
};

/// The filter of phones with a slide cover: whoever moves it has a thumb on the screen. It is fed raw frames, and looks
/// at the cover's state with each.
///
/// When the cover's state changes between two frames of a touch sequence, the gesture is cancelled, and its pointers
/// are taken out of that frame and all that follow; where the cover has been in state 1 for three seconds, they pass
/// again. Once all fingers are up, the host gets one report of the gesture, unless the change came within
/// 1 ms of touch-down. A sequence in which nothing changes is left
/// alone, and so is everything while the sensor is not enabled or has not told anything yet.
///
/// It cancels once in a sequence, and goes by the state alone: a change there and back between two frames is none.
///
/// Threads: frames come on one thread, and all but the statics is that thread's own. The statics' lock is taken before
/// the state interface's.
class ZqSCAftProcessor : public virtual RefBase {
  public:
    ZqSCAftProcessor();
    ~ZqSCAftProcessor() override;

    /// Filters one frame in place. `when` in ns. `mapper` may be null: no gesture is cancelled then, and none reported.
    virtual void processRawTouches(InputMapper* mapper, long long when, RawPointerData& data, BitSet32& idBits);

    /// Whether the phone has a slide cover, as the system property says when this is asked first.
    static bool enabled();
    /// The single instance, created by the first call; lives until the library is unloaded.
    static sp<ZqSCAftProcessor> getInstance();

  private:
    bool touchingEnd(const RawPointerData& data, long long when);
    void sequenceBegins(const RawPointerData& data, long long when);
    void sequenceEnds(long long when);
    void cancelGesture(InputMapper* mapper, long long when, int32_t previousState, const DecisionRecorder& recorder);
    bool isSettled(long long when, Measurements& measured) const;
    void filterCancelled(RawPointerData& data, BitSet32& idBits, long long when, const DecisionRecorder& recorder);
    void recordIdle(InputMapper* mapper, int64_t when, const RawPointerData& data, BitSet32 idBits);
    void reportBbFilterPointIfLate(long long when);
    void reportBbFilterPoint(Decision& decision);

    static Mutex sLock;  ///< guards sInstance and sAftConfig
    static sp<ZqSCAftProcessor> sInstance;
    static AftEnableConfig sAftConfig;

    sp<ZqAftSCStateInterface> mZqAftSCStateManager;
    bool mTouching = false;   ///< a touch sequence is in progress
    bool mCancelled = false;  ///< it has been cancelled
    bool mIdle = false;       ///< the cover's state was not known in the last frame, for records
    SCFitlterState mCurState;
    ScPoint mFirstPoint;                   ///< of the sequence's first frame, the lowest id's
    ScPoint mLastPoint;                    ///< of the latest frame after the cancel, the lowest id's
    bool mReported = false;                ///< the sequence's report has been sent
    int64_t mPreSlideTime = 0;             ///< ms from touch-down to the change that cancelled
    InputMapper* mCancelMapper = nullptr;  ///< whose gesture was cancelled; the host's
    int64_t mTouchDownTime = 0;            ///< ns; 0 outside a sequence
};

}  // namespace android

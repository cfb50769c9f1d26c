#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "refhost/play/CallResult.h"
#include "refhost/play/DurationHistogram.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What has become of a finger, a gesture or a key.
enum class Fate {
    Kept,        ///< a finger landed and was passed on
    HeldBack,    ///< a finger was taken out of the frame, or a key kept for later
    Restored,    ///< a held-back finger came back where it had landed
    LetThrough,  ///< a held-back finger came back where it was
    Lost,        ///< a finger lifted that had been held back all the time: nobody saw it
    Cancelled,   ///< the gesture was cancelled
    Consumed,    ///< a key was taken
    Dispatched,  ///< a key was passed on
    ReSent,      ///< a held-back key was sent again, as a down and up pair
    Dropped,     ///< a held-back key was forgotten
};

/// One thing that changed a fate: a line of the story.
struct Decision {
    int64_t when = 0;  ///< ns, event time
    Fate fate = Fate::Kept;
    std::string subject;  ///< "finger 0 at (540, 2200)", "key 513 down"
    std::string words;    ///< the filter's own, or empty where it said nothing
};

struct Summary {
    uint64_t lines = 0;
    uint64_t frames = 0;
    uint64_t pointersJudged = 0;   ///< one per finger and frame
    uint64_t pointersRemoved = 0;  ///< likewise
    uint64_t restored = 0;
    uint64_t gesturesCancelled = 0;
    uint64_t cancelRequests = 0;  ///< a gesture may be cancelled frame after frame
    uint64_t keysConsumed = 0;    ///< key-downs, the held-back ones included
    uint64_t keysHeldBack = 0;    ///< of these
    uint64_t keysReSent = 0;      ///< of these again
    uint64_t keysDropped = 0;     ///< and of these
    uint64_t keysDispatched = 0;  ///< key-downs
    DurationHistogram calls;
    std::string filterOff;  ///< the filter's words where it is off for want of an area; else empty
};

/// Turns what came back from each call into the few things that mattered: follows every finger and key, and tells when
/// a fate changes, not frame by frame. It knows what a host knows: what it handed in, what came back and what was
/// logged. Holds a fixed amount however long the trace. One thread.
class Story {
  public:
    /// The decisions of this line, in order; empty for most. Valid until the next call.
    const std::vector<Decision>& tell(const TraceLine& line, const CallResult& result);
    const Summary& summary() const { return mSummary; }

  private:
    void tellFrame(const ProcessRawTouches& call, const CallResult& result);
    void tellFinger(uint32_t id, const ProcessRawTouches& call, const CallResult& result);
    void tellLifted(const ProcessRawTouches& call);
    void tellCancel(const ProcessRawTouches& call, android::BitSet32 passed, const CallResult& result);
    void tellHeldKey(const ProcessRawTouches& call, const CallResult& result);
    void tellKey(const ProcessKey& call, const CallResult& result);
    void add(int64_t when, Fate fate, std::string subject, std::string words);

    /// A finger between landing and lift-off. The id sets are of the last frame, as it came in.
    android::BitSet32 mDown{};
    android::BitSet32 mPassed{};      ///< of these, passed on to apps in the last frame
    android::BitSet32 mEverPassed{};  ///< of these, passed on at any time since they landed
    std::array<std::array<int32_t, 2>, android::RawPointerData::kMaxIds> mLastPlace{};
    bool mTouching = false;
    bool mCancelledLast = false;      ///< the last frame asked for a cancel
    bool mGestureCancelled = false;   ///< some frame of this gesture did
    std::optional<int32_t> mHeldKey;  ///< key code that waits for its finger

    std::map<std::pair<DeviceRef, int32_t>, bool>
        mConsumedByKeyDown;  ///< keys that are down, and whether the key-down was consumed

    std::vector<Decision> mDecisions;
    Summary mSummary;
};

}  // namespace refhost

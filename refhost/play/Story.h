#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "refhost/play/CallResult.h"
#include "refhost/play/CoverStory.h"
#include "refhost/play/Decision.h"
#include "refhost/play/DurationHistogram.h"
#include "refhost/play/NotchStory.h"
#include "refhost/play/SensorStory.h"
#include "refhost/trace/Trace.h"

namespace refhost {

struct Summary {
    uint64_t lines = 0;
    uint64_t frames = 0;
    uint64_t pointersJudged = 0;   ///< one per finger and frame
    uint64_t pointersRemoved = 0;  ///< likewise
    uint64_t restored = 0;
    uint64_t gesturesCancelled = 0;
    uint64_t cancelRequests = 0;  ///< a gesture may be cancelled frame after frame
    uint64_t reports = 0;
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
    const Decisions& tell(const TraceLine& line, const CallResult& result);
    const Summary& summary() const { return mSummary; }
    /// How fingers of this panel are told apart from those of others: " of device 4"; empty for those of the first.
    std::string nameOf(const DeviceRef& panel) const;

  private:
    /// The fingers on one panel. The id sets are of its last frame, as it came in.
    struct Hand {
        android::BitSet32 down{};
        android::BitSet32 passed{};      ///< of these, passed on to apps in that frame
        android::BitSet32 everPassed{};  ///< of these, passed on at any time since they landed
        android::BitSet32 onSensor{};    ///< of these, held back by the front fingerprint filter
        android::BitSet32 inNotch{};     ///< of these, taken out by the notch filter
        std::array<std::array<int32_t, 2>, android::RawPointerData::kMaxIds> lastPlace{};
        std::vector<std::string> cancelledLast;  ///< what was said of cancels in its last frame
        bool gestureCancelled = false;           ///< some frame of its gesture was
        std::string panel;                       ///< as it is told; empty for the first one
    };

    Hand& handOn(const DeviceRef& panel);
    void tellFrame(const ProcessRawTouches& call, const CallResult& result);
    void tellFinger(uint32_t id, Hand& hand, const ProcessRawTouches& call, const CallResult& result);
    std::string whyHeldBack(uint32_t id, Hand& hand, const ProcessRawTouches& call, const CallResult& result);
    std::string whyLetThrough(uint32_t id, const Hand& hand, const ProcessRawTouches& call);
    void tellLifted(const Hand& hand, const ProcessRawTouches& call);
    void tellCancel(const ProcessRawTouches& call, android::BitSet32 seen, Hand& hand, const CallResult& result);
    void tellHeldKey(const ProcessRawTouches& call, const CallResult& result);
    void tellKey(const ProcessKey& call, const CallResult& result);
    void add(int64_t when, Fate fate, std::string subject, std::string words, About about);

    SensorStory mSensors;
    CoverStory mCover;
    NotchStory mNotch;

    std::map<DeviceRef, Hand> mHands;
    bool mTouching = false;
    std::optional<int32_t> mHeldKey;  ///< key code that waits for its finger
    int64_t mNow = 0;                 ///< ns, the trace's clock

    std::map<std::pair<DeviceRef, int32_t>, bool>
        mConsumedByKeyDown;  ///< keys that are down, and whether the key-down was consumed

    Decisions mDecisions;
    Summary mSummary;
};

}  // namespace refhost

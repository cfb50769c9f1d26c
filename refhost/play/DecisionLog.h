#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "refhost/play/CallResult.h"
#include "refhost/play/Decision.h"
#include "refhost/play/DurationHistogram.h"
#include "refhost/play/FingerSummary.h"
#include "refhost/play/SensorServiceEvents.h"
#include "refhost/trace/Trace.h"

namespace refhost {

struct Summary {
    uint64_t lines = 0;
    uint64_t frames = 0;
    FingerSummary fingers;
    uint64_t pointersJudged = 0;   ///< one per finger and frame
    uint64_t pointersRemoved = 0;  ///< likewise
    uint64_t gesturesCancelled = 0;
    uint64_t cancelRequests = 0;  ///< a gesture may be cancelled frame after frame
    uint64_t reports = 0;
    uint64_t keysConsumed = 0;    ///< key-downs, the held-back ones included
    uint64_t keysHeldBack = 0;    ///< of these
    uint64_t keysReSent = 0;      ///< of these again
    uint64_t keysDropped = 0;     ///< and of these
    uint64_t keysDispatched = 0;  ///< key-downs
    uint64_t records = 0;         ///< that the library made
    DurationHistogram calls;
    std::string filterOff;  ///< the filter's words where it is off for want of an area; else empty
};

/// Turns what came back from each call into the few decisions that changed something for a finger, a gesture or a key.
/// What happened to a finger is what the frames show; why, is what the library recorded. Memory does not grow with the
/// length of a trace, but by a number for each finger that came late. One thread.
class DecisionLog {
  public:
    /// The decisions of this line, in order; empty for most. Valid until the next call.
    const Decisions& onLine(const TraceLine& line, const CallResult& result);
    /// Includes the fingers that are still down.
    Summary summary() const;
    /// Names a panel where there are several: " of device 4"; empty for the first.
    std::string nameOf(const DeviceRef& panel) const;

  private:
    /// A finger from landing to lift.
    struct Finger {
        int64_t landed = 0;  ///< ns
        int32_t x = 0;       ///< where it was in the last frame, as that came in
        int32_t y = 0;
        bool passed = false;             ///< in the last frame
        bool passedBefore = false;       ///< and in the one before
        bool cancelled = false;          ///< its gesture was, while apps saw it
        std::optional<FingerFate> fate;  ///< as long as nothing worse follows; nothing: no app has seen it
        int64_t late = 0;                ///< ns, from landing until apps saw it
        std::string_view removedBy;      ///< the filter that removed it last
        Decision lastRemoval;            ///< why it was removed last
    };

    /// What is known of one panel.
    struct Panel {
        std::string name;                    ///< as in nameOf()
        std::map<uint32_t, Finger> fingers;  ///< those that are down, by pointer id
        bool gestureCancelled = false;
        std::set<std::pair<std::string_view, std::string_view>> cancelledLast;  ///< filter and rule, in the last frame
    };

    void onFrame(const ProcessRawTouches& call, const CallResult& result);
    void onKey(const ProcessKey& call, const CallResult& result);
    void onFinger(uint32_t id, Panel& panel, const ProcessRawTouches& call, const CallResult& result);
    void onLift(uint32_t id, const Finger& finger, const Panel& panel, const ProcessRawTouches& call);
    void onCancel(Panel& panel, const ProcessRawTouches& call, const CallResult& result);
    void onHeldKey(const Record& record);
    void onContext(const Record& record);
    void add(Decision decision, const Record* why);
    Panel& panelOf(const DeviceRef& device);
    static void follow(Finger& finger, bool landed, bool restored, int64_t when);
    static FingerFate fateOf(const Finger& finger);

    std::map<DeviceRef, Panel> mPanels;
    SensorServiceEvents mServiceEvents;
    std::map<std::pair<std::string_view, std::string_view>, std::string> mContext;  ///< last said, by filter and rule
    std::map<std::pair<DeviceRef, int32_t>, bool> mConsumedByKeyDown;               ///< per key: its last key-down was
    Decisions mDecisions;
    Summary mSummary;
    int64_t mNow = 0;  ///< ns, the trace's clock
};

}  // namespace refhost

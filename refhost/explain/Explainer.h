#pragma once

#include <vector>

#include "refhost/explain/Rules.h"
#include "refhost/play/Story.h"

namespace refhost {

/// A decision of the story with its reason, and what was logged about it.
struct Explained {
    Decision decision;
    Reason reason;
    std::vector<LogEntry> log;
};

/// A finger on the glass: its state and why, and what has been decided about it since it landed, the last 20.
struct OnGlass {
    Explained state;
    std::vector<Explained> decisions;
};

/// Explains what the story tells. It knows what a host knows: what it handed in, what came back and what was logged;
/// the measures are worked out from that. Holds a fixed amount however long the trace. One thread.
class Explainer {
  public:
    explicit Explainer(const TraceHeader& header) : mFacts(header) {}

    /// The decisions of this line, in order; empty for most. Valid until the next call. To the story's it adds one
    /// where a finger that has passed so far comes into the filter area: why it is not held back there.
    const std::vector<Explained>& explain(const TraceLine& line, const CallResult& result);

    /// The fingers on the glass after the last frame, each with why it passes or is taken out at `when` (ns).
    std::vector<OnGlass> fingersAt(int64_t when) const;

    /// The key that waits for its finger after the last line, with what holds of both at `when` (ns), if one does.
    std::optional<Explained> keyAt(int64_t when) const;

    const Summary& summary() const { return mStory.summary(); }

  private:
    using Pointer = std::pair<DeviceRef, uint32_t>;  ///< a panel and a pointer id

    void see(const ProcessRawTouches& call, const CallResult& result);
    void explain(const Decision& decision, const CallResult& result);
    Reason reasonFor(const Decision& decision, const CallResult& result);
    void addComingIn(const ProcessRawTouches& call, const CallResult& result);
    bool isKept(const Pointer& whose) const;
    Decision stateOf(const Pointer& whose, const Finger& finger, int64_t when, std::string words) const;
    void finish(const ProcessRawTouches& call);

    Story mStory;
    Facts mFacts;
    bool mTouching = false;
    std::map<Pointer, std::vector<Explained>> mSinceLanding;
    Decision mHeldKey;  ///< the last one that was held back
    int64_t mNow = 0;   ///< ns, the trace's clock
    std::vector<Explained> mExplained;
};

}  // namespace refhost

#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "refhost/play/DecisionLog.h"

namespace refhost {

/// A decision with what was logged about it.
struct Explained {
    Decision decision;
    std::vector<LogEntry> log;
};

/// A finger that is down: the library's latest record of it, and the decisions about it since it landed, the last 20.
struct FingerDown {
    Explained latest;
    std::vector<Explained> decisions;
};

/// Explains decisions with what the library recorded of each. Holds a fixed amount however long the trace. One thread.
class Explainer {
  public:
    /// The decisions of this line, in order; empty for most. Valid until the next call. To those of the log it adds one
    /// where a filter says of a passing finger why it passes: a finger that comes into the filter area.
    const std::vector<Explained>& onLine(const TraceLine& line, const CallResult& result);

    /// The fingers that are down after the last frame.
    std::vector<FingerDown> fingersDown() const;

    /// The key that waits for its finger after the last line, if one does.
    const std::optional<Explained>& waitingKey() const { return mWaitingKey; }

    Summary summary() const { return mLog.summary(); }

  private:
    using Pointer = std::pair<DeviceRef, uint32_t>;  ///< a panel and a pointer id

    struct History {
        std::optional<Explained> latest;
        std::vector<Explained> decisions;
    };

    void onFrame(const ProcessRawTouches& call, const CallResult& result);
    void addSpoken(const ProcessRawTouches& call, const CallResult& result);
    void remember(const ProcessRawTouches& call, const CallResult& result);
    Decision stateOf(uint32_t id, const ProcessRawTouches& call, const CallResult& result, const Record* why) const;

    DecisionLog mLog;
    std::map<Pointer, History> mDown;
    std::optional<Explained> mWaitingKey;
    std::vector<Explained> mExplained;
};

}  // namespace refhost

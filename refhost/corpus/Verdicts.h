#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "refhost/play/Decision.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What became of one finger from its landing to its lift, or of one key; or one thing more that the host was told.
struct Verdict {
    std::string at;       ///< s of event time, "60.062", as stories print it: of the landing, or the key
    std::string subject;  ///< as the story tells it: "finger 0 at (548, 2230)"
    std::string fate;     ///< "held back, restored at 60.128 s"
};

/// In the order in which they begin.
using Verdicts = std::vector<Verdict>;

/// Gathers a story into verdicts: the fates of a finger, or of a key that waits for its finger, in one. What is merely
/// noted, and why a fate is as it is, has no part in them. Grows by each finger and key. One thread.
class VerdictCollector {
  public:
    /// Takes the next line of the trace, with what the story has told of it.
    void hear(const TraceLine& line, const Decisions& decisions);
    const Verdicts& verdicts() const { return mVerdicts; }

  private:
    using Finger = std::pair<DeviceRef, uint32_t>;

    void forgetLifted(const ProcessRawTouches& call);
    void addToFingers(const Decision& decision);
    void addToKeys(const Decision& decision);
    void open(const Decision& decision);
    void goOn(size_t verdict, const Decision& decision);

    Verdicts mVerdicts;
    std::map<DeviceRef, android::BitSet32> mDown;
    std::map<Finger, size_t> mFingers;                                  ///< the verdict of each finger that is down
    std::optional<std::pair<std::optional<int32_t>, size_t>> mWaiting;  ///< key code and verdict of the key held back
};

}  // namespace refhost

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/check/Breach.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Something that would be a breach, were it not what a filter is for.
struct Designed {
    Breach breach;     ///< as it would be
    std::string name;  ///< of the design, for searches: "held-back-then-late"
};

/// The frames that a pointer is missing from, and which filter removed it.
struct Absence {
    std::string_view remover;  ///< in the first of them: how names of designed findings begin; empty: no record says
    uint32_t unexplained = 0;  ///< the line of the first frame without a record of the removal; 0: none
    void add(const Record* removal, uint32_t line);
};

/// What becomes of pointers in the eyes of a host, and of the apps behind it, from a finger's landing to its lift;
/// CheckRules.h says where each rule is broken. Where the library has recorded the removal in every frame, a deviation
/// is designed. One thread.
class PointerLife {
  public:
    /// Takes a frame with the library's records.
    void check(const ProcessRawTouches& call, const CallResult& result);
    /// Begins anew: frames were broken as the host handed them in.
    void forget() { mHands.clear(); }

    const Breaches& breaches() const { return mBreaches; }
    const std::vector<Designed>& designed() const { return mDesigned; }

  private:
    struct Life {
        int64_t landed = 0;                      ///< ns
        uint32_t line = 0;                       ///< where it landed
        bool out = false;                        ///< in the last frame
        bool seen = false;                       ///< has been out
        Absence absence;                         ///< since it was out
        std::set<std::string_view> cancelledBy;  ///< filters, while it was out; none once it has come out again
        uint32_t cancelLine = 0;                 ///< of the last cancel
    };

    /// The fingers of one panel that are down.
    struct Hand {
        std::map<uint32_t, Life> lives;  ///< by pointer id
        std::optional<Absence> torn;     ///< since all have left while some were down
    };

    /// The frame that is being looked at.
    struct Frame {
        const ProcessRawTouches& call;
        const CallResult& result;
        bool out(uint32_t id) const { return result.frame.frame.touchingIdBits.hasBit(id); }
    };

    enum class Course { Late, Restored, Torn, Again, NewGesture };

    void lift(const Frame& frame, Hand& hand);
    void cancel(const Frame& frame, Hand& hand);
    void follow(const Frame& frame, uint32_t id, Life& life);
    void comeOut(const Frame& frame, uint32_t id, Life& life);
    void comeOutAfterCancel(const Frame& frame, uint32_t id, Life& life);
    static std::string_view passingAfterCancel(const Frame& frame, uint32_t id, const Life& life);
    void leave(const Frame& frame, uint32_t id, Life& life);
    void followGesture(const Frame& frame, Hand& hand, bool wasOut);
    void tell(const Frame& frame, std::string_view rule, Course course, const Absence& absence, std::string text);

    std::map<DeviceRef, Hand> mHands;
    Breaches mBreaches;
    std::vector<Designed> mDesigned;
};

}  // namespace refhost

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/check/Breach.h"
#include "refhost/explain/Takers.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Something that would be a breach, were it not what a filter is for.
struct Designed {
    Breach breach;          ///< as it would be
    std::string_view name;  ///< of the design, for searches: "held-back-then-late"; lives as long as the program
};

/// Whom to blame for the frames that a pointer is missing from.
struct Absence {
    Taker taker = Taker::Nobody;  ///< of the first of them
    uint32_t unexplained = 0;     ///< the line of the first that nobody had a reason for; 0: none
    void add(Taker by, uint32_t line);
};

/// What becomes of pointers in the eyes of a host, and of the apps behind it, from a finger's landing to its lift:
/// - "pointer-late"          it comes out later than its finger has landed
/// - "pointer-lost"          it never comes out, and no filter has a reason to keep it
/// - "pointer-torn"          it leaves while its finger is down, and no cancel took the gesture
/// - "pointer-again"         it comes out again after that
/// - "pointer-after-cancel"  it was out as its gesture was cancelled, and comes out again before all of the panel's
///                           fingers are up
/// - "gesture-torn"          all leave while fingers are down, and some come out again, none of them put back
/// Where a filter has a reason in every frame, it is designed. One thread.
class PointerLife {
  public:
    /// Takes a frame. `takers` has heard it.
    void check(const ProcessRawTouches& call, const CallResult& result, const Takers& takers);
    /// Begins anew: frames were broken as the host handed them in.
    void forget() { mHands.clear(); }

    const Breaches& breaches() const { return mBreaches; }
    const std::vector<Designed>& designed() const { return mDesigned; }

  private:
    struct Life {
        int64_t landed = 0;                   ///< ns
        uint32_t line = 0;                    ///< where it landed
        bool out = false;                     ///< in the last frame
        bool seen = false;                    ///< has been out
        Absence absence;                      ///< since it was out
        std::optional<Cancellers> cancelled;  ///< while it was out; nothing once it has come out again
        uint32_t cancelLine = 0;              ///< of the last cancel
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
        const Takers& takers;
        bool out(uint32_t id) const { return result.frame.frame.touchingIdBits.hasBit(id); }
    };

    enum class Course { Late, Restored, Torn, Again, NewGesture };

    void lift(const Frame& frame, Hand& hand);
    void cancel(const Frame& frame, Hand& hand);
    void follow(const Frame& frame, uint32_t id, Life& life);
    void comeOut(const Frame& frame, uint32_t id, Life& life);
    void comeOutAfterCancel(const Frame& frame, uint32_t id, Life& life);
    void leave(const Frame& frame, uint32_t id, Life& life);
    void followGesture(const Frame& frame, Hand& hand, bool wasOut);
    void tell(const Frame& frame, std::string_view rule, Course course, const Absence& absence, std::string text);

    std::map<DeviceRef, Hand> mHands;
    Breaches mBreaches;
    std::vector<Designed> mDesigned;
};

}  // namespace refhost

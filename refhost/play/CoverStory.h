#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "refhost/play/CallResult.h"
#include "refhost/play/Decision.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// The slide cover's part of the story: where the cover is, and, since the filter logs a cancel once, what it does with
/// the frames that follow.
class CoverStory {
  public:
    /// Takes a line in before anything else is told of it, and adds what it brings.
    void hear(int64_t when, const TraceLine& line, const CallResult& result, Decisions& decisions);

    /// On a finger of a frame at `when` that this filter takes out after its cancel; empty where it does not.
    std::string wordsOnTaking(int64_t when) const;
    /// On a finger that it had taken out and lets pass again; empty where it does not.
    std::string wordsOnPassing(int64_t when) const;

    /// Whether this filter lets the fingers of a gesture pass that it has cancelled: the cover has come to rest,
    bool settled(int64_t when) const;
    /// or it could not tell in the last frame where the cover is.
    bool idle() const { return mBlind; }

  private:
    void hear(int64_t when, const SensorEvent& event, const CallResult& result, Decisions& decisions);
    void hear(int64_t when, const ProcessRawTouches& call, const CallResult& result, Decisions& decisions);

    std::optional<int32_t> mState;  ///< as the filter knows it
    int64_t mSince = 0;             ///< ns: when that changed
    std::optional<int32_t> mTold;   ///< the state that the story has told last
    bool mCancelled = false;        ///< this filter has cancelled the gesture in progress
    bool mBlind = false;            ///< it cannot tell where the cover is in this frame, and lets all pass
};

}  // namespace refhost

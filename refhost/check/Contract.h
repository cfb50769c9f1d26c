#pragma once

#include "refhost/check/Breach.h"
#include "refhost/check/CancelRules.h"
#include "refhost/check/FrameRules.h"
#include "refhost/check/KeyRules.h"
#include "refhost/check/Switches.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What a host relies on, whatever it calls and whatever the filters decide: that a frame loses fingers and gains none,
/// that a finger is only ever put back where it had landed, that a key which was held back is sent again or dropped for
/// a reason, that a gesture is cancelled once. It is told from outside, by what went into the plug-in and what came
/// back, its log included. A frame that is broken when the host hands it in is asked for less. One thread.
class Contract {
  public:
    explicit Contract(const TraceHeader& header) : mKeys(header) {}

    /// Takes the next line of the trace, with what came back from it. Lines come in the order in which they are played.
    void hear(const TraceLine& line, const CallResult& result);

    /// All breaches so far, in order.
    const Breaches& breaches() const { return mBreaches; }
    /// Whether the host has handed in every frame of the gesture in progress whole.
    bool isSound() const { return mFrames.isSound(); }

  private:
    Switches mSwitches;
    FrameRules mFrames;
    KeyRules mKeys;
    CancelRules mCancels;
    Breaches mBreaches;
};

}  // namespace refhost

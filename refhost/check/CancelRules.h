#pragma once

#include <cstdint>

#include "refhost/check/Breach.h"
#include "refhost/check/Switches.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// The rules on cancels and reports; CheckRules.h says what each demands.
class CancelRules {
  public:
    void check(const Switches& on, const ProcessRawTouches& call, const CallResult& result, Breaches& breaches);
    /// Of a line that is no frame: it asks for nothing.
    void checkNone(const CallResult& result, Breaches& breaches);
    /// With the input the fold angle's filter forgets its cancel.
    void inputExits() { mFold = false; }

  private:
    static void checkReports(const CallResult& result, bool mayReport, Breaches& breaches);

    // Filters that have cancelled, and cannot have seen a lift-off since.
    bool mFront = false;
    bool mCover = false;
    bool mFold = false;
    bool mReportable = false;  ///< the slide cover's filter has cancelled, and the gesture goes on
};

}  // namespace refhost

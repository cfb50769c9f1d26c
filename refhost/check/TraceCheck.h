#pragma once

#include <vector>

#include "refhost/check/Breach.h"
#include "refhost/check/Contract.h"
#include "refhost/check/PointerLife.h"
#include "refhost/check/RecordRules.h"

namespace refhost {

/// Everything that a host relies on, over one trace: the contract of each call, and the lives of the pointers across
/// them. One thread.
class TraceCheck {
  public:
    explicit TraceCheck(const TraceHeader& header) : mContract(header) {}

    /// Takes the next line of the trace, with what came back from it. Lines come in the order in which they are played.
    void hear(const TraceLine& line, const CallResult& result);

    /// All breaches so far, by line.
    const Breaches& breaches() const { return mBreaches; }
    /// What would be one, were it not what a filter is for; by line.
    const std::vector<Designed>& designed() const { return mLives.designed(); }

  private:
    void follow(const ProcessRawTouches& call, const CallResult& result);

    Contract mContract;
    RecordRules mRecords;
    PointerLife mLives;
    Breaches mBreaches;
    bool mNamed = true;      ///< every frame of the gesture in progress has named its fingers
    size_t mOfContract = 0;  ///< of these
    size_t mOfLives = 0;     ///< likewise
};

}  // namespace refhost

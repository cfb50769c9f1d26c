#include "refhost/check/TraceCheck.h"

namespace refhost {

namespace {

/// Filters take out what the set of ids names: a finger that it does not name stays, whatever they decide.
bool namesItsFingers(const ProcessRawTouches& call) {
    return call.ids.value == (call.frame.touchingIdBits.value | call.frame.hoveringIdBits.value);
}

}  // namespace

void TraceCheck::hear(const TraceLine& line, const CallResult& result) {
    mContract.hear(line, result);
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) follow(*frame, result);
    const auto gather = [&](const Breaches& from, size_t& gathered) {
        for (; gathered < from.size(); ++gathered) mBreaches.push_back(from[gathered]);
    };
    gather(mContract.breaches(), mOfContract);
    gather(mLives.breaches(), mOfLives);
    mRecords.remember(line);
    if (mContract.isSound()) mRecords.check(line, result, mBreaches);
}

void TraceCheck::follow(const ProcessRawTouches& call, const CallResult& result) {
    mNamed = namesItsFingers(call) && (mNamed || call.frame.touchingIdBits.isEmpty());
    if (mNamed && mContract.isSound()) {
        mLives.check(call, result);
    } else {
        mLives.forget();
    }
}

}  // namespace refhost

#include "refhost/check/TraceCheck.h"

namespace refhost {

void TraceCheck::hear(const TraceLine& line, const CallResult& result) {
    mContract.hear(line, result);
    mTakers.hear(line, result);
    if (!mContract.isSound()) {
        mLives.forget();
    } else if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) {
        mLives.check(*frame, result, mTakers);
    }
    const auto gather = [&](const Breaches& from, size_t& gathered) {
        for (; gathered < from.size(); ++gathered) mBreaches.push_back(from[gathered]);
    };
    gather(mContract.breaches(), mOfContract);
    gather(mLives.breaches(), mOfLives);
}

}  // namespace refhost

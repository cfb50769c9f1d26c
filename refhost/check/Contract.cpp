#include "refhost/check/Contract.h"

#include <variant>

namespace refhost {

void Contract::hear(const TraceLine& line, const CallResult& result) {
    mSwitches.hear(result);
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) {
        mFrames.check(*frame, result, mBreaches);
        mKeys.check(mSwitches, *frame, result, mBreaches);
        mCancels.check(mSwitches, *frame, result, mBreaches);
        return;
    }
    if (const auto* key = std::get_if<ProcessKey>(&line.event)) mKeys.check(mSwitches, *key, result, mBreaches);
    if (std::holds_alternative<NotifyInputExit>(line.event)) mCancels.inputExits();
    mCancels.checkNone(result, mBreaches);
}

}  // namespace refhost

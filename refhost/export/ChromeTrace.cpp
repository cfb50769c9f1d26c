#include "refhost/export/ChromeTrace.h"

#include <algorithm>

#include "refhost/play/Playback.h"

namespace refhost {

void ChromeTrace::onLine(const TraceLine& line, const CallResult& result) {
    mClock = line.t.value_or(mClock);
    const int64_t when = timeOf(line, mClock);
    mLast = std::max(mLast, when);
    const Decisions& decisions = mDecisions.onLine(line, result);
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) {
        mPanels.onFrame(*frame, decisions);
        mKeys.onFrame(decisions);
    }
    if (const auto* key = std::get_if<ProcessKey>(&line.event)) mKeys.onKey(*key, decisions);
    mContext.onLine(when, result, decisions);
}

void ChromeTrace::write(TextBuffer& out) {
    mPanels.end(mLast);
    mKeys.end(mLast);
    mEvents.write(out);
}

}  // namespace refhost

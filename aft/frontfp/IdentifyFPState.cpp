#include "aft/frontfp/IdentifyFPState.h"

#include "aft/frontfp/EventTime.h"
#include "aft/frontfp/FingerprintKeys.h"
#include "aft/frontfp/FrontFPLog.h"

namespace android {

namespace {

/// From here on an identification is over, whether or not the sensor has said so.
constexpr int64_t kTimeoutMs = 1700;

/// An identification that starts later than this after the touch was not started by it.
constexpr int32_t kStartedByTouchMs = 300;

}  // namespace

bool IdentifyFPState::identifyingRecently(uint32_t touchSeq, int64_t when, Measurements& measured) {
    if (touchSeq == 0 || mState == kIdle) return false;
    const int64_t elapsed = toMs(when) - mStateTime;
    const auto elapsedMs = static_cast<long long>(elapsed);
    const int32_t key = mState == kIdentified ? FingerprintKeys::kIdentifyEnd : FingerprintKeys::kIdentifyStart;
    const bool ofThisTouch = mTouchSeq == touchSeq || (mState == kIdentifying && mTouchSeq == 0);
    const bool inTime =
        (ofThisTouch ? measured : Measurements::unheard())
            .below({.name = "since identification", .unit = "ms"}, elapsed, kTimeoutMs, keyAt(key, mStateTime));

    if (mState == kIdentified) {
        if (inTime && mTouchSeq == touchSeq) return true;
        const char* whose = mTouchSeq != touchSeq ? "new touch" : "";
        forget();
        LOGD("Reset the IdentifyFPState in %s touchSeq#%d, identified %lldms ago", whose, touchSeq, elapsedMs);
        return false;
    }
    if (mState != kIdentifying) return false;

    bool ours = true;
    if (mTouchSeq == 0) {
        LOGD("First finger touch down on TP in touchSeq#%d after starting indentify finger %lldms later, timeout=%d",
             touchSeq, elapsedMs, inTime ? 0 : 1);
        mTouchSeq = touchSeq;
    } else if (mTouchSeq != touchSeq) {
        LOGD("New finger down on TP in touchSeq#%d but identifying finger in touchSeq#%d, disaptch TP normally",
             touchSeq, mTouchSeq);
        ours = false;
    }
    if (!inTime) {
        LOGD("Identify finger timeout, start identify fingerprint %lldms ago", elapsedMs);
        forget();
    }
    return ours && inTime;
}

bool IdentifyFPState::touchBeforeIdentify(int64_t /*when*/, Measurements& measured) {
    if (mState != kIdentifying || mTouchDownTime < 1 || mTouchDownTime >= mStateTime) return false;
    const auto elapsed = static_cast<int32_t>(mStateTime - mTouchDownTime);
    LOGD("identify finger %dms after finger touched down", elapsed);
    return measured.within({.name = "from touch to identification", .unit = "ms"}, elapsed, 1, kStartedByTouchMs,
                           {"landing", 0, mTouchDownTime * 1'000'000, mStateTime * 1'000'000});
}

void IdentifyFPState::forget() {
    mState = kIdle;
    mTouchSeq = 0;
    mStateTime = 0;
}

}  // namespace android

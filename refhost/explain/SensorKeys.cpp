#include "refhost/explain/SensorKeys.h"

#include <algorithm>
#include <utility>

#include "refhost/explain/Thresholds.h"
#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

constexpr int32_t kFingerDown = 516;
constexpr int32_t kIdentifyStart = 517;
constexpr int32_t kIdentifyEnd = 518;
constexpr int32_t kEnrolStart = 519;

constexpr std::string_view kSinceFinger = "since a finger on the sensor";

bool said(const CallResult& result, std::string_view part) { return lineOf(result, kFrontFpTag, part) != nullptr; }

}  // namespace

bool outweighNavigationBar(const Measures& doubts) {
    return std::any_of(doubts.begin(), doubts.end(),
                       [](const Measure& each) { return each.holds() && each.name != kSinceFinger; });
}

void SensorKeys::hear(const TraceLine& line, const CallResult& result, const Phone& phone) {
    if (std::exchange(mTimedOut, false)) mIdentify = 0;
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) {
        mAnotherTouch = said(result, "but identifying finger in touchSeq#");
        mTimedOut = static_cast<double>(toMs(frame->when) - mIdentify) > kIdentifyRecently.most;
        if (!mTimedOut && said(result, "Reset the IdentifyFPState in new touch")) mIdentify = 0;
    }
    const auto* key = std::get_if<ProcessKey>(&line.event);
    if (key == nullptr || !key->down || !phone.area() || !phone.isSensor(key->device)) return;
    const int64_t now = toMs(key->when);
    const bool dispatched = said(result, "process fingerprint event keycode=");
    if (dispatched) mDispatched = now;
    if (said(result, "new finger touch down on the FP")) mFinger = now;
    if (key->keyCode == kEnrolStart) mEnrol = now;
    if (key->keyCode == kIdentifyStart || key->keyCode == kIdentifyEnd) mIdentify = now;
    if (key->keyCode == kIdentifyStart) mAnotherTouch = false;
    if (key->keyCode == kFingerDown || dispatched || said(result, " down filtered")) mLastKey = now;
}

Measures SensorKeys::doubts(int64_t nowMs, bool landscape, bool edge) const {
    Measures found;
    const auto since = [&](std::string_view name, int64_t then, Range range) {
        const Measure measure{name, static_cast<double>(nowMs - then), range, "ms"};
        if (then != 0 || measure.holds()) found.push_back(measure);
    };
    if (landscape) {
        found.push_back({"on the edge in landscape", edge ? 1.0 : 0.0, kFlagSet, ""});
    } else {
        since(kSinceFinger, std::max(mFinger, mDispatched), kFingerRecently);
    }
    since("since enrolment", mEnrol, kEnrolRecently);
    if (mIdentify != 0 && !mAnotherTouch) since("since identification", mIdentify, kIdentifyRecently);
    return found;
}

Measure SensorKeys::sinceSlideKey(int64_t nowMs) const {
    return {"since the sensor's last key", static_cast<double>(nowMs - mLastKey), kSlideKeyRecently, "ms"};
}

}  // namespace refhost

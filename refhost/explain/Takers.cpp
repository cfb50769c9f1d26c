#include "refhost/explain/Takers.h"

#include "refhost/play/LogLines.h"
#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

using android::BitSet32;

bool says(const CallResult& result, std::string_view tag, std::string_view begin, std::string_view end = "") {
    return countLines(result, tag, begin, end) > 0;
}

}  // namespace

void Takers::hear(const TraceLine& line, const CallResult& result) {
    mPhone.hear(line, result);
    mMarked.hear(line);
    mSensor.hear(line, result, mPhone);
    Decisions untold;
    const auto* frame = std::get_if<ProcessRawTouches>(&line.event);
    if (line.t) mNow = *line.t;
    mCoverStory.hear(frame != nullptr ? frame->when : mNow, line, result, untold);
    if (std::holds_alternative<NotifyInputExit>(line.event)) mFold = false;
    if (frame != nullptr) hearFrame(*frame, result);
}

void Takers::hearFrame(const ProcessRawTouches& call, const CallResult& result) {
    mTakers.fill(Taker::Nobody);
    mLost = result.frame.removed;
    mTouching = call.frame.touchingIdBits;
    hearRestored(call, result);
    mCancellers = {.sensor = !call.frame.touchingIdBits.isEmpty() &&
                             says(result, kFrontFpTag, "this touch may caused by ", ", cancel it"),
                   .abnormal = says(result, kFrontFpTag, "Cancel abnormal touch seq for "),
                   .cover = !wordsOnCancel(result, kCoverTag).empty(),
                   .fold = !wordsOnCancel(result, kFoldTag).empty()};

    if (mCancellers.sensor) take(call.ids, Taker::SensorCancel);
    take(mSensor.taken(), Taker::Sensor);

    mCover = (mCover && !mTouching.isEmpty()) || mCancellers.cover;
    mCoverSettled = mCoverStory.settled(call.when);
    if (mCover && !mCoverSettled && !mCoverStory.idle()) take(call.ids, Taker::Cover);

    if (const std::optional<int32_t> height = mPhone.notchOn(call.device)) takeInNotch(call, *height);

    mFold = mCancellers.fold || (mFold && !mTouching.isEmpty());
    if (mFold && says(result, kFoldTag, "cancel touch during folding")) take(mLost, Taker::Fold);
}

/// The filters after the one that puts a finger back see it where it had landed.
void Takers::hearRestored(const ProcessRawTouches& call, const CallResult& result) {
    mRestored.clear();
    for (const LogEntry& entry : result.log) {
        if (entry.tag != kFrontFpTag || !entry.text.starts_with("compensate point(id=")) continue;
        const auto id = static_cast<uint32_t>(numberAfter(entry.text, "id=").value_or(0));
        const auto* came = call.frame.find(id);
        if (came == nullptr) continue;
        mRestored.markBit(id);
        mLanded[id] = *came;
        mLanded[id].x = numberAfter(entry.text, " x=").value_or(came->x);
        mLanded[id].y = numberAfter(entry.text, " y=").value_or(came->y);
    }
}

/// What has a taker has left the frame for the filters that come after.
void Takers::take(BitSet32 ids, Taker taker) {
    for (uint32_t id : BitSet32{ids.value & mLost.value}) {
        mTakers[id] = taker;
        mLost.clearBit(id);
        mTouching.clearBit(id);
    }
}

void Takers::takeInNotch(const ProcessRawTouches& call, int32_t height) {
    if (mTouching.isEmpty()) return mPassedNotch.clear();
    BitSet32 inBand{};
    for (uint32_t id : BitSet32{mTouching.value & call.ids.value}) {
        const auto* finger = mRestored.hasBit(id) ? &mLanded[id] : call.frame.find(id);
        if (finger == nullptr) continue;
        const bool outside = finger->y < 0 || finger->y > height;
        (outside || mMarked.hold(call.device, *finger) ? mPassedNotch : inBand).markBit(id);
    }
    take({inBand.value & ~mPassedNotch.value}, Taker::Notch);
}

Passing Takers::passing(const Cancellers& cancelledBy) const {
    if (mCancellers.sensor) return Passing::Not;
    if (cancelledBy.cover && mCover && !mCoverSettled && !mCoverStory.idle()) return Passing::Not;
    if (cancelledBy.fold && mFold) return Passing::Not;
    if (cancelledBy.cover) {
        return !mCover ? Passing::CoverForgot : mCoverStory.idle() ? Passing::CoverIdle : Passing::CoverSettled;
    }
    if (cancelledBy.fold) return Passing::FoldForgot;
    if (cancelledBy.sensor) return Passing::SensorCancel;
    return cancelledBy.abnormal ? Passing::Abnormal : Passing::Not;
}

}  // namespace refhost

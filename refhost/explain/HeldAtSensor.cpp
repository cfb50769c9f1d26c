#include "refhost/explain/HeldAtSensor.h"

#include <algorithm>
#include <cstdlib>

#include "refhost/explain/Thresholds.h"
#include "refhost/play/LogLines.h"
#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

using android::BitSet32;

/// What the filter says of a finger once, and then not again until the finger leaves the area.
constexpr std::string_view kRestrains = "restraint current point(id=";
constexpr std::string_view kSaidOnce[] = {kRestrains, "preferTouchNavigationBar, ", "wide range point:id="};
constexpr std::string_view kRestores = "compensate point(id=";

bool within(const Range& range, int64_t value) {
    const auto number = static_cast<double>(value);
    return range.least <= number && number <= range.most;
}

std::optional<uint32_t> idIn(std::string_view text) {
    const std::optional<int32_t> id = numberAfter(text, "id=");
    return id && *id >= 0 ? std::optional(static_cast<uint32_t>(*id)) : std::nullopt;
}

}  // namespace

void HeldAtSensor::hear(const TraceLine& line, const CallResult& result, const Phone& phone) {
    mKeys.hear(line, result, phone);
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) hearFrame(*frame, result, phone);
}

void HeldAtSensor::hearFrame(const ProcessRawTouches& call, const CallResult& result, const Phone& phone) {
    mTaken.clear();
    if (call.frame.touchingIdBits.isEmpty()) {
        for (BitSet32* ids : {&mHeld, &mSeenOutside, &mSpokenOf}) ids->clear();
        return;
    }
    mHeld &= call.ids;
    mSeenOutside &= call.ids;
    BitSet32 restrained{};
    hearSaid(result, restrained);
    if (countLines(result, kFrontFpTag, "this touch may caused by ", ", cancel it") > 0)
        return;  // all go, and nobody is judged
    for (uint32_t id : call.ids) {
        const Pointer* finger = call.frame.find(id);
        if (finger == nullptr || finger->isHovering != 0) continue;
        if (!phone.inArea(finger->x, finger->y)) {
            mHeld.clearBit(id);
            mSpokenOf.clearBit(id);
            mSeenOutside.markBit(id);
        } else if (!result.frame.removed.hasBit(id)) {
            mHeld.clearBit(id);
        } else if (takes(*finger, toMs(call.when), restrained.hasBit(id), phone)) {
            mTaken.markBit(id);
        }
    }
}

void HeldAtSensor::hearSaid(const CallResult& result, BitSet32& restrained) {
    for (const LogEntry& entry : result.log) {
        const std::string_view text = entry.text;
        const std::optional<uint32_t> id = entry.tag == kFrontFpTag ? idIn(text) : std::nullopt;
        if (!id) continue;
        if (text.starts_with(kRestores)) {
            mHeld.clearBit(*id);
            mSeenOutside.markBit(*id);
        } else if (text.starts_with("TouchSeq#") && std::any_of(std::begin(kSaidOnce), std::end(kSaidOnce),
                                                                [&](auto said) { return says(text, said); })) {
            mSpokenOf.markBit(*id);
            if (says(text, kRestrains)) restrained.markBit(*id);
        }
    }
}

/// Of a finger in the area that did not come out.
/// @param told whether the filter says so in this frame
bool HeldAtSensor::takes(const Pointer& finger, int64_t nowMs, bool told, const Phone& phone) {
    const bool edge = (finger.extraData & Pointer::kOnEdge) != 0;
    const Measures doubts = mKeys.doubts(nowMs, phone.landscape(), edge);
    const bool doubtful = std::any_of(doubts.begin(), doubts.end(), [](const Measure& each) { return each.holds(); });
    if (mSeenOutside.hasBit(finger.id)) return false;
    if (phone.prefersNavigationBar() && !outweighNavigationBar(doubts)) {
        mHeld.clearBit(finger.id);
        return false;
    }
    if (mHeld.hasBit(finger.id)) return !comesBack(finger, nowMs);
    if (!told && !(doubtful && mSpokenOf.hasBit(finger.id))) return false;
    mHeld.markBit(finger.id);
    mLanded[finger.id] = {finger.x, finger.y, nowMs};
    return true;
}

/// Clocks that run backwards count as a long time.
bool HeldAtSensor::comesBack(const Pointer& finger, int64_t nowMs) const {
    const Landed& landed = mLanded[finger.id];
    return nowMs >= landed.ms && within(kHeldFor, nowMs - landed.ms) &&
           within(kMovedSideways, std::llabs(int64_t{landed.x} - finger.x)) &&
           within(kMovedUp, int64_t{landed.y} - finger.y);
}

}  // namespace refhost

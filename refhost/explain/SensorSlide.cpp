#include "refhost/explain/SensorSlide.h"

#include <algorithm>

#include "refhost/play/StoryWords.h"

namespace refhost {

using android::BitSet32;
using Pointer = android::RawPointerData::Pointer;

void SensorSlide::hear(const TraceLine& line, const CallResult& result, const Phone& phone) {
    const auto* call = std::get_if<ProcessRawTouches>(&line.event);
    if (call == nullptr) return;
    if (call->frame.touchingIdBits.isEmpty()) {
        for (BitSet32* ids : {&mSeenOutside, &mFollowed, &mFromOutside}) ids->clear();
        return;
    }
    mSeenOutside &= call->ids;
    const bool cancels = std::any_of(result.log.begin(), result.log.end(), [](const LogEntry& entry) {
        return entry.tag == kFrontFpTag && entry.text.starts_with("this touch may caused by ");
    });
    if (!cancels) hearFrame(*call, result, phone);  // else nobody is looked at
}

/// A finger is followed from the frame after the one that marks it, which tells where it is from as each later one
/// does.
void SensorSlide::hearFrame(const ProcessRawTouches& call, const CallResult& result, const Phone& phone) {
    BitSet32 passing{};  ///< this filter; who was seen outside passes it, whoever else takes the finger
    BitSet32 onEdge{};   ///< in landscape: the navigation bar does not get them
    for (uint32_t id : call.ids) {
        const auto* finger = call.frame.find(id);
        if (finger == nullptr || finger->isHovering != 0) continue;
        if (!phone.inArea(finger->x, finger->y)) {
            mSeenOutside.markBit(id);
            continue;
        }
        Box& box = mBoxes[id];
        if (!mFollowed.hasBit(id)) box = {};
        if (mFollowed.hasBit(id)) {
            box = {std::min(box.left, finger->x), std::min(box.top, finger->y), std::max(box.right, finger->x),
                   std::max(box.bottom, finger->y)};
        }
        if (!result.frame.removed.hasBit(id) || mSeenOutside.hasBit(id)) passing.markBit(id);
        if (phone.landscape() && (finger->extraData & Pointer::kOnEdge) != 0) onEdge.markBit(id);
    }
    hearMarks(result);
    const uint32_t wide = mSeenOutside.value & (phone.prefersNavigationBar() ? onEdge.value : ~0U);
    mFromOutside.value = (mFromOutside.value & ~passing.value) | (passing.value & wide);
}

void SensorSlide::hearMarks(const CallResult& result) {
    for (const LogEntry& entry : result.log) {
        const std::optional<int32_t> id = numberAfter(entry.text, "id=");
        if (entry.tag != kFrontFpTag || !id || *id < 0) continue;
        const auto which = static_cast<uint32_t>(*id);
        if (says(entry.text, ", mark point(")) mFollowed.markBit(which);
        if (!isRestoring(entry.text)) continue;
        mSeenOutside.markBit(which);
        mFromOutside.markBit(which);
    }
}

std::optional<SensorSlide::Size> SensorSlide::furthest() const {
    std::optional<Size> most;
    for (uint32_t id : BitSet32{mFollowed.value & ~mFromOutside.value}) {
        const auto& [left, top, right, bottom] = mBoxes[id];
        if (right <= left) continue;
        const double width = static_cast<double>(right) - left;
        if (!most || width > most->width) most = {width, static_cast<double>(bottom) - top};
    }
    return most;
}

}  // namespace refhost

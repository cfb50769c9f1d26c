#include "refhost/play/Story.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

using android::BitSet32;
using android::NotifyKeyArgs;

std::string fingerAt(uint32_t id, int32_t x, int32_t y, const std::string& panel) {
    return fmt::format("finger {} at ({}, {}){}", id, x, y, panel);
}

About aboutFinger(const DeviceRef& device, uint32_t id) {
    About about{device, {}, {}};
    about.fingers.markBit(id);
    return about;
}

/// When a line happens: with its event, or else on the trace's clock.
int64_t timeOf(const TraceLine& line, int64_t now) {
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) return frame->when;
    if (const auto* key = std::get_if<ProcessKey>(&line.event)) return key->when;
    return now;
}

}  // namespace

const Decisions& Story::tell(const TraceLine& line, const CallResult& result) {
    mDecisions.clear();
    ++mSummary.lines;
    if (result.durationNs) mSummary.calls.add(*result.durationNs);
    if (std::string noArea = wordsOnNoArea(result); !noArea.empty()) mSummary.filterOff = std::move(noArea);
    mNow = line.t.value_or(mNow);
    const int64_t when = timeOf(line, mNow);
    mNotch.hear(when, line, result, mDecisions);
    mSensors.hear(when, line, result, mDecisions);
    mCover.hear(when, line, result, mDecisions);
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) tellFrame(*frame, result);
    if (const auto* key = std::get_if<ProcessKey>(&line.event)) tellKey(*key, result);
    return mDecisions;
}

void Story::add(int64_t when, Fate fate, std::string subject, std::string words, About about) {
    mDecisions.push_back({when, fate, std::move(subject), std::move(words), about});
}

std::string Story::nameOf(const DeviceRef& panel) const {
    const auto known = mHands.find(panel);
    return known == mHands.end() ? "" : known->second.panel;
}

/// Fingers of the first panel are told without its name.
Story::Hand& Story::handOn(const DeviceRef& panel) {
    const auto [known, isNew] = mHands.try_emplace(panel);
    if (isNew && mHands.size() > 1) {
        known->second.panel = panel ? fmt::format(" of device {}", *panel) : " without a device";
    }
    return known->second;
}

void Story::tellFrame(const ProcessRawTouches& call, const CallResult& result) {
    ++mSummary.frames;
    mSummary.pointersJudged += call.ids.count();
    mSummary.pointersRemoved += result.frame.removed.count();

    Hand& hand = handOn(call.device);
    tellLifted(hand, call);
    const BitSet32 passed = {call.ids.value & ~result.frame.removed.value};
    // Fingers that a cancel takes out go with their gesture, they are not held back as well.
    const bool emptied = !result.requests.cancelled.empty() && passed.isEmpty();
    for (uint32_t id : call.ids) {
        const auto* came = call.frame.find(id);
        if (came == nullptr) continue;
        if (!emptied || !hand.down.hasBit(id)) tellFinger(id, hand, call, result);
        hand.lastPlace[id] = {came->x, came->y};
    }
    tellCancel(call, {(hand.passed.value | passed.value) & call.ids.value}, hand, result);
    tellHeldKey(call, result);
    for (const Report& report : result.requests.reports) {
        ++mSummary.reports;
        add(call.when, Fate::Reported, fmt::format("event {}", report.event), report.text, {call.device, {}, {}});
    }
    hand.down = call.ids;
    hand.passed = passed;
    hand.everPassed.value = (hand.everPassed.value & call.ids.value) | passed.value;
    hand.onSensor &= result.frame.removed;
    hand.inNotch &= result.frame.removed;
    mTouching = !call.frame.touchingIdBits.isEmpty();
    if (!mTouching) hand.gestureCancelled = false;
}

void Story::tellFinger(uint32_t id, Hand& hand, const ProcessRawTouches& call, const CallResult& result) {
    const auto& came = *call.frame.find(id);
    const bool passed = !result.frame.removed.hasBit(id);
    const bool landed = !hand.down.hasBit(id);
    // One that another filter had taken may come into the front fingerprint filter's hands, and come back from there.
    const bool changesHands = !passed && !wordsOnRestraining(result, id).empty();
    if (!landed && passed == hand.passed.hasBit(id) && !changesHands) return;

    const std::string subject = fingerAt(id, came.x, came.y, hand.panel);
    const About about = aboutFinger(call.device, id);
    if (!passed) return add(call.when, Fate::HeldBack, subject, whyHeldBack(id, hand, call, result), about);
    const std::string said = wordsOnFinger(result, id);
    if (landed) return add(call.when, Fate::Kept, subject, said, about);
    if (isRestoring(said)) {
        ++mSummary.restored;
        const auto* back = result.frame.frame.find(id);
        return add(call.when, Fate::Restored, back != nullptr ? fingerAt(id, back->x, back->y, hand.panel) : subject,
                   said, about);
    }
    const std::string silent = hand.onSensor.hasBit(id) ? "" : whyLetThrough(id, hand, call);
    add(call.when, Fate::LetThrough, subject, silent.empty() ? said : silent, about);
}

/// The first of the filters that took the finger out, in their order; the notch filter is known by its silence.
std::string Story::whyHeldBack(uint32_t id, Hand& hand, const ProcessRawTouches& call, const CallResult& result) {
    std::string said = wordsOnRestraining(result, id);
    if (!said.empty()) {
        hand.onSensor.markBit(id);
        return said;
    }
    said = wordsOnCancel(result, kCoverTag);
    if (said.empty()) said = mCover.wordsOnTaking(call.when);
    if (!said.empty()) return said;
    if (!mNotch.covers(call.device, *call.frame.find(id))) return wordsOnFolding(result);
    hand.inNotch.markBit(id);
    return mNotch.wordsOnTaking();
}

std::string Story::whyLetThrough(uint32_t id, const Hand& hand, const ProcessRawTouches& call) {
    if (hand.inNotch.hasBit(id)) return mNotch.wordsOnPassing(call.device, *call.frame.find(id));
    return mCover.wordsOnPassing(call.when);
}

/// The front fingerprint filter may ask for the same cancel in frame after frame; the first of a run is the one that
/// changes something. The fold's filter asks once for each of its own.
void Story::tellCancel(const ProcessRawTouches& call, BitSet32 seen, Hand& hand, const CallResult& result) {
    const std::vector<std::string> before = std::exchange(hand.cancelledLast, {});
    if (result.requests.cancelled.empty()) return;
    mSummary.cancelRequests += result.requests.cancelled.size();
    if (!hand.gestureCancelled) ++mSummary.gesturesCancelled;
    hand.gestureCancelled = true;

    std::string fingers;
    for (uint32_t id : seen) fingers += fmt::format("{}{}", fingers.empty() ? "" : ", ", id);
    const std::string subject =
        seen.isEmpty()
            ? "gesture that nobody saw"
            : fmt::format("gesture of {} {}{}", seen.count() == 1 ? "finger" : "fingers", fingers, hand.panel);
    const auto tell = [&](std::string_view who, std::string said) {
        const bool again = who != kFoldTag && std::find(before.begin(), before.end(), said) != before.end();
        hand.cancelledLast.push_back(said);
        if (!again) add(call.when, Fate::Cancelled, subject, std::move(said), {call.device, seen, {}});
    };
    for (std::string_view who : kCancellers) {
        if (std::string said = wordsOnCancel(result, who); !said.empty()) tell(who, std::move(said));
    }
    if (hand.cancelledLast.empty()) tell("", "");
}

void Story::tellLifted(const Hand& hand, const ProcessRawTouches& call) {
    for (uint32_t id : BitSet32{hand.down.value & ~call.ids.value}) {
        if (hand.everPassed.hasBit(id)) continue;
        add(call.when, Fate::Lost, fingerAt(id, hand.lastPlace[id][0], hand.lastPlace[id][1], hand.panel), "",
            aboutFinger(call.device, id));
    }
}

void Story::tellHeldKey(const ProcessRawTouches& call, const CallResult& result) {
    for (const NotifyKeyArgs& key : result.frame.keys) {
        if (key.action != NotifyKeyArgs::kActionDown) continue;
        ++mSummary.keysReSent;
        mHeldKey.reset();
        add(call.when, Fate::ReSent, fmt::format("key {} down and up", key.keyCode), wordsOnSendingKey(result),
            {{}, {}, key.keyCode});
    }
    if (!mHeldKey) return;
    const std::string restored = wordsOnRestoring(result);
    const bool newTouch = !mTouching && !call.frame.touchingIdBits.isEmpty();  // it waited for the one before
    if (restored.empty() && !newTouch) return;
    ++mSummary.keysDropped;
    add(call.when, Fate::Dropped, fmt::format("key {}", *mHeldKey), restored, {{}, {}, mHeldKey});
    mHeldKey.reset();
}

void Story::tellKey(const ProcessKey& call, const CallResult& result) {
    const bool consumed = result.keyResult.value_or(0) != 0;
    if (!call.down) {
        const auto down = mConsumedByKeyDown.find({call.device, call.keyCode});
        const bool asExpected = down != mConsumedByKeyDown.end() && down->second == consumed;
        if (down != mConsumedByKeyDown.end()) mConsumedByKeyDown.erase(down);
        if (asExpected) return;  // shares the fate of its key-down
    }
    const bool heldBack = call.down && consumed && !wordsOnHoldingKey(result).empty();
    if (call.down) {
        ++(consumed ? mSummary.keysConsumed : mSummary.keysDispatched);
        mSummary.keysHeldBack += heldBack;
        mConsumedByKeyDown[{call.device, call.keyCode}] = consumed;
    }
    if (heldBack) mHeldKey = call.keyCode;
    const Fate fate = heldBack ? Fate::HeldBack : consumed ? Fate::Consumed : Fate::Dispatched;
    add(call.when, fate, fmt::format("key {} {}", call.keyCode, call.down ? "down" : "up"), wordsOnKey(result),
        {call.device, {}, call.keyCode});
}

}  // namespace refhost

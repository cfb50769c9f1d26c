#include "refhost/play/DecisionLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace refhost {

namespace {

using android::BitSet32;

std::string fingerAt(uint32_t id, int32_t x, int32_t y, const std::string& panel) {
    return fmt::format("finger {} at ({}, {}){}", id, x, y, panel);
}

Target pointerTarget(const DeviceRef& device, uint32_t id) {
    Target target{device, {}, {}};
    target.pointers.markBit(id);
    return target;
}

Outcome outcomeOfKey(const Record* record, bool consumed) {
    if (record != nullptr && record->outcome == RecordOutcome::HeldBack) return Outcome::HeldBack;
    return consumed ? Outcome::Consumed : Outcome::Dispatched;
}

/// "(cover state 2, ...)"
std::string valuesOf(const Record& record) {
    std::string text;
    for (const Measurement& each : record.measurements) {
        text += fmt::format("{}{} {}", text.empty() ? "(" : ", ", each.name, each.value);
    }
    return text.empty() ? text : text + ")";
}

}  // namespace

const Decisions& DecisionLog::onLine(const TraceLine& line, const CallResult& result) {
    mDecisions.clear();
    ++mSummary.lines;
    mSummary.records += result.records.size();
    if (result.durationNs) mSummary.calls.add(*result.durationNs);
    mNow = line.t.value_or(mNow);
    if (const auto* service = std::get_if<SensorService>(&line.event)) mServiceEvents.add(mNow, *service, mDecisions);
    for (const Record& record : result.records) {
        if (record.outcome == RecordOutcome::Noted) onContext(record);
    }
    if (const auto* sample = std::get_if<SensorEvent>(&line.event)) {
        mServiceEvents.add(mNow, *sample, !result.records.empty(), mDecisions);
    }
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) onFrame(*frame, result);
    if (const auto* key = std::get_if<ProcessKey>(&line.event)) onKey(*key, result);
    return mDecisions;
}

void DecisionLog::add(Decision decision, const Record* why) {
    if (why != nullptr) {
        if (decision.message.empty()) decision.message = why->message;
        decision.filter = why->filter;
        decision.rule = why->rule;
        decision.measurements = why->measurements;
    }
    mDecisions.push_back(std::move(decision));
}

/// Context is shown when it changes, not each time that a filter looks at it.
void DecisionLog::onContext(const Record& record) {
    if (record.rule == "area-off") mSummary.filterOff = record.message;
    std::string message = record.message.empty() ? valuesOf(record) : record.message;
    std::string& last = mContext[{record.filter, record.rule}];
    if (last == message && !last.empty()) return;
    last = message;
    for (auto& [whose, said] : mContext) {  // a state that comes back after another one of the filter is news
        if (whose.first == record.filter && whose.second != record.rule) said.clear();
    }
    add({record.when, Outcome::Noted, fmt::format("{} {}", record.filter, record.rule), std::move(message)}, &record);
}

std::string DecisionLog::nameOf(const DeviceRef& panel) const {
    const auto known = mPanels.find(panel);
    return known == mPanels.end() ? "" : known->second.name;
}

/// Fingers of the first panel are shown without its name.
DecisionLog::Panel& DecisionLog::panelOf(const DeviceRef& device) {
    const auto [known, isNew] = mPanels.try_emplace(device);
    if (isNew && mPanels.size() > 1) {
        known->second.name = device ? fmt::format(" of device {}", *device) : " without a device";
    }
    return known->second;
}

void DecisionLog::onFrame(const ProcessRawTouches& call, const CallResult& result) {
    ++mSummary.frames;
    mSummary.pointersJudged += call.ids.count();
    mSummary.pointersRemoved += result.frame.removed.count();
    Panel& panel = panelOf(call.device);
    for (auto each = panel.fingers.begin(); each != panel.fingers.end();) {
        const bool lifted = !call.ids.hasBit(each->first);
        if (lifted) onLift(each->first, each->second, panel, call);
        each = lifted ? panel.fingers.erase(each) : std::next(each);
    }
    for (uint32_t id : call.ids) {
        if (call.frame.find(id) != nullptr) onFinger(id, panel, call, result);
    }
    onCancel(panel, call, result);
    for (const Record& record : result.records) {
        if (record.key) onHeldKey(record);
    }
    for (const Report& report : result.requests.reports) {
        ++mSummary.reports;
        const auto why = std::find_if(result.records.begin(), result.records.end(),
                                      [](const Record& each) { return each.outcome == RecordOutcome::Reported; });
        add({call.when, Outcome::Reported, fmt::format("event {}", report.event), report.text, {call.device, {}, {}}},
            why == result.records.end() ? nullptr : &*why);
    }
    if (call.frame.touchingIdBits.isEmpty()) panel.gestureCancelled = false;
}

void DecisionLog::onFinger(uint32_t id, Panel& panel, const ProcessRawTouches& call, const CallResult& result) {
    const auto& came = *call.frame.find(id);
    const auto [known, landed] = panel.fingers.try_emplace(id);
    Finger& finger = known->second;
    if (landed) finger.landed = call.when;
    const bool passed = !result.frame.removed.hasBit(id);
    const bool wasPassed = finger.passedBefore = finger.passed;
    finger.x = came.x;
    finger.y = came.y;
    finger.passed = passed;

    Decision decision{call.when, Outcome::Kept, fingerAt(id, came.x, came.y, panel.name), "",
                      pointerTarget(call.device, id)};
    if (!passed) {
        const Record* why = removalOf(result.records, id);
        // Fingers that a cancel takes out go with their gesture; they are not held back as well.
        const bool withGesture = !landed && !result.requests.cancelled.empty() && result.frame.ids.isEmpty();
        const bool heldAnew = why != nullptr && !why->message.empty();
        decision.outcome = Outcome::HeldBack;
        const size_t before = mDecisions.size();
        add(std::move(decision), why);
        finger.lastRemoval = mDecisions.back();
        if (why != nullptr) finger.removedBy = why->filter;
        if (withGesture || !(landed || wasPassed || heldAnew)) mDecisions.resize(before);
        return;
    }
    const Record* restoration = restorationOf(result.records, id);
    follow(finger, landed, restoration != nullptr, call.when);
    if (!landed && wasPassed) return;
    if (landed) return add(std::move(decision), passageOf(result.records, id, ""));
    if (restoration != nullptr) {
        const auto* back = result.frame.frame.find(id);
        if (back != nullptr) decision.subject = fingerAt(id, back->x, back->y, panel.name);
        decision.outcome = Outcome::Restored;
        return add(std::move(decision), restoration);
    }
    decision.outcome = Outcome::LetThrough;
    add(std::move(decision), passageOf(result.records, id, finger.removedBy));
}

/// Of a finger that passes.
void DecisionLog::follow(Finger& finger, bool landed, bool restored, int64_t when) {
    if (finger.fate) return;
    finger.late = when - finger.landed;
    finger.fate = landed ? FingerFate::Kept : restored ? FingerFate::Restored : FingerFate::LetThrough;
}

void DecisionLog::onLift(uint32_t id, const Finger& finger, const Panel& panel, const ProcessRawTouches& call) {
    mSummary.fingers.add(fateOf(finger), finger.late);
    if (finger.fate) return;
    Decision lost = finger.lastRemoval;
    lost.when = call.when;
    lost.outcome = Outcome::Lost;
    lost.subject = fingerAt(id, finger.x, finger.y, panel.name);
    lost.message.clear();
    mDecisions.push_back(std::move(lost));
}

FingerFate DecisionLog::fateOf(const Finger& finger) {
    if (!finger.fate) return FingerFate::Lost;
    if (finger.cancelled) return FingerFate::Cancelled;
    return finger.passed ? *finger.fate : FingerFate::Interrupted;
}

/// The front fingerprint filter may ask for the same cancel in frame after frame; the first of a run is the one that
/// changes something.
void DecisionLog::onCancel(Panel& panel, const ProcessRawTouches& call, const CallResult& result) {
    const auto before = std::exchange(panel.cancelledLast, {});
    if (result.requests.cancelled.empty()) return;
    mSummary.cancelRequests += result.requests.cancelled.size();
    if (!panel.gestureCancelled) ++mSummary.gesturesCancelled;
    panel.gestureCancelled = true;

    BitSet32 seen{};
    std::string fingers;
    for (auto& [id, finger] : panel.fingers) {
        if (!finger.passedBefore && !finger.passed) continue;
        finger.cancelled = true;
        seen.markBit(id);
        fingers += fmt::format("{}{}", fingers.empty() ? "" : ", ", id);
    }
    const std::string subject =
        seen.isEmpty()
            ? "gesture that nobody saw"
            : fmt::format("gesture of {} {}{}", seen.count() == 1 ? "finger" : "fingers", fingers, panel.name);
    bool explained = false;
    for (const Record& record : result.records) {
        if (record.outcome != RecordOutcome::Cancelled) continue;
        explained = true;
        panel.cancelledLast.emplace(record.filter, record.rule);
        const bool again = before.contains({record.filter, record.rule}) && record.rule != "folding";
        if (!again) add({call.when, Outcome::Cancelled, subject, "", {call.device, seen, {}}}, &record);
    }
    if (!explained) add({call.when, Outcome::Cancelled, subject, "", {call.device, seen, {}}}, nullptr);
}

/// Of a frame: a key that waited for its finger waits no longer.
void DecisionLog::onHeldKey(const Record& record) {
    const bool sent = record.outcome == RecordOutcome::SentAgain;
    if (!sent && record.outcome != RecordOutcome::Dropped) return;
    ++(sent ? mSummary.keysReSent : mSummary.keysDropped);
    const std::string subject = fmt::format("key {}{}", *record.key, sent ? " down and up" : "");
    add({record.when, sent ? Outcome::ReSent : Outcome::Dropped, subject, "", {{}, {}, record.key}}, &record);
}

void DecisionLog::onKey(const ProcessKey& call, const CallResult& result) {
    const bool consumed = result.keyResult.value_or(0) != 0;
    if (!call.down) {
        const auto down = mConsumedByKeyDown.find({call.device, call.keyCode});
        const bool asExpected = down != mConsumedByKeyDown.end() && down->second == consumed;
        if (down != mConsumedByKeyDown.end()) mConsumedByKeyDown.erase(down);
        if (asExpected) return;  // shares the outcome of its key-down
    }
    const auto found = std::find_if(result.records.begin(), result.records.end(),
                                    [](const Record& record) { return record.key.has_value(); });
    const Record* why = found == result.records.end() ? nullptr : &*found;
    const Outcome outcome = outcomeOfKey(why, consumed);
    if (call.down) {
        ++(consumed ? mSummary.keysConsumed : mSummary.keysDispatched);
        mSummary.keysHeldBack += outcome == Outcome::HeldBack;
        mConsumedByKeyDown[{call.device, call.keyCode}] = consumed;
    }
    add({call.when,
         outcome,
         fmt::format("key {} {}", call.keyCode, call.down ? "down" : "up"),
         "",
         {call.device, {}, call.keyCode}},
        why);
}

Summary DecisionLog::summary() const {
    Summary summary = mSummary;
    for (const auto& [device, panel] : mPanels) {
        for (const auto& [id, finger] : panel.fingers) summary.fingers.add(fateOf(finger), finger.late);
    }
    return summary;
}

}  // namespace refhost

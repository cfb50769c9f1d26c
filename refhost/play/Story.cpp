#include "refhost/play/Story.h"

#include <fmt/format.h>

#include <string_view>

namespace refhost {

namespace {

using android::BitSet32;
using android::NotifyKeyArgs;

/// The pointer id that a log line speaks of (`id=3`), if any.
std::optional<uint32_t> idIn(std::string_view text) {
    const size_t at = text.find("id=");
    if (at == std::string_view::npos) return std::nullopt;
    uint32_t id = 0;
    size_t digits = at + 3;
    for (; digits < text.size() && '0' <= text[digits] && text[digits] <= '9' && id < 100; ++digits) {
        id = id * 10 + static_cast<uint32_t>(text[digits] - '0');
    }
    return digits > at + 3 ? std::optional(id) : std::nullopt;
}

bool says(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

/// The lines of the first call, which reads the properties: about the filter, not about a finger or a key.
bool isOnStartup(std::string_view text) {
    return text.starts_with("invalid config value:") || text.starts_with("enabledAbt:") ||
           text.starts_with("version: ");
}

/// The first line of this call for which `wanted` holds, or nothing.
template <typename Wanted>
std::string words(const CallResult& result, Wanted wanted) {
    for (const LogEntry& entry : result.log) {
        if (wanted(entry.text)) return entry.text;
    }
    return "";
}

/// The filter's line on putting this finger back where it landed.
std::string wordsOnRestoring(const CallResult& result, uint32_t id) {
    return words(result, [id](std::string_view text) { return idIn(text) == id && says(text, "compensate point("); });
}

/// The first of what the filter says about a finger is the decision; what follows are its consequences. Putting it back
/// goes before all.
std::string wordsOnFinger(const CallResult& result, uint32_t id) {
    std::string restoring = wordsOnRestoring(result, id);
    if (!restoring.empty()) return restoring;
    return words(result, [id](std::string_view text) { return idIn(text) == id && !says(text, "Cancel "); });
}

std::string wordsOnCancel(const CallResult& result) {
    return words(result, [](std::string_view text) { return says(text, ", cancel it") || says(text, "Cancel "); });
}

/// The last line of a key says what became of it; where that is an event key taken, the line before says why.
std::string wordsOnKey(const CallResult& result) {
    std::vector<std::string_view> said;
    for (const LogEntry& entry : result.log) {
        if (!isOnStartup(entry.text)) said.push_back(entry.text);
    }
    if (said.empty()) return "";
    const size_t last = said.size() - 1;
    return std::string(last > 0 && said[last].ends_with(" down filtered") ? said[last - 1] : said[last]);
}

std::string fingerAt(uint32_t id, int32_t x, int32_t y) { return fmt::format("finger {} at ({}, {})", id, x, y); }

}  // namespace

const std::vector<Decision>& Story::tell(const TraceLine& line, const CallResult& result) {
    mDecisions.clear();
    ++mSummary.lines;
    if (result.durationNs) mSummary.calls.add(*result.durationNs);
    for (const LogEntry& entry : result.log) {
        const bool off = says(entry.text, "invalid config value:") || says(entry.text, "configure exceeds the limits");
        if (off) mSummary.filterOff = entry.text;
    }
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) tellFrame(*frame, result);
    if (const auto* key = std::get_if<ProcessKey>(&line.event)) tellKey(*key, result);
    return mDecisions;
}

void Story::add(int64_t when, Fate fate, std::string subject, std::string words) {
    mDecisions.push_back({when, fate, std::move(subject), std::move(words)});
}

void Story::tellFrame(const ProcessRawTouches& call, const CallResult& result) {
    ++mSummary.frames;
    mSummary.pointersJudged += call.ids.count();
    mSummary.pointersRemoved += result.frame.removed.count();

    tellLifted(call);
    const BitSet32 passed = {call.ids.value & ~result.frame.removed.value};
    // A cancel of the sensor's empties the frame: its fingers go with their gesture, they are not held back as well.
    const bool emptied = !result.requests.cancelled.empty() && passed.isEmpty();
    for (uint32_t id : call.ids) {
        const auto* came = call.frame.find(id);
        if (came == nullptr) continue;
        if (!emptied) tellFinger(id, call, result);
        mLastPlace[id] = {came->x, came->y};
    }
    tellCancel(call, passed, result);
    tellHeldKey(call, result);
    mDown = call.ids;
    mPassed = passed;
    mEverPassed.value = (mEverPassed.value & call.ids.value) | passed.value;
    mTouching = !call.frame.touchingIdBits.isEmpty();
    if (!mTouching) mGestureCancelled = false;
}

void Story::tellFinger(uint32_t id, const ProcessRawTouches& call, const CallResult& result) {
    const auto& came = *call.frame.find(id);
    const bool passed = !result.frame.removed.hasBit(id);
    const bool landed = !mDown.hasBit(id);
    if (!landed && passed == mPassed.hasBit(id)) return;

    const std::string subject = fingerAt(id, came.x, came.y);
    const std::string said = wordsOnFinger(result, id);
    if (!passed) return add(call.when, Fate::HeldBack, subject, said);
    if (landed) return add(call.when, Fate::Kept, subject, said);
    if (says(said, "compensate point(")) {
        ++mSummary.restored;
        const auto* back = result.frame.frame.find(id);
        return add(call.when, Fate::Restored, back != nullptr ? fingerAt(id, back->x, back->y) : subject, said);
    }
    add(call.when, Fate::LetThrough, subject, said);
}

/// The filter may ask for the same cancel in frame after frame; the first of a run is the one that changes something.
void Story::tellCancel(const ProcessRawTouches& call, BitSet32 passed, const CallResult& result) {
    const bool again = mCancelledLast;
    mCancelledLast = !result.requests.cancelled.empty();
    if (!mCancelledLast) return;
    mSummary.cancelRequests += result.requests.cancelled.size();
    if (!mGestureCancelled) ++mSummary.gesturesCancelled;
    mGestureCancelled = true;
    if (again) return;

    std::string fingers;
    const BitSet32 seen = {(mPassed.value | passed.value) & call.ids.value};
    for (uint32_t id : seen) fingers += fmt::format("{}{}", fingers.empty() ? "" : ", ", id);
    const std::string subject =
        seen.isEmpty() ? "gesture that nobody saw"
                       : fmt::format("gesture of {} {}", seen.count() == 1 ? "finger" : "fingers", fingers);
    add(call.when, Fate::Cancelled, subject, wordsOnCancel(result));
}

void Story::tellLifted(const ProcessRawTouches& call) {
    for (uint32_t id : BitSet32{mDown.value & ~call.ids.value}) {
        if (mEverPassed.hasBit(id)) continue;
        add(call.when, Fate::Lost, fingerAt(id, mLastPlace[id][0], mLastPlace[id][1]), "");
    }
}

void Story::tellHeldKey(const ProcessRawTouches& call, const CallResult& result) {
    for (const NotifyKeyArgs& key : result.frame.keys) {
        if (key.action != NotifyKeyArgs::kActionDown) continue;
        ++mSummary.keysReSent;
        mHeldKey.reset();
        add(call.when, Fate::ReSent, fmt::format("key {} down and up", key.keyCode),
            words(result, [](std::string_view text) { return says(text, "handlePendingKey, re-dispatch"); }));
    }
    if (!mHeldKey) return;
    const std::string restored = words(result, [](std::string_view text) { return says(text, "compensate point("); });
    const bool newTouch = !mTouching && !call.frame.touchingIdBits.isEmpty();  // it waited for the one before
    if (restored.empty() && !newTouch) return;
    ++mSummary.keysDropped;
    add(call.when, Fate::Dropped, fmt::format("key {}", *mHeldKey), restored);
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
    const bool heldBack = call.down && consumed && !words(result, [](std::string_view text) {
                                                        return says(text, "delayDispatchKey delay dispatch the key:");
                                                    }).empty();
    if (call.down) {
        ++(consumed ? mSummary.keysConsumed : mSummary.keysDispatched);
        mSummary.keysHeldBack += heldBack;
        mConsumedByKeyDown[{call.device, call.keyCode}] = consumed;
    }
    if (heldBack) mHeldKey = call.keyCode;
    const Fate fate = heldBack ? Fate::HeldBack : consumed ? Fate::Consumed : Fate::Dispatched;
    add(call.when, fate, fmt::format("key {} {}", call.keyCode, call.down ? "down" : "up"), wordsOnKey(result));
}

}  // namespace refhost

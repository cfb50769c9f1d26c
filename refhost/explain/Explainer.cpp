#include "refhost/explain/Explainer.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

constexpr size_t kLatest = 20;  ///< decisions about a finger that are kept

/// What filters say as they are made, in the first call.
bool isOnMaking(std::string_view text) {
    return text.starts_with("isSupport=") || text.starts_with("sAftConfig.enabled=") ||
           text.starts_with("constructor ") || text == "getInstance";
}

/// What the fold angle's filter says of each frame as long as it does nothing.
constexpr std::string_view kFoldIdle = "mFoldableStateManager not enabled.";

/// What was logged in this call, without the lines on other fingers than the one that the decision is about, and
/// without those that say nothing of it.
std::vector<LogEntry> logOn(const Decision& decision, const CallResult& result) {
    std::vector<LogEntry> log;
    for (const LogEntry& entry : result.log) {
        const std::optional<int32_t> id = numberAfter(entry.text, "id=");
        const bool another = id && *id >= 0 && !decision.about.fingers.isEmpty() &&
                             !decision.about.fingers.hasBit(static_cast<uint32_t>(*id));
        const bool idle = entry.text == kFoldIdle && decision.words != kFoldIdle;
        if (!another && !idle && !isOnMaking(entry.text)) log.push_back(entry);
    }
    return log;
}

}  // namespace

const std::vector<Explained>& Explainer::explain(const TraceLine& line, const CallResult& result) {
    mExplained.clear();
    mNow = line.t.value_or(mNow);
    mFacts.takers.hear(line, result);
    mFacts.fold.hear(line, result);
    if (const LogEntry* moved = lineOf(result, kCoverSensorTag, "handleSensorEvent ")) {
        mFacts.coverSince = mNow;
        mFacts.coverState = numberAfter(moved->text, " state=").value_or(-1);
    }
    mFacts.slide.hear(line, result, mFacts.phone());
    const Decisions& decisions = mStory.tell(line, result);
    const auto* frame = std::get_if<ProcessRawTouches>(&line.event);
    if (frame != nullptr) {
        mFacts.keys.hear(line, result, mFacts.phone());
        see(*frame, result);
    }
    for (const Decision& decision : decisions) explain(decision, result);
    if (frame != nullptr) {
        addComingIn(*frame, result);
        finish(*frame);
    } else {
        mFacts.keys.hear(line, result, mFacts.phone());  // a key is judged by those before it
    }
    return mExplained;
}

void Explainer::see(const ProcessRawTouches& call, const CallResult& result) {
    const bool begins = !mTouching && !call.frame.touchingIdBits.isEmpty();
    mTouching = !call.frame.touchingIdBits.isEmpty();
    const bool inQuestion = mTouching && !begins && call.ids.count() < 2 && wordsOnRestoring(result).empty();
    if (!inQuestion) mFacts.onlyLanding.reset();
    mFacts.lastPanel = call.device;
    for (uint32_t id : call.ids) {
        const auto* came = call.frame.find(id);
        if (came == nullptr) continue;
        const auto [known, isNew] = mFacts.fingers.try_emplace({call.device, id});
        Finger& finger = known->second;
        if (isNew) mSinceLanding[known->first].clear();
        finger.now = {came->x, came->y};
        finger.edge = (came->extraData & android::RawPointerData::Pointer::kOnEdge) != 0;
        finger.passed = !result.frame.removed.hasBit(id);
        finger.inMarkedWindow = mFacts.takers.isInMarkedWindow(call.device, *came);
        if (!finger.passed) finger.taker = mFacts.takers.of(id);
        if (finger.taker == Taker::Sensor) finger.held = mFacts.takers.landed(id);
        const bool inside = mFacts.phone().inArea(came->x, came->y);
        if (begins && inside && call.ids.count() == 1) mFacts.onlyLanding = call.when;
        finger.seenOutside = mFacts.takers.passesSensor(id);
    }
}

void Explainer::explain(const Decision& decision, const CallResult& result) {
    mExplained.push_back({decision, reasonFor(decision, result), logOn(decision, result)});
    if (decision.fate == Fate::HeldBack && decision.about.key) {
        mFacts.keyHeld = decision.when;
        mHeldKey = decision;
    }
    if (decision.fate == Fate::ReSent || decision.fate == Fate::Dropped) mFacts.keyHeld.reset();
}

Reason Explainer::reasonFor(const Decision& decision, const CallResult& result) {
    if (decision.fate == Fate::Noted) return {"surroundings", {}};
    if (decision.fate == Fate::Reported) return reasonForReport(decision);
    if (decision.fate == Fate::Cancelled) return reasonForCancel(decision, mFacts, result);
    if (decision.about.key) return reasonForKey(decision, mFacts, result);
    return reasonForFinger(decision, mFacts.fingers[{decision.about.device, *decision.about.fingers.begin()}], mFacts);
}

/// Whether the story has told in this call that this finger is kept.
bool Explainer::isKept(const Pointer& whose) const {
    return std::any_of(mExplained.begin(), mExplained.end(), [&](const Explained& each) {
        const About& about = each.decision.about;
        return about.device == whose.first && about.fingers.hasBit(whose.second) && each.decision.fate == Fate::Kept;
    });
}

Decision Explainer::stateOf(const Pointer& whose, const Finger& finger, int64_t when, std::string words) const {
    const auto& [device, id] = whose;
    About about{device, {}, {}};
    about.fingers.markBit(id);
    return {when, finger.passed ? Fate::Kept : Fate::HeldBack,
            fmt::format("finger {} at ({}, {}){}", id, finger.now.x, finger.now.y, mStory.nameOf(device)),
            std::move(words), about};
}

void Explainer::addComingIn(const ProcessRawTouches& call, const CallResult& result) {
    for (const LogEntry& entry : result.log) {
        const std::optional<int32_t> id = numberAfter(entry.text, "wide range point:id=");
        if (entry.tag != kFrontFpTag || !id || *id < 0) continue;
        const auto finger = mFacts.fingers.find({call.device, static_cast<uint32_t>(*id)});
        if (finger == mFacts.fingers.end() || !finger->second.passed || isKept(finger->first)) continue;
        explain(stateOf(finger->first, finger->second, call.when, entry.text), result);
    }
}

/// Keeps what was decided, and forgets who has lifted.
void Explainer::finish(const ProcessRawTouches& call) {
    for (const Explained& each : mExplained) {
        for (uint32_t id : each.decision.about.fingers) {
            std::vector<Explained>& known = mSinceLanding[{call.device, id}];
            if (known.size() == kLatest) known.erase(known.begin());
            known.push_back(each);
        }
    }
    for (auto each = mFacts.fingers.begin(); each != mFacts.fingers.end();) {
        const bool lifted = each->first.first == call.device && !call.ids.hasBit(each->first.second);
        if (lifted) mSinceLanding.erase(each->first);
        each = lifted ? mFacts.fingers.erase(each) : std::next(each);
    }
}

std::optional<Explained> Explainer::keyAt(int64_t when) const {
    if (!mFacts.keyHeld) return std::nullopt;
    Explained key{mHeldKey, reasonToWait(when, mFacts), {}};
    key.decision.when = when;
    key.decision.words = fmt::format(
        "(since {:.3f} s: sent again when its finger lifts or a second one lands, dropped when it is restored)",
        static_cast<double>(*mFacts.keyHeld) / 1e9);
    return key;
}

std::vector<OnGlass> Explainer::fingersAt(int64_t when) const {
    std::vector<OnGlass> all;
    for (const auto& [whose, finger] : mFacts.fingers) {
        const auto decided = mSinceLanding.find(whose);
        all.push_back({{stateOf(whose, finger, when, ""), reasonToStay(when, whose.first, finger, mFacts), {}},
                       decided == mSinceLanding.end() ? std::vector<Explained>() : decided->second});
    }
    return all;
}

}  // namespace refhost

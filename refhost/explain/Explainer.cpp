#include "refhost/explain/Explainer.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <string_view>

namespace refhost {

namespace {

constexpr size_t kLatest = 20;  ///< decisions about a finger that are kept

/// The pointer that a line of the log names, if it names one.
std::optional<uint32_t> pointerNamedIn(std::string_view text) {
    constexpr std::string_view kName = "id=";
    const size_t at = text.find(kName);
    uint32_t id = 0;
    if (at == std::string_view::npos) return std::nullopt;
    const char* begin = text.data() + at + kName.size();
    return std::from_chars(begin, text.data() + text.size(), id).ec == std::errc() ? std::optional(id) : std::nullopt;
}

/// What the filter that decided logged in this call, without its lines on other pointers. Of a decision without a
/// message: what was logged on its pointers.
std::vector<LogEntry> logOn(const Decision& decision, const CallResult& result) {
    const auto spoken = std::find_if(result.log.begin(), result.log.end(), [&](const LogEntry& entry) {
        return !decision.message.empty() && entry.text == decision.message;
    });
    std::vector<LogEntry> log;
    for (const LogEntry& entry : result.log) {
        const std::optional<uint32_t> named = pointerNamedIn(entry.text);
        const bool isNamed = named && decision.target.pointers.hasBit(*named);
        const bool isOfAnother = named && !decision.target.pointers.isEmpty() && !isNamed;
        const bool isOfFilter = spoken != result.log.end() && entry.tag == spoken->tag;
        if (isNamed || (isOfFilter && !isOfAnother)) log.push_back(entry);
    }
    return log;
}

}  // namespace

const std::vector<Explained>& Explainer::onLine(const TraceLine& line, const CallResult& result) {
    mExplained.clear();
    for (const Decision& decision : mLog.onLine(line, result)) {
        mExplained.push_back({decision, logOn(decision, result)});
        const bool isKey = decision.target.key.has_value();
        if (isKey && decision.outcome == Outcome::HeldBack) mWaitingKey = mExplained.back();
        if (decision.outcome == Outcome::ReSent || decision.outcome == Outcome::Dropped) mWaitingKey.reset();
    }
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) onFrame(*frame, result);
    return mExplained;
}

void Explainer::onFrame(const ProcessRawTouches& call, const CallResult& result) {
    addSpoken(call, result);
    std::erase_if(mDown, [&](const auto& each) {
        const auto& [device, id] = each.first;
        return device == call.device && !call.ids.hasBit(id);
    });
    remember(call, result);
}

/// Where a filter says in its own words why a finger passes, and nothing has changed for the finger.
void Explainer::addSpoken(const ProcessRawTouches& call, const CallResult& result) {
    for (const Record& record : result.records) {
        if (record.outcome != RecordOutcome::Passed || record.message.empty() || !record.pointer) continue;
        const bool isShown = std::any_of(mExplained.begin(), mExplained.end(), [&](const Explained& each) {
            return each.decision.target.pointers.hasBit(*record.pointer);
        });
        if (isShown || result.frame.removed.hasBit(*record.pointer)) continue;
        const Decision decision = stateOf(*record.pointer, call, result, &record);
        mExplained.push_back({decision, logOn(decision, result)});
    }
}

void Explainer::remember(const ProcessRawTouches& call, const CallResult& result) {
    for (uint32_t id : call.ids) {
        const Record* removal = removalOf(result.records, id);
        const Record* restoration = restorationOf(result.records, id);
        const Record* why = removal != nullptr ? removal : restoration;
        if (why == nullptr) why = passageOf(result.records, id, "");
        const Decision state = stateOf(id, call, result, why);
        mDown[{call.device, id}].latest = Explained{state, {}};
    }
    for (const Explained& each : mExplained) {
        for (uint32_t id : each.decision.target.pointers) {
            const auto down = mDown.find({call.device, id});
            if (down == mDown.end()) continue;
            std::vector<Explained>& known = down->second.decisions;
            if (known.size() == kLatest) known.erase(known.begin());
            known.push_back(each);
        }
    }
}

/// How a finger fares in this frame, with the record that says why.
Decision Explainer::stateOf(uint32_t id, const ProcessRawTouches& call, const CallResult& result,
                            const Record* why) const {
    Decision state{.when = call.when,
                   .outcome = result.frame.removed.hasBit(id) ? Outcome::HeldBack : Outcome::Kept,
                   .target = {call.device, {}, {}}};
    state.target.pointers.markBit(id);
    const auto* came = call.frame.find(id);
    if (came != nullptr) {
        state.subject = fmt::format("finger {} at ({}, {}){}", id, came->x, came->y, mLog.nameOf(call.device));
    }
    if (why == nullptr) return state;
    state.message = why->message;
    state.filter = why->filter;
    state.rule = why->rule;
    state.measurements = why->measurements;
    return state;
}

std::vector<FingerDown> Explainer::fingersDown() const {
    std::vector<FingerDown> all;
    for (const auto& [whose, history] : mDown) all.push_back({*history.latest, history.decisions});
    return all;
}

}  // namespace refhost

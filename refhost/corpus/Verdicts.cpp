#include "refhost/corpus/Verdicts.h"

#include <fmt/format.h>

#include "refhost/InputError.h"

namespace refhost {

namespace {

std::string secondsOf(const Decision& decision) {
    return fmt::format("{:.3f}", static_cast<double>(decision.when) / 1e9);
}

/// The text of a report is what the host gets, so it is part of the fate.
std::string fateOf(const Decision& decision) {
    std::string fate(wordOf(decision.outcome));
    if (decision.outcome == Outcome::Reported) fate += " " + onOneLine(decision.message);
    return fate;
}

}  // namespace

void VerdictCollector::hear(const TraceLine& line, const Decisions& decisions) {
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) forgetLifted(*frame);
    for (const Decision& decision : decisions) {
        if (decision.outcome == Outcome::Noted) continue;
        decision.target.pointers.isEmpty() ? addToKeys(decision) : addToFingers(decision);
    }
}

/// A finger is forgotten as the next one lands with its id, not as it lifts: with the lift, its last fate is told.
void VerdictCollector::forgetLifted(const ProcessRawTouches& call) {
    android::BitSet32& down = mDown[call.device];
    for (uint32_t id : android::BitSet32{call.ids.value & ~down.value}) mFingers.erase({call.device, id});
    down = call.ids;
}

void VerdictCollector::addToFingers(const Decision& decision) {
    for (uint32_t id : decision.target.pointers) {
        const auto [known, isNew] = mFingers.try_emplace({decision.target.device, id}, mVerdicts.size());
        isNew ? open(decision) : goOn(known->second, decision);
    }
}

void VerdictCollector::addToKeys(const Decision& decision) {
    const bool endsWaiting = decision.outcome == Outcome::ReSent || decision.outcome == Outcome::Dropped;
    if (endsWaiting && mWaiting && mWaiting->first == decision.target.key) {
        goOn(mWaiting->second, decision);
        mWaiting.reset();
        return;
    }
    if (decision.outcome == Outcome::HeldBack) mWaiting = {decision.target.key, mVerdicts.size()};
    open(decision);
}

void VerdictCollector::open(const Decision& decision) {
    mVerdicts.push_back({secondsOf(decision), decision.subject, fateOf(decision)});
}

void VerdictCollector::goOn(size_t verdict, const Decision& decision) {
    mVerdicts[verdict].fate += fmt::format(", {} at {} s", fateOf(decision), secondsOf(decision));
}

}  // namespace refhost

#include "refhost/check/PointerLife.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace refhost {

namespace {

/// How the names of designed findings begin, by the filter that removes the pointer; docs/check.md says what each
/// means.
std::string_view prefixOf(const Record& removal) {
    if (removal.filter == "slide-cover") return "cover";
    if (removal.filter == "fold-angle") return "fold";
    if (removal.filter != "front-fingerprint") return removal.filter;
    return removal.rule == "gesture-cancelled" ? "sensor-cancel" : "held-back";
}

std::string_view endingOf(int course) {
    constexpr std::string_view kEndings[] = {"then-late", "then-restored", "while-down", "then-again",
                                             "then-new-gesture"};
    return kEndings[course];
}

const Record* recordOf(const CallResult& result, uint32_t id, std::string_view filter) {
    for (const Record& record : result.records) {
        if (record.pointer == id && record.filter == filter) return &record;
    }
    return nullptr;
}

/// A hovering finger is none on the glass, whatever else is said of it.
bool isDown(const ProcessRawTouches& call, uint32_t id) {
    const auto* finger = call.frame.touchingIdBits.hasBit(id) ? call.frame.find(id) : nullptr;
    return finger != nullptr && finger->isHovering == 0;
}

}  // namespace

void Absence::add(const Record* removal, uint32_t line) {
    if (removal == nullptr) {
        if (unexplained == 0) unexplained = line;
    } else if (remover.empty()) {
        remover = prefixOf(*removal);
    }
}

void PointerLife::check(const ProcessRawTouches& call, const CallResult& result) {
    const Frame frame{call, result};
    Hand& hand = mHands[call.device];
    const bool wasOut =
        std::any_of(hand.lives.begin(), hand.lives.end(), [](const auto& each) { return each.second.out; });
    lift(frame, hand);
    for (uint32_t id : call.frame.touchingIdBits) {
        if (!isDown(call, id)) continue;
        const auto [life, lands] = hand.lives.try_emplace(id);
        if (!lands) continue;
        life->second.landed = call.when;
        life->second.line = result.line;
    }
    if (!result.requests.cancelled.empty()) cancel(frame, hand);
    for (auto& [id, life] : hand.lives) follow(frame, id, life);
    followGesture(frame, hand, wasOut);
}

void PointerLife::lift(const Frame& frame, Hand& hand) {
    for (auto each = hand.lives.begin(); each != hand.lives.end();) {
        const auto& [id, life] = *each;
        if (isDown(frame.call, id)) {
            ++each;
            continue;
        }
        if (!life.seen && life.absence.unexplained != 0) {
            tell(frame, "pointer-lost", Course::Late, life.absence,
                 fmt::format("finger {} landed at line {} and never came out", id, life.line));
        }
        each = hand.lives.erase(each);
    }
}

/// A finger that lands with the cancel is out where no filter takes it.
void PointerLife::cancel(const Frame& frame, Hand& hand) {
    hand.torn.reset();
    for (auto& [id, life] : hand.lives) {
        if (!life.out && life.cancelledBy.empty() && !frame.out(id)) continue;
        for (const Record& record : frame.result.records) {
            if (record.outcome == RecordOutcome::Cancelled) life.cancelledBy.insert(record.filter);
        }
        if (life.cancelledBy.empty()) life.cancelledBy.insert("");  // a cancel without a record
        life.cancelLine = frame.result.line;
    }
}

void PointerLife::follow(const Frame& frame, uint32_t id, Life& life) {
    const bool out = frame.out(id);
    if (!out) {
        life.absence.add(removalOf(frame.result.records, id), frame.result.line);
        if (life.out && life.cancelledBy.empty()) leave(frame, id, life);
    } else if (!life.cancelledBy.empty()) {
        comeOutAfterCancel(frame, id, life);
    } else if (!life.out) {
        comeOut(frame, id, life);
    }
    if (out) life.absence = {};
    life.seen = life.seen || out;
    life.out = out;
}

void PointerLife::leave(const Frame& frame, uint32_t id, Life& life) {
    tell(frame, "pointer-torn", Course::Torn, life.absence,
         fmt::format("pointer {} leaves while its finger is down", id));
}

void PointerLife::comeOut(const Frame& frame, uint32_t id, Life& life) {
    if (life.line == frame.result.line) return;  // lands
    const bool restored = restorationOf(frame.result.records, id) != nullptr;
    if (life.seen) {
        return tell(frame, "pointer-again", restored ? Course::Restored : Course::Again, life.absence,
                    fmt::format("pointer {} comes out again, its finger has been down all the time", id));
    }
    tell(frame, "pointer-late", restored ? Course::Restored : Course::Late, life.absence,
         fmt::format("pointer {} comes out {} ms after its finger landed at line {}", id,
                     (frame.call.when - life.landed) / 1'000'000, life.line));
}

void PointerLife::comeOutAfterCancel(const Frame& frame, uint32_t id, Life& life) {
    const std::string_view passing = passingAfterCancel(frame, id, life);
    Breach breach{frame.result.line, "pointer-after-cancel",
                  life.cancelLine == frame.result.line
                      ? fmt::format("pointer {} comes out in the frame that cancels its gesture", id)
                      : fmt::format("pointer {} comes out again after its gesture was cancelled at line {}", id,
                                    life.cancelLine)};
    life.cancelledBy.clear();
    if (passing.empty()) return mBreaches.push_back(std::move(breach));
    mDesigned.push_back({std::move(breach), std::string(passing)});
}

/// Why a pointer of a cancelled gesture is out, by what the filters that cancelled it have recorded in this frame;
/// empty where one of them says that it is not, or none is known.
std::string_view PointerLife::passingAfterCancel(const Frame& frame, uint32_t id, const Life& life) {
    if (removalOf(frame.result.records, id) != nullptr) return "";
    if (life.cancelledBy.contains("slide-cover")) {
        const Record* cover = recordOf(frame.result, id, "slide-cover");
        return cover == nullptr ? "cover-forgot" : cover->rule;
    }
    if (life.cancelledBy.contains("fold-angle")) return "fold-forgot";
    if (life.cancelledBy.contains("front-fingerprint")) return "sensor-cancel-passes";
    return life.cancelledBy.contains("abnormal-touch") ? "abnormal-touch-passes" : "";
}

/// @param wasOut whether some pointer was out in the frame before
void PointerLife::followGesture(const Frame& frame, Hand& hand, bool wasOut) {
    if (hand.lives.empty()) return hand.torn.reset();
    bool isOut = false;
    bool restored = false;
    for (const auto& [id, life] : hand.lives) {
        isOut = isOut || life.out;
        restored = restored || (life.out && restorationOf(frame.result.records, id) != nullptr);
    }
    if (isOut && hand.torn) {
        if (!restored) {
            tell(frame, "gesture-torn", Course::NewGesture, *hand.torn,
                 "all pointers had left while fingers were down, and now some come out again");
        }
        hand.torn.reset();
    }
    if (!wasOut || isOut) return;
    for (const auto& [id, life] : hand.lives) {
        if (!life.seen || !life.cancelledBy.empty()) continue;
        if (!hand.torn) hand.torn.emplace();
        if (life.absence.remover.empty()) hand.torn->unexplained = frame.result.line;
        if (hand.torn->remover.empty()) hand.torn->remover = life.absence.remover;
    }
}

/// A breach where some frame of the absence has no record, else designed.
void PointerLife::tell(const Frame& frame, std::string_view rule, Course course, const Absence& absence,
                       std::string text) {
    if (absence.unexplained != 0) {
        text += fmt::format("; no filter has recorded why at line {}", absence.unexplained);
        return mBreaches.push_back({frame.result.line, rule, std::move(text)});
    }
    const std::string_view remover = course == Course::Restored ? "held-back" : absence.remover;
    mDesigned.push_back({{frame.result.line, rule, std::move(text)},
                         fmt::format("{}-{}", remover, endingOf(static_cast<int>(course)))});
}

}  // namespace refhost

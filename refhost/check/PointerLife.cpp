#include "refhost/check/PointerLife.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace refhost {

namespace {

constexpr std::string_view kRestored = "held-back-then-restored";

/// By who takes a pointer and what becomes of it; docs/check.md says what each means.
constexpr std::string_view kNames[][5] = {
    {},
    {"held-back-then-late", kRestored, "held-back-while-down", "held-back-then-again", "held-back-then-new-gesture"},
    {"sensor-cancel-then-late", kRestored},  // whoever is out goes with the cancel
    {"cover-then-late", kRestored, "cover-while-down", "cover-then-again", "cover-then-new-gesture"},
    {"notch-then-late", kRestored, "notch-while-down", "notch-then-again", "notch-then-new-gesture"},
    {"fold-then-late", kRestored, "fold-while-down", "fold-then-again", "fold-then-new-gesture"},
};

constexpr std::string_view kPassings[] = {
    "", "sensor-cancel-passes", "abnormal-touch-passes", "cover-settled", "cover-idle", "cover-forgot", "fold-forgot"};

/// A hovering finger is none on the glass, whatever else is said of it.
bool isDown(const ProcessRawTouches& call, uint32_t id) {
    const auto* finger = call.frame.touchingIdBits.hasBit(id) ? call.frame.find(id) : nullptr;
    return finger != nullptr && finger->isHovering == 0;
}

Cancellers both(const Cancellers& one, const Cancellers& other) {
    return {one.sensor || other.sensor, one.abnormal || other.abnormal, one.cover || other.cover,
            one.fold || other.fold};
}

}  // namespace

void Absence::add(Taker by, uint32_t line) {
    if (taker == Taker::Nobody) taker = by;
    if (by == Taker::Nobody && unexplained == 0) unexplained = line;
}

void PointerLife::check(const ProcessRawTouches& call, const CallResult& result, const Takers& takers) {
    const Frame frame{call, result, takers};
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
        if (!life.out && !life.cancelled && !frame.out(id)) continue;
        life.cancelled = both(life.cancelled.value_or(Cancellers{}), frame.takers.cancellers());
        life.cancelLine = frame.result.line;
    }
}

void PointerLife::follow(const Frame& frame, uint32_t id, Life& life) {
    const bool out = frame.out(id);
    if (!out) {
        life.absence.add(frame.takers.of(id), frame.result.line);
        if (life.out && !life.cancelled) leave(frame, id, life);
    } else if (life.cancelled) {
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
    const bool restored = frame.takers.restores(id);
    if (life.seen) {
        return tell(frame, "pointer-again", restored ? Course::Restored : Course::Again, life.absence,
                    fmt::format("pointer {} comes out again, its finger has been down all the time", id));
    }
    tell(frame, "pointer-late", restored ? Course::Restored : Course::Late, life.absence,
         fmt::format("pointer {} comes out {} ms after its finger landed at line {}", id,
                     (frame.call.when - life.landed) / 1'000'000, life.line));
}

void PointerLife::comeOutAfterCancel(const Frame& frame, uint32_t id, Life& life) {
    const Passing passing = frame.takers.passing(*life.cancelled);
    Breach breach{frame.result.line, "pointer-after-cancel",
                  life.cancelLine == frame.result.line
                      ? fmt::format("pointer {} comes out in the frame that cancels its gesture", id)
                      : fmt::format("pointer {} comes out again after its gesture was cancelled at line {}", id,
                                    life.cancelLine)};
    life.cancelled.reset();
    if (passing == Passing::Not) return mBreaches.push_back(std::move(breach));
    mDesigned.push_back({std::move(breach), kPassings[static_cast<size_t>(passing)]});
}

/// @param wasOut whether some pointer was out in the frame before
void PointerLife::followGesture(const Frame& frame, Hand& hand, bool wasOut) {
    if (hand.lives.empty()) return hand.torn.reset();
    bool isOut = false;
    bool restored = false;
    for (const auto& [id, life] : hand.lives) {
        isOut = isOut || life.out;
        restored = restored || (life.out && frame.takers.restores(id));
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
        if (!life.seen || life.cancelled) continue;
        if (!hand.torn) hand.torn.emplace();
        hand.torn->add(life.absence.taker, frame.result.line);
    }
}

/// A breach where some frame of the absence is nobody's, else designed.
void PointerLife::tell(const Frame& frame, std::string_view rule, Course course, const Absence& absence,
                       std::string text) {
    if (absence.unexplained != 0) {
        text += fmt::format("; no filter had a reason at line {}", absence.unexplained);
        return mBreaches.push_back({frame.result.line, rule, std::move(text)});
    }
    mDesigned.push_back({{frame.result.line, rule, std::move(text)},
                         kNames[static_cast<size_t>(absence.taker)][static_cast<size_t>(course)]});
}

}  // namespace refhost

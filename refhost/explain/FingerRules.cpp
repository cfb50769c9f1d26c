#include <algorithm>
#include <cstdlib>

#include "refhost/explain/Rules.h"
#include "refhost/explain/Thresholds.h"
#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

struct Cause {
    std::string_view flag;     ///< in the filter's words
    std::string_view measure;  ///< by which the same is known where it says nothing
    std::string_view rule;
};

constexpr Cause kCauses[] = {
    {"FPRecently=1", "since a finger on the sensor", "finger-on-sensor"},
    {"enrolling=1", "since enrolment", "enrolment"},
    {"identifying=1", "since identification", "identification"},
    {"onEdge=1", "on the edge in landscape", "edge-in-landscape"},
};

bool inArea(const Finger& finger, const Facts& facts) { return facts.phone().inArea(finger.now.x, finger.now.y); }

Measures doubts(int64_t when, const Finger& finger, const Facts& facts) {
    return facts.keys.doubts(toMs(when), facts.phone().landscape(), finger.edge);
}

Measures place(const Finger& finger, const Facts& facts) {
    if (!facts.phone().area()) return {};
    const auto& [left, top, right, bottom] = *facts.phone().area();
    const auto range = [](int32_t least, int32_t most) {
        return Range{static_cast<double>(least), static_cast<double>(most)};
    };
    return {{"x in the area", static_cast<double>(finger.now.x), range(left, right), ""},
            {"y in the area", static_cast<double>(finger.now.y), range(top, bottom), ""}};
}

/// What a held-back finger needs to come back.
Measures gesture(int64_t when, const Finger& finger, const Facts& facts) {
    if (!finger.held) return {};
    const double up = static_cast<double>(finger.held->y) - finger.now.y;
    const double sideways = std::abs(static_cast<double>(finger.held->x) - finger.now.x);
    const auto heldFor = static_cast<double>(toMs(when) - finger.held->ms);
    Measures all{{"moved up", up, kMovedUp, ""},
                 {"moved sideways", sideways, kMovedSideways, ""},
                 {"held back for", heldFor, heldFor < 0 ? kHeldBackwards : kHeldFor, "ms"}};
    for (const Measure& where : place(finger, facts)) all.push_back(where);
    return all;
}

/// Fingers of a cancelled gesture pass again once the cover has settled.
Measures settling(int64_t when, const Facts& facts) {
    if (facts.coverState != 1) return {};
    const double settled = static_cast<double>(when - facts.coverSince) / 1e6;
    return {{"cover in state 1 for", settled, kCoverSettledFor, "ms"}};
}

Measures notch(const DeviceRef& device, const Finger& finger, const Facts& facts) {
    const std::optional<int32_t> height = facts.phone().notchOn(device);
    if (!height) return {};
    return {{"y in the notch band", static_cast<double>(finger.now.y), {0, static_cast<double>(*height)}, ""}};
}

bool inNotch(const DeviceRef& device, const Finger& finger, const Facts& facts) {
    const Measures band = notch(device, finger, facts);
    return !band.empty() && band.front().holds();
}

/// The filter speaks once of a pointer id in a sequence; after that the measures alone tell the cause. Of a recent
/// finger on the sensor it also speaks in landscape, where that takes no part.
Reason heldAtSensor(int64_t when, std::string_view words, const Finger& finger, const Facts& facts) {
    const Measures all = doubts(when, finger, facts);
    const bool told = says(words, "restraint current point(");
    for (const Cause& cause : kCauses) {
        const auto measure =
            std::find_if(all.begin(), all.end(), [&](const Measure& each) { return each.name == cause.measure; });
        if (measure == all.end()) continue;
        if (told ? says(words, cause.flag) : measure->holds()) return {cause.rule, all};
    }
    return {"gesture-cancelled", {}};
}

/// Of a finger that no filter takes.
Reason toPass(int64_t when, const DeviceRef& device, const Finger& finger, const Facts& facts) {
    if (inNotch(device, finger, facts)) {
        return {finger.inMarkedWindow ? "notch-window" : "notch-left-before", notch(device, finger, facts)};
    }
    Reason reason;
    const Measures all = doubts(when, finger, facts);
    if (!facts.phone().area()) {
        reason.rule = "filter-off";
    } else if (!inArea(finger, facts)) {
        reason = {"outside-area", place(finger, facts)};
    } else if (facts.phone().prefersNavigationBar() && !outweighNavigationBar(all)) {
        reason = {"navigation-bar", all};
    } else if (finger.seenOutside) {
        reason = {"wide-range", place(finger, facts)};
    } else {
        reason = {"no-doubt", all};
    }
    for (const Measure& band : notch(device, finger, facts)) reason.measures.push_back(band);
    return reason;
}

Reason toHoldBack(const Decision& decision, const Finger& finger, const Facts& facts) {
    switch (finger.taker) {
        case Taker::Sensor: return heldAtSensor(decision.when, decision.words, finger, facts);
        case Taker::Cover:
            if (says(decision.words, "need to cancel touch.")) return {"cover-moved", {}};
            return {"cover-cancelled", settling(decision.when, facts)};
        case Taker::Notch: return {"notch-band", notch(decision.about.device, finger, facts)};
        case Taker::Fold: return {"folding", {}};
        default: return {"gesture-cancelled", {}};
    }
}

Reason outOfNotch(const DeviceRef& device, const Finger& finger, const Facts& facts) {
    const Measures band = notch(device, finger, facts);
    if (band.empty()) return {"notch-portrait", {}};
    return {finger.inMarkedWindow && inNotch(device, finger, facts) ? "notch-window" : "notch-left", band};
}

/// Of a finger that the front fingerprint filter held back, and does not put back where it landed.
Reason letGoAtSensor(const Decision& decision, const Finger& finger, const Facts& facts) {
    if (facts.phone().area() && !inArea(finger, facts)) {
        return {"left-area-late", gesture(decision.when, finger, facts)};
    }
    return toPass(decision.when, decision.about.device, finger, facts);
}

Reason toLetThrough(const Decision& decision, const Finger& finger, const Facts& facts) {
    switch (finger.taker) {
        case Taker::Sensor: return letGoAtSensor(decision, finger, facts);
        case Taker::Cover:
            if (facts.takers.coverIdle()) return {"cover-idle", {}};
            if (facts.takers.coverSettled()) return {"cover-settled", settling(decision.when, facts)};
            break;
        case Taker::Notch: return outOfNotch(decision.about.device, finger, facts);
        default: break;
    }
    return {"after-cancel", {}};
}

}  // namespace

Reason reasonForFinger(const Decision& decision, const Finger& finger, const Facts& facts) {
    switch (decision.fate) {
        case Fate::Kept:
            if (says(decision.words, "wide range point")) return {"wide-range", place(finger, facts)};
            return toPass(decision.when, decision.about.device, finger, facts);
        case Fate::HeldBack: return toHoldBack(decision, finger, facts);
        case Fate::Restored:
            return {inArea(finger, facts) ? "moved-up" : "left-area", gesture(decision.when, finger, facts)};
        case Fate::LetThrough: return toLetThrough(decision, finger, facts);
        default: break;  // lost
    }
    if (finger.taker != Taker::Sensor) return {"taken-until-lifted", {}};
    return {"no-gesture", gesture(decision.when, finger, facts)};
}

Reason reasonToStay(int64_t when, const DeviceRef& device, const Finger& finger, const Facts& facts) {
    if (finger.passed) {
        Reason reason = toPass(when, device, finger, facts);
        // A doubt that has come up since the last frame is for the next one.
        if (reason.rule == "no-doubt") std::erase_if(reason.measures, [](const Measure& each) { return each.holds(); });
        return reason;
    }
    switch (finger.taker) {
        case Taker::Sensor: return {"no-gesture", gesture(when, finger, facts)};
        case Taker::Cover: return {"cover-cancelled", settling(when, facts)};
        case Taker::Notch: return {"notch-band", notch(device, finger, facts)};
        case Taker::Fold: return {"folding", {}};
        default: return {"gesture-cancelled", {}};
    }
}

}  // namespace refhost

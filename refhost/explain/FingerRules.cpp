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

struct Said {
    std::string_view words;
    std::string_view rule;
};

constexpr Said kTaking[] = {
    {"need to cancel touch.", "cover-moved"},
    {"(the slide cover's filter has cancelled", "cover-cancelled"},
    {"during folding", "folding"},
    {"(in the notch band", "notch-band"},
};

constexpr Said kPassing[] = {
    {"navigationbar", "navigation-bar"},
    {"preferTouchNavigationBar", "navigation-bar"},
    {"(out of the notch band", "notch-left"},
    {"(in the notch band, but", "notch-window"},
    {"(no longer held in landscape", "notch-portrait"},
    {"(the slide cover has been in state 1", "cover-settled"},
    {"(the slide cover's filter is idle", "cover-idle"},
};

std::string_view ruleIn(const Said* first, const Said* last, std::string_view words) {
    for (; first != last; ++first) {
        if (says(words, first->words)) return first->rule;
    }
    return "";
}

bool inArea(const Finger& finger, const Facts& facts) { return facts.phone.inArea(finger.now.x, finger.now.y); }

Measures doubts(int64_t when, const Finger& finger, const Facts& facts) {
    return facts.keys.doubts(toMs(when), facts.phone.landscape(), finger.edge);
}

Measures place(const Finger& finger, const Facts& facts) {
    if (!facts.phone.area()) return {};
    const auto& [left, top, right, bottom] = *facts.phone.area();
    const auto range = [](int32_t least, int32_t most) {
        return Range{static_cast<double>(least), static_cast<double>(most)};
    };
    return {{"x in the area", static_cast<double>(finger.now.x), range(left, right), ""},
            {"y in the area", static_cast<double>(finger.now.y), range(top, bottom), ""}};
}

/// What a held-back finger needs to come back.
Measures gesture(int64_t when, const Finger& finger, const Facts& facts) {
    if (!finger.held) return {};
    const Place& from = finger.held->place;
    const double up = static_cast<double>(from.y) - finger.now.y;
    const double sideways = std::abs(static_cast<double>(from.x) - finger.now.x);
    const auto heldFor = static_cast<double>(toMs(when) - toMs(finger.held->when));
    Measures all{{"moved up", up, kMovedUp, ""},
                 {"moved sideways", sideways, kMovedSideways, ""},
                 {"held back for", heldFor, kHeldFor, "ms"}};
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
    const std::optional<int32_t> height = facts.phone.notchOn(device);
    if (!height) return {};
    return {{"y in the notch band", static_cast<double>(finger.now.y), {0, static_cast<double>(*height)}, ""}};
}

bool inNotch(const DeviceRef& device, const Finger& finger, const Facts& facts) {
    const Measures band = notch(device, finger, facts);
    return !band.empty() && band.front().holds();
}

/// The filter speaks once of a pointer id in a sequence; after that the measures alone tell the cause.
Reason heldAtSensor(int64_t when, std::string_view words, const Finger& finger, const Facts& facts) {
    const Measures all = doubts(when, finger, facts);
    for (const Cause& cause : kCauses) {
        if (says(words, cause.flag)) return {cause.rule, all};
        for (const Measure& measure : all) {
            if (words.empty() && measure.name == cause.measure && measure.holds()) return {cause.rule, all};
        }
    }
    return {"gesture-cancelled", {}};
}

Reason toPass(int64_t when, const DeviceRef& device, const Finger& finger, const Facts& facts) {
    if (inNotch(device, finger, facts)) {
        return {finger.leftNotch ? "notch-left-before" : "notch-window", notch(device, finger, facts)};
    }
    Reason reason;
    if (!facts.phone.area()) {
        reason.rule = "filter-off";
    } else if (!inArea(finger, facts)) {
        reason = {"outside-area", place(finger, facts)};
    } else if (finger.seenOutside) {
        reason = {"wide-range", place(finger, facts)};
    } else {
        reason = {"no-doubt", doubts(when, finger, facts)};
    }
    for (const Measure& band : notch(device, finger, facts)) reason.measures.push_back(band);
    return reason;
}

Reason toHoldBack(const Decision& decision, const Finger& finger, const Facts& facts) {
    const std::string_view rule = ruleIn(std::begin(kTaking), std::end(kTaking), decision.words);
    if (rule.empty()) return heldAtSensor(decision.when, decision.words, finger, facts);
    if (rule == "cover-cancelled") return {rule, settling(decision.when, facts)};
    return {rule, rule == "notch-band" ? notch(decision.about.device, finger, facts) : Measures{}};
}

Reason toLetThrough(const Decision& decision, const Finger& finger, const Facts& facts) {
    const std::string_view rule = ruleIn(std::begin(kPassing), std::end(kPassing), decision.words);
    if (rule.starts_with("notch")) return {rule, notch(decision.about.device, finger, facts)};
    if (rule == "cover-settled") return {rule, settling(decision.when, facts)};
    if (!rule.empty()) return {rule, {}};
    if (holdsBackAtSensor(finger.takenBy) && !inArea(finger, facts)) {
        return {"left-area-late", gesture(decision.when, finger, facts)};
    }
    return {"after-cancel", {}};
}

}  // namespace

bool holdsBackAtSensor(std::string_view rule) {
    for (const Cause& cause : kCauses) {
        if (cause.rule == rule) return true;
    }
    return false;
}

Reason reasonForFinger(const Decision& decision, const Finger& finger, const Facts& facts) {
    switch (decision.fate) {
        case Fate::Kept:
            if (says(decision.words, "preferTouchNavigationBar")) {
                return {"navigation-bar", doubts(decision.when, finger, facts)};
            }
            if (says(decision.words, "wide range point")) return {"wide-range", place(finger, facts)};
            return toPass(decision.when, decision.about.device, finger, facts);
        case Fate::HeldBack: return toHoldBack(decision, finger, facts);
        case Fate::Restored:
            return {inArea(finger, facts) ? "moved-up" : "left-area", gesture(decision.when, finger, facts)};
        case Fate::LetThrough: return toLetThrough(decision, finger, facts);
        default: break;  // lost
    }
    if (!holdsBackAtSensor(finger.takenBy)) return {"taken-until-lifted", {}};
    return {"no-gesture", gesture(decision.when, finger, facts)};
}

Reason reasonToStay(int64_t when, const DeviceRef& device, const Finger& finger, const Facts& facts) {
    if (finger.passed) return toPass(when, device, finger, facts);
    if (finger.takenBy == "notch-band") return {finger.takenBy, notch(device, finger, facts)};
    if (!holdsBackAtSensor(finger.takenBy)) return {"gesture-cancelled", {}};
    return {"no-gesture", gesture(when, finger, facts)};
}

}  // namespace refhost

#include <algorithm>
#include <charconv>

#include "refhost/explain/Rules.h"
#include "refhost/explain/Thresholds.h"
#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

struct Said {
    std::string_view words;
    std::string_view rule;
};

constexpr Said kKeys[] = {
    {"new finger touch down on the FP", "sensor-finger-new"},
    {"TP touch recently", "sensor-finger-explained"},
    {"Start identify finger", "sensor-tells"},
    {"start enroll", "sensor-tells"},
    {"centeral area", "central-area"},
    {"touching nearby the fingerprint", "finger-nearby"},
    {"mark this key should be filtered", "key-announced"},
    {"delay dispatch the key:", "waits-for-finger"},
    {"process fingerprint event", "no-finger"},
};

constexpr int32_t kFirstNotification = 516;
constexpr int32_t kLastNotification = 519;
constexpr int32_t kJudged[] = {66, 501, 502, 511, 512, 513, 514, 515, 601};
constexpr int32_t kMayWait[] = {513, 514, 601};

void add(Measures& measures, const SensorSlide::Size& slide) {
    measures.push_back({"slid along x", slide.width, kSlideWidth, ""});
    measures.push_back({"slid along y", slide.height, kSlideHeight, ""});
}

/// The sizes of a slide over the sensor, as the filter tells them.
void addSlide(Measures& measures, const CallResult& result) {
    const LogEntry* slide = lineOf(result, kFrontFpTag, "may swipe along the X axis");
    if (slide == nullptr) return;
    const auto size = [&](std::string_view name) {
        return static_cast<double>(numberAfter(slide->text, name).value_or(0));
    };
    add(measures, {size("xRange:"), size("yRange:")});
}

/// Of a slide that falls short it tells nothing, and takes the finger for one that rests.
void addShortSlide(Measures& measures, const Facts& facts) {
    Measures slid;
    if (const auto slide = facts.slide.furthest()) add(slid, *slide);
    const bool fellShort = std::any_of(slid.begin(), slid.end(), [](const Measure& each) { return !each.holds(); });
    if (fellShort) measures.insert(measures.end(), slid.begin(), slid.end());
}

/// In landscape, of the last frame: of the first finger in the central area, or else of the first that is not on the
/// sensor.
void addCentralArea(Measures& measures, const Facts& facts) {
    const auto& area = facts.phone().centralArea();
    if (!facts.phone().landscape() || !area) return;
    const Finger* shown = nullptr;
    for (const auto& [whose, finger] : facts.fingers) {
        if (whose.first != facts.lastPanel || facts.phone().inArea(finger.now.x, finger.now.y)) continue;
        const bool inside = area->contains(finger.now.x, finger.now.y);
        if (shown == nullptr || inside) shown = &finger;
        if (inside) break;
    }
    if (shown == nullptr) return;
    const auto range = [](int32_t least, int32_t most) {
        return Range{static_cast<double>(least), static_cast<double>(most)};
    };
    measures.push_back(
        {"x in the central area", static_cast<double>(shown->now.x), range(area->left, area->right), ""});
    measures.push_back(
        {"y in the central area", static_cast<double>(shown->now.y), range(area->top, area->bottom), ""});
}

/// The flags of the finger for which a gesture was cancelled.
uint32_t flagsIn(std::string_view words) {
    constexpr std::string_view kFlags = "extraData=0x";
    const size_t at = words.find(kFlags);
    uint32_t flags = 0;
    if (at == std::string_view::npos) return flags;
    std::from_chars(words.data() + at + kFlags.size(), words.data() + words.size(), flags, 16);
    return flags;
}

/// A key may wait for a finger that landed alone in the area and is still in question, one at a time.
void addLanding(Measures& measures, const Decision& decision, const Facts& facts) {
    const bool mayWait = std::find(std::begin(kMayWait), std::end(kMayWait), decision.about.key) != std::end(kMayWait);
    if (!mayWait || !facts.onlyLanding || facts.keyHeld) return;
    const auto since = static_cast<double>(toMs(decision.when) - toMs(*facts.onlyLanding));
    measures.push_back({"since the finger landed", since, kKeyOfSameFinger, "ms"});
}

/// Which window is in front is asked, and told, only where it decides.
Measures abnormal(uint32_t flags, const Facts& facts, const CallResult& result) {
    using Pointer = android::RawPointerData::Pointer;
    const auto flag = [](std::string_view name, bool set) { return Measure{name, set ? 1.0 : 0.0, kFlagSet, ""}; };
    const auto told = [&](std::string_view part) { return lineOf(result, kFrontFpTag, part) != nullptr; };
    const bool isAbnormal = (flags & Pointer::kAbnormal) != 0;
    Measures all{flag("flagged as abnormal", isAbnormal),
                 flag("flagged as stylus dirty", (flags & Pointer::kStylusDirty) != 0),
                 flag("cancels in every window", facts.phone().inEveryWindow())};
    if (!isAbnormal || facts.phone().inEveryWindow()) return all;
    all.push_back(flag("keyguard in front", told("filtered as keyguard")));
    all.push_back(flag("call window in front", told("filtered as foreground window")));
    return all;
}

Measures waited(int64_t when, const Facts& facts) {
    if (!facts.keyHeld) return {};
    return {{"key held for", static_cast<double>(when - *facts.keyHeld) / 1e6, kKeyHeldFor, "ms"}};
}

std::string_view ruleOf(const Decision& decision, const Facts& facts) {
    for (const Said& said : kKeys) {
        if (says(decision.words, said.words)) return said.rule;
    }
    const int32_t key = decision.about.key.value_or(0);
    if (kFirstNotification <= key && key <= kLastNotification && decision.fate == Fate::Consumed) return "sensor-tells";
    if (!facts.phone().area()) return "filter-off";
    if (!facts.phone().isSensor(decision.about.device)) return "another-device";
    const bool isJudged = std::find(std::begin(kJudged), std::end(kJudged), key) != std::end(kJudged);
    return isJudged ? "as-its-down" : "not-judged";  // of a key-down that is judged, words tell
}

}  // namespace

Reason reasonForKey(const Decision& decision, const Facts& facts, const CallResult& result) {
    if (decision.fate == Fate::ReSent) return {"finger-no-gesture", waited(decision.when, facts)};
    if (decision.fate == Fate::Dropped) {
        return {decision.words.empty() ? "new-touch" : "finger-restored", waited(decision.when, facts)};
    }
    Reason reason{ruleOf(decision, facts), {}};
    if (reason.rule == "no-finger" && lineOf(result, kFrontFpTag, "may swipe along the X axis") != nullptr) {
        reason.rule = "slide-over-sensor";
    }
    addSlide(reason.measures, result);
    if (reason.rule == "finger-nearby" || reason.rule == "sensor-finger-explained") {
        addShortSlide(reason.measures, facts);
    }
    const bool isJudged = lineOf(result, kFrontFpTag, "process fingerprint event") != nullptr ||
                          lineOf(result, kFrontFpTag, " down filtered") != nullptr;
    if (isJudged) addLanding(reason.measures, decision, facts);
    if (isJudged) addCentralArea(reason.measures, facts);
    return reason;
}

Reason reasonToWait(int64_t when, const Facts& facts) { return {"waits-for-finger", waited(when, facts)}; }

Reason reasonForCancel(const Decision& decision, const Facts& facts, const CallResult& result) {
    const std::string_view words = decision.words;
    const auto told = [](std::string_view text, std::string_view name) {
        return static_cast<double>(numberAfter(text, name).value_or(0));
    };
    if (says(words, "identify finger, cancel it")) {
        const LogEntry* after = lineOf(result, kFrontFpTag, "ms after finger touched down");
        if (after == nullptr) return {"touch-before-identification", {}};
        return {"touch-before-identification",
                {{"from touch to identification", told(after->text, "identify finger "), kTouchBeforeIdentify, "ms"}}};
    }
    if (says(words, "swipe on FP sensor, cancel it")) {
        Reason slide{"slide-over-sensor", {}};
        addSlide(slide.measures, result);
        slide.measures.push_back(facts.keys.sinceSlideKey(toMs(decision.when)));
        return slide;
    }
    if (says(words, "Cancel abnormal touch")) {
        return {"abnormal-touch", abnormal(flagsIn(words), facts, result)};
    }
    if (says(words, "need to cancel touch.")) {
        return {"cover-moved",
                {{"cover moved after touch-down", told(words, "preSlideTime="), kCoverMovedAfter, "ms"}}};
    }
    if (!says(words, "during folding")) return {"cancel-in-silence", {}};
    Reason folding{"folding", {}};
    if (const auto spread = facts.fold.now()) {
        folding.measures.push_back({"spread of the averages", *spread, kFoldSpread, ""});
    }
    return folding;
}

Reason reasonForReport(const Decision& decision) {
    const auto time = static_cast<double>(numberAfter(decision.words, "{time:").value_or(0));
    return {"cover-report", {{"cover moved after touch-down", time, kCoverMovedAfter, "ms"}}};
}

}  // namespace refhost

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace android {

/// A rule by which a filter decides: a position in kRules. Written as its name, `"moved-up"_rule`, so that a search for
/// the name that a reader saw leads to the line that applies the rule.
enum class Rule : uint8_t {};

/// What the measurements of a record must say for its rule to apply.
enum class RuleNeeds : uint8_t {
    Nothing,  ///< they inform
    All,      ///< each condition holds
    Some,     ///< at least one condition holds
    None,     ///< no condition holds
    NotAll,   ///< at least one condition does not hold
};

struct RuleDescription {
    std::string_view name;
    RuleNeeds needs;
    std::string_view meaning;  ///< one sentence that stands alone, for a reader who has nothing but the decision
};

/// Every rule, with its meaning.
inline constexpr RuleDescription kRules[] = {
    // Pointers: the front fingerprint filter.
    {"finger-on-sensor", RuleNeeds::Some,
     "In the filter area, not in landscape, soon after a finger on the sensor (516) or a dispatched key of the "
     "sensor."},
    {"enrolment", RuleNeeds::Some, "In the filter area, soon after an enrolment began (519)."},
    {"identification", RuleNeeds::Some,
     "In the filter area, soon after an identification of this touch began or ended (517, 518)."},
    {"edge-in-landscape", RuleNeeds::Some,
     "In the filter area, in landscape, and the panel flags the finger as on its edge."},
    {"no-gesture", RuleNeeds::NotAll,
     "Held back and still in the filter area: it has not moved up far enough, or it did so too late or too far "
     "sideways."},
    {"moved-up", RuleNeeds::All,
     "Held back before: it has moved up soon enough and not far sideways, so it is a gesture."},
    {"left-area", RuleNeeds::NotAll,
     "Held back before: it has left the filter area soon enough and not far sideways, so it is a gesture."},
    {"left-area-late", RuleNeeds::NotAll,
     "Held back before: it has left the filter area too late or too far sideways, and continues where it is."},
    {"outside-area", RuleNeeds::NotAll, "Outside the filter area."},
    {"no-doubt", RuleNeeds::Nothing, "In the filter area, and nothing from the sensor makes the touch doubtful."},
    {"wide-range", RuleNeeds::Nothing,
     "In the filter area, but the finger has been outside it in this gesture, or has been restored: it is not held "
     "back."},
    {"navigation-bar", RuleNeeds::Nothing,
     "In the filter area, while touches near the sensor go to the navigation bar."},
    {"filter-off", RuleNeeds::Nothing, "The front fingerprint filter is off: it has no filter area."},
    // Pointers: the other filters.
    {"not-flagged", RuleNeeds::None, "The touch driver flags the finger neither as abnormal nor as stylus dirty."},
    {"abnormal-allowed", RuleNeeds::Nothing,
     "Flagged as abnormal, but neither a call nor the keyguard is in front, or the keyguard shows the camera."},
    {"notch-band", RuleNeeds::Some, "In landscape, in the notch band, in no window that is marked for it."},
    {"notch-left", RuleNeeds::NotAll, "In landscape, outside the notch band."},
    {"notch-window", RuleNeeds::All, "In the notch band, in a window that is marked for it."},
    {"notch-left-before", RuleNeeds::Some,
     "In the notch band, but in this gesture its pointer id has been outside the band, or in a marked window."},
    {"notch-portrait", RuleNeeds::Nothing,
     "The panel is not in landscape, or its surface is not known: there is no notch band."},
    {"cover-cancelled", RuleNeeds::NotAll, "The slide cover filter has cancelled the gesture."},
    {"cover-settled", RuleNeeds::All,
     "The slide cover filter has cancelled the gesture, but the cover has rested in state 1 long enough: touches pass "
     "again."},
    {"cover-idle", RuleNeeds::Nothing, "The slide cover filter does not know the state of the cover: touches pass."},
    {"fold-cancelled", RuleNeeds::Nothing, "The fold angle filter has cancelled the gesture."},
    {"gesture-cancelled", RuleNeeds::Nothing,
     "The front fingerprint filter cancels the gesture in this frame, and removes all of its fingers."},
    // Gestures.
    {"touch-before-identification", RuleNeeds::All,
     "An identification (517) began soon after a single finger had landed in the filter area."},
    {"slide-over-sensor", RuleNeeds::Nothing,
     "A finger in the filter area has slid over the sensor: far along x, and little along y."},
    {"abnormal-touch", RuleNeeds::Some,
     "The touch driver flags a finger as stylus dirty; or as abnormal, while a call or the keyguard is in front, or "
     "where every window counts."},
    {"cover-moved", RuleNeeds::Nothing, "The slide cover is in another state than in the gesture's frame before."},
    {"folding", RuleNeeds::All,
     "The phone is folded during the gesture: the averages of the fold angle lie too far apart."},
    {"cover-report", RuleNeeds::All, "The slide cover filter reports the gesture that it has cancelled."},
    {"no-report", RuleNeeds::Nothing,
     "The slide cover filter cannot report the gesture that it has cancelled: it has no device or policy, or the text "
     "does not fit."},
    // Keys.
    {"sensor-finger-new", RuleNeeds::Nothing,
     "A finger on the sensor (516) that no finger at rest near it on the panel explains: it makes touches doubtful."},
    {"sensor-finger-explained", RuleNeeds::NotAll,
     "A finger on the sensor (516) that a finger near it on the panel explains."},
    {"sensor-notification", RuleNeeds::Nothing, "A notification of the sensor (516 to 519): it is never dispatched."},
    {"finger-nearby", RuleNeeds::Nothing, "A finger near the sensor explains the key."},
    {"key-announced", RuleNeeds::Nothing,
     "An earlier key announced this one: an explained 516 announces any key, and a consumed 66 announces 515."},
    {"central-area", RuleNeeds::Nothing,
     "In landscape, a finger is outside the filter area and away from every edge of the panel."},
    {"waits-for-finger", RuleNeeds::All,
     "A key soon after a single finger landed in the filter area: it waits until the outcome of that finger is known."},
    {"finger-no-gesture", RuleNeeds::All,
     "The finger that the key waited for has lifted and was no gesture, or a second finger has landed."},
    {"too-soon-to-send", RuleNeeds::NotAll, "The key was held back just now: it cannot be sent again yet."},
    {"finger-restored", RuleNeeds::Nothing, "The finger that the key waited for was a gesture, and is restored."},
    {"new-touch", RuleNeeds::Nothing, "A new touch has begun while the key waited."},
    {"no-finger", RuleNeeds::Nothing, "No finger on the panel explains the key."},
    {"as-its-down", RuleNeeds::Nothing,
     "A key-up is consumed once for each consumed key-down of its code, and else dispatched."},
    {"not-judged", RuleNeeds::Nothing, "A key of the fingerprint sensor that the filter does not judge."},
    {"another-device", RuleNeeds::Nothing, "The key is not from the fingerprint sensor."},
    // Context.
    {"area-placed", RuleNeeds::Nothing, "Where the filter area and the central area lie on the surface."},
    {"area-off", RuleNeeds::Nothing, "There is no filter area, or it does not fit on the surface: the filter is off."},
    {"abnormal-touch-off", RuleNeeds::Nothing, "Abnormal-touch cancellation is switched off."},
    {"navigation-bar-preferred", RuleNeeds::Nothing, "From here on touches near the sensor go to the navigation bar."},
    {"navigation-bar-not-preferred", RuleNeeds::Nothing,
     "From here on touches near the sensor do not go to the navigation bar."},
    {"notch-surface", RuleNeeds::Nothing, "How a panel with a notch is held, and where its notch band ends."},
    {"notch-windows", RuleNeeds::Nothing, "How many visible windows are marked for the notch band."},
    {"cover-state", RuleNeeds::Nothing, "The sensor reports the state of the slide cover."},
    {"fold-state", RuleNeeds::Nothing,
     "The sensor reports the fold angle, and the averages of it say whether the phone is folded."},
    {"fold-idle", RuleNeeds::Nothing, "The fold angle filter has no enabled sensor: touches pass."},
    {"sensor-on", RuleNeeds::Nothing, "The sensor is enabled."},
    {"sensor-off", RuleNeeds::Nothing, "The sensor is disabled."},
    {"sensor-failed", RuleNeeds::Nothing, "A connection to the sensor, or its enabling or disabling, has failed."},
    {"sensor-lost", RuleNeeds::Nothing, "The filter has given up its connection to the sensor service."},
};

inline constexpr size_t kRuleCount = std::size(kRules);

/// The name of each rule, without the texts that no phone needs.
inline constexpr std::array<const char*, kRuleCount> kRuleNames = [] {
    std::array<const char*, kRuleCount> names{};
    for (size_t i = 0; i < kRuleCount; ++i) names[i] = kRules[i].name.data();
    return names;
}();

constexpr const char* nameOf(Rule rule) { return kRuleNames[static_cast<size_t>(rule)]; }

/// A rule's name as the argument of a template.
template <size_t kSize>
struct RuleName {
    // NOLINTNEXTLINE(google-explicit-constructor): a literal is one
    constexpr RuleName(const char (&literal)[kSize]) : text{} {
        for (size_t i = 0; i < kSize; ++i) text[i] = literal[i];
    }
    char text[kSize];
};

/// The position in kRules, or kRuleCount.
constexpr size_t positionOfRule(std::string_view name) {
    size_t position = 0;
    while (position < kRuleCount && kRules[position].name != name) ++position;
    return position;
}

/// The rule of this name. A name that is not in kRules does not compile.
template <RuleName kName>
constexpr Rule operator""_rule() {
    constexpr size_t kPosition = positionOfRule({kName.text, sizeof kName.text - 1});
    static_assert(kPosition < kRuleCount, "no rule of this name in kRules");
    return static_cast<Rule>(kPosition);
}

}  // namespace android

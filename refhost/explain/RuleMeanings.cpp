#include "refhost/explain/RuleMeanings.h"

#include <algorithm>
#include <iterator>

namespace refhost {

namespace {

struct Meaning {
    std::string_view rule, text;
};

constexpr Meaning kMeanings[] = {
    // Fingers: the front fingerprint filter
    {"finger-on-sensor",
     "In the filter area, 1 to 299 ms after a finger on the sensor (516), or a key of it that was dispatched."},
    {"enrolment", "In the filter area, less than 1700 ms after an enrolment began (519)."},
    {"identification",
     "In the filter area, less than 1700 ms after an identification (517, 518) that belongs to this touch."},
    {"edge-in-landscape", "In the filter area, in landscape, and the panel says that it is on the edge."},
    {"no-gesture",
     "Held back until, within 1000 ms and 200 sideways of its landing, it moves 40 up or leaves the filter area."},
    {"moved-up", "Held back, it moved 40 up within 1000 ms and 200 sideways of its landing: a gesture."},
    {"left-area", "Held back, it left the filter area within 1000 ms and 200 sideways of its landing: a gesture."},
    {"left-area-late",
     "Held back, it left the filter area after 1000 ms, or more than 200 sideways: it goes on where it is."},
    {"outside-area", "Not in the filter area."},
    {"no-doubt", "In the filter area, with nothing of the sensor that would cast doubt on it."},
    {"wide-range", "In the filter area, but seen outside of it before in this gesture, or restored: not held back."},
    {"navigation-bar", "In the filter area, where the navigation bar is preferred."},
    {"filter-off", "The front fingerprint filter has no area to act in."},
    // The other filters
    {"notch-band", "In landscape, in the notch band."},
    {"notch-left", "Seen outside of the notch band, or in a window marked for it, in this gesture."},
    {"notch-left-before",
     "In the notch band, but seen outside of it, or in a window marked for it, before in this gesture."},
    {"notch-window", "In the notch band, in a window that is marked for it."},
    {"notch-portrait", "The phone is no longer in landscape: there is no notch band."},
    {"cover-moved", "The slide cover is in another state than in the frame before."},
    {"cover-cancelled", "In a gesture that the slide cover's filter has cancelled."},
    {"cover-settled", "The slide cover has been in state 1 for 3 s: touches pass again."},
    {"cover-idle", "The slide cover's filter does not know the state of its sensor."},
    {"cover-report", "The slide cover's filter reports a gesture that it has cancelled."},
    {"folding", "The phone is folded during this gesture: averages of its angle lay more than 10 apart."},
    {"taken-until-lifted", "Another filter than the front fingerprint's took it, until it lifted."},
    // Gestures
    {"gesture-cancelled", "It goes with its gesture, which is cancelled."},
    {"after-cancel", "Its gesture was cancelled in a frame before; from there on it is judged like any finger."},
    {"touch-before-identification",
     "An identification (517) began 1 to 300 ms after a finger had landed alone in the filter area."},
    {"slide-over-sensor", "A finger slid over the sensor: at least 101 along x, and less than 80 along y."},
    {"abnormal-touch",
     "The panel flags a finger as stylus dirty; or as abnormal, and a call or the keyguard is in front, or every "
     "window counts."},
    {"cancel-in-silence", "Nobody said why; no filter of this library does that."},
    // Keys
    {"sensor-finger-new", "A finger on the sensor (516) that none near it on the panel explains: it casts doubt."},
    {"sensor-finger-explained", "A finger on the sensor (516) that one near it on the panel explains."},
    {"sensor-tells", "The sensor tells something; that is never dispatched."},
    {"finger-nearby", "A finger near the sensor explains the key."},
    {"key-announced", "A finger on the sensor (516), or the key before, announced this one."},
    {"central-area", "In landscape, a finger is at least 100 from each edge of the panel, and not in the filter area."},
    {"waits-for-finger",
     "513, 514 or 601, 1 to 119 ms after a finger landed in the filter area: it waits for what becomes of that."},
    {"finger-no-gesture", "The finger that the key waited for has lifted, or a second one has landed."},
    {"finger-restored", "The finger that the key waited for was a gesture."},
    {"new-touch", "Another touch has begun."},
    {"no-finger", "No finger on the panel explains the key."},
    {"as-its-down", "A key-up shares the fate of a key-down of its code before it."},
    {"not-judged", "Not a key that the filter judges."},
    {"another-device", "Not a key of the fingerprint sensor."},
    // All
    {"surroundings", "On this the fates of fingers and keys depend."},
};

}  // namespace

std::string_view meaningOf(std::string_view rule) {
    const auto* const found = std::find_if(std::begin(kMeanings), std::end(kMeanings),
                                           [&](const Meaning& each) { return each.rule == rule; });
    return found == std::end(kMeanings) ? std::string_view() : found->text;
}

}  // namespace refhost

#pragma once

#include <limits>

#include "refhost/explain/Measure.h"

// At which values the filters change their mind. Times in ms, lengths in raw panel units.

namespace refhost {

inline constexpr double kOpenEnd = Range::kOpen;

/// A finger that lands in the area is in doubt: so long after the sensor's finger or a dispatched key of the sensor,
inline constexpr Range kFingerRecently{1, 299};
/// after the start of an enrolment,
inline constexpr Range kEnrolRecently{0, 1699};
/// and after the start or end of an identification. Clocks that run backwards count.
inline constexpr Range kIdentifyRecently{-kOpenEnd, 1699};
/// In landscape, where the panel says that it is on the edge.
inline constexpr Range kFlagSet{1, 1};

/// It comes back as a gesture: so far up, so far sideways at most, so long after it was held back at most.
inline constexpr Range kMovedUp{40, kOpenEnd};
inline constexpr Range kMovedSideways{-kOpenEnd, 200};
inline constexpr Range kHeldFor{-kOpenEnd, 1000};
/// On a clock that runs backwards it never does.
inline constexpr Range kHeldBackwards{0, 1000};

/// A touch is the finger that is identified: the identification starts so long after it.
inline constexpr Range kTouchBeforeIdentify{1, 300};

/// A slide over the sensor: so wide, so high, so long after a key that it makes.
inline constexpr Range kSlideWidth{101, kOpenEnd};
inline constexpr Range kSlideHeight{-kOpenEnd, 79};
inline constexpr Range kSlideKeyRecently{1, 299};

/// A key waits for its finger: so long after that came down. It is sent again after so long at least.
inline constexpr Range kKeyOfSameFinger{1, 119};
inline constexpr Range kKeyHeldFor{1, kOpenEnd};

/// A gesture that the slide cover cancels is reported where the cover moved so long after touch-down.
inline constexpr Range kCoverMovedAfter{1, kOpenEnd};
/// And passes again once the cover has been in state 1 for so long.
inline constexpr Range kCoverSettledFor{3000, kOpenEnd};

/// Folding: more than 10 between the lowest and the highest average, in the sensor's unit; the next float is in.
inline constexpr double kSteadySpread = 10;
inline constexpr Range kFoldSpread{kSteadySpread + 8 * std::numeric_limits<float>::epsilon(), kOpenEnd};

}  // namespace refhost

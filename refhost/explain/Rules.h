#pragma once

#include <string_view>

#include "refhost/explain/Facts.h"
#include "refhost/play/CallResult.h"
#include "refhost/play/Decision.h"

namespace refhost {

/// Why a decision came out as it did.
struct Reason {
    std::string_view rule;  ///< its name, a literal; RuleMeanings.h says what it means
    Measures measures;
};

// Each is asked about a decision of its kind, with the facts as they are in that call.

Reason reasonForFinger(const Decision& decision, const Finger& finger, const Facts& facts);
Reason reasonForCancel(const Decision& decision, const Facts& facts, const CallResult& result);
Reason reasonForKey(const Decision& decision, const Facts& facts, const CallResult& result);
Reason reasonForReport(const Decision& decision);

/// Why a finger that stays as it is, passed or taken out, stays so at `when` (ns).
Reason reasonToStay(int64_t when, const DeviceRef& device, const Finger& finger, const Facts& facts);

/// Why the key that waits does so still at `when` (ns).
Reason reasonToWait(int64_t when, const Facts& facts);

}  // namespace refhost

#pragma once

#include <string>

#include "refhost/play/Decision.h"

namespace refhost {

/// What a slice or an instant says of its decision, as a JSON object: `subject`, `message` if it has one, and `filter`,
/// `rule`, `meaning` and `measurements` if the library recorded the decision.
/// @param ended false adds `"ended":false`: the trace ends before the slice does
std::string argumentsOf(const Decision& decision, bool ended = true);

}  // namespace refhost

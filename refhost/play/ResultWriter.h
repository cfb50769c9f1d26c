#pragma once

#include "refhost/JsonText.h"
#include "refhost/play/CallResult.h"

namespace refhost {

/// Writes what came back from one line of a trace as one line of JSON, newline included; docs/trace-format.md defines
/// it.
void writeResult(TextBuffer& out, const CallResult& result);

}  // namespace refhost

#pragma once

#include "refhost/JsonText.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Writes the header as the first line of a trace, newline included. What has its default value is left out.
void writeTrace(TextBuffer& out, const TraceHeader& header);

/// Writes one line of a trace, newline included; `line.line` is not part of it. Reading it gives the same line again.
void writeTrace(TextBuffer& out, const TraceLine& line);

}  // namespace refhost

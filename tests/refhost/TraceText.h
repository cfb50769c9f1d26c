#pragma once

#include <sstream>
#include <string>

#include "refhost/trace/TraceReader.h"
#include "refhost/trace/TraceWriter.h"

namespace refhost {

/// All of a source as the text of a trace.
inline std::string written(TraceSource& source) {
    TextBuffer out;
    writeTrace(out, source.header());
    TraceLine line;
    while (source.next(line)) writeTrace(out, line);
    return fmt::to_string(out);
}

/// The trace that reading a text gives, as the writer words it.
inline std::string rewritten(const std::string& text) {
    std::istringstream in(text);
    TraceReader reader(in, "in");
    return written(reader);
}

}  // namespace refhost

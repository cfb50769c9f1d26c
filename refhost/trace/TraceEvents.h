#pragma once

#include <string>

#include "refhost/trace/JsonFields.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Reads one line after the header: what happened, and the clock. `line.line` is the caller's. Faults as InputError.
/// @param header gives the devices that the line may name
void readTraceLine(const JsonLine::Value& object, const JsonPlace& place, const TraceHeader& header, TraceLine& line);

/// Faults on a value that the phone's property store would not take.
void checkPropertyValue(const std::string& text, const JsonPlace& place);

}  // namespace refhost

#pragma once

#include "refhost/trace/JsonFields.h"
#include "refhost/trace/Trace.h"

// The keys that each kind of line has beside those that all have. Faults as InputError.

namespace refhost {

/// A device's id that the header knows, or null.
void readDevice(JsonFields& fields, const TraceHeader& header, DeviceRef& device);

void read(JsonFields& fields, const TraceHeader& header, ProcessRawTouches& call);

void read(JsonFields& fields, const TraceHeader& header, SensorEvent& happening);
void read(JsonFields& fields, const TraceHeader& header, SensorService& happening);
void read(JsonFields& fields, const TraceHeader& header, SetProperty& happening);

}  // namespace refhost

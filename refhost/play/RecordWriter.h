#pragma once

#include "refhost/JsonText.h"
#include "refhost/play/Record.h"

namespace refhost {

/// Appends a JSON array: `[{"name","value","least","most","unit","holds","margin","setting","cause"},...]`. An open end
/// of the range, a margin of a fact, a fixed setting and an absent cause are null.
void writeMeasurements(TextBuffer& out, const std::vector<Measurement>& measurements);

/// Appends one record as a JSON object, in the keys of docs/trace-format.md.
void writeRecord(TextBuffer& out, const Record& record);

}  // namespace refhost

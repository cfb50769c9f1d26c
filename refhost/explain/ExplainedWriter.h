#pragma once

#include "refhost/JsonText.h"
#include "refhost/explain/Explainer.h"

namespace refhost {

/// Appends one line of JSON, in the keys of docs/explain.md.
/// @param kind "decision", "finger" for a finger that is down, or "key" for a key that waits; a literal
void writeExplained(TextBuffer& out, std::string_view kind, const Explained& explained);

/// Appends the rule, the measurements, a line each, and the log, indented below the decision that they explain.
void printReason(TextBuffer& out, const Explained& explained);

}  // namespace refhost

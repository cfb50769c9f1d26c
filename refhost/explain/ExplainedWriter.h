#pragma once

#include "refhost/JsonText.h"
#include "refhost/explain/Explainer.h"

namespace refhost {

/// Appends one line of JSON, in the keys of docs/explain.md.
/// @param kind "decision", or "finger" of what holds at a moment; a literal
void writeExplained(TextBuffer& out, std::string_view kind, const Explained& explained);

/// Appends the rule, the measures, a line each, and the log, indented below the decision that they explain.
void tellExplained(TextBuffer& out, const Explained& explained);

}  // namespace refhost

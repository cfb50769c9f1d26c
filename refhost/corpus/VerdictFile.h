#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/corpus/Verdicts.h"

namespace refhost {

/// The file beside a trace that holds its verdicts: swipe.verdicts.txt beside swipe.trace.jsonl.
std::string verdictFileOf(const std::string& trace);

/// The file's text: a line that says what it is, then a line for each verdict, in columns.
std::string textOf(const Verdicts& verdicts);

/// Reads such a text back. Throws InputError with `file` and the line where it is none.
Verdicts readVerdicts(std::string_view text, const std::string& file);

/// A verdict that is not what it was. A finger or key is the same where its time and subject are.
struct Change {
    std::string at;
    std::string subject;
    std::optional<std::string> was;  ///< nothing: there was no such finger or key
    std::optional<std::string> is;   ///< nothing: it is gone
};

using Changes = std::vector<Change>;

/// In order of time.
Changes changesBetween(const Verdicts& was, const Verdicts& is);

}  // namespace refhost

#pragma once

#include <string_view>

namespace refhost {

/// A rule in one sentence, which stands alone, for a reader who has nothing but the decision; empty for none of the
/// rules. docs/explain.md tells of each with its verdicts. Lives as long as the program.
std::string_view meaningOf(std::string_view rule);

}  // namespace refhost

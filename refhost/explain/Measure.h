#pragma once

#include <algorithm>
#include <limits>
#include <string_view>
#include <vector>

namespace refhost {

/// The values for which a condition of a filter holds; both ends are inside.
struct Range {
    static constexpr double kOpen = std::numeric_limits<double>::infinity();

    double least = -kOpen;
    double most = kOpen;
};

/// One value that a rule looked at, beside the range in which its condition holds.
struct Measure {
    std::string_view name;  ///< what was measured; a literal
    double value = 0;
    Range range;
    std::string_view unit;  ///< "ms", "" for raw panel units, flags and counts

    /// How far inside the range, 0 on its end; negative: how far from it, to the end that is missed.
    double margin() const { return std::min(value - range.least, range.most - value); }
    bool holds() const { return margin() >= 0; }
};

using Measures = std::vector<Measure>;

}  // namespace refhost

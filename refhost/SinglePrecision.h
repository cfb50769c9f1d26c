#pragma once

#include <optional>

namespace refhost {

/// The nearest number of single precision, or nothing for one that none is near to: beyond the midpoint above the
/// greatest, or not a number.
constexpr std::optional<float> singlePrecision(double number) {
    constexpr double kBeyond = 0x1.ffffffp127;
    if (!(-kBeyond < number && number < kBeyond)) return std::nullopt;
    return static_cast<float>(number);
}

}  // namespace refhost

#pragma once

#include <string_view>

#include "aft/host/Rules.h"

namespace refhost {

/// A rule in one sentence; empty for a rule of another build that this one does not know.
constexpr std::string_view meaningOf(std::string_view rule) {
    for (const android::RuleDescription& each : android::kRules) {
        if (each.name == rule) return each.meaning;
    }
    return "";
}

}  // namespace refhost

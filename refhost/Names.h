#pragma once

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace refhost {

/// A word of a file and what it stands for. Tables of them are arrays or spans.
template <typename T>
struct Named {
    std::string_view name;
    T value;
};

/// The entry of this name, or null.
template <typename Names>
constexpr auto named(const Names& names, std::string_view name) {
    const auto found =
        std::find_if(std::begin(names), std::end(names), [&](const auto& one) { return one.name == name; });
    return found == std::end(names) ? nullptr : &*found;
}

/// The first name of a value; empty where it has none.
template <typename Names, typename T>
constexpr std::string_view nameOf(const Names& names, const T& value) {
    const auto same = [&](const auto& one) { return one.value == value; };
    const auto found = std::find_if(std::begin(names), std::end(names), same);
    return found == std::end(names) ? std::string_view() : found->name;
}

/// What is wrong with a word that is not in the table.
template <typename Names>
std::string unknownName(const Names& names, std::string_view word) {
    std::string expected;
    for (const auto& one : names) expected += (expected.empty() ? "" : ", ") + std::string(one.name);
    return fmt::format("unknown \"{}\"; expected one of {}", word, expected);
}

}  // namespace refhost

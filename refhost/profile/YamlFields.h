#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <yaml-cpp/yaml.h>

#include <array>
#include <concepts>
#include <cstdint>
#include <limits>
#include <set>
#include <string>

#include "refhost/InputError.h"
#include "refhost/JsonText.h"
#include "refhost/Names.h"
#include "refhost/SinglePrecision.h"

namespace refhost {

/// Where in a YAML file a value stands.
struct YamlPlace {
    const std::string& file;
    std::string key;  ///< the way to it: `touch.surface.width`

    YamlPlace below(const std::string& name) const { return {file, key.empty() ? name : key + "." + name}; }
    YamlPlace at(size_t index) const { return {file, fmt::format("{}[{}]", key, index)}; }

    [[noreturn]] void fault(const YAML::Node& node, const std::string& what) const {
        const int line = node.Mark().line;  // counted from 0; -1 where the library does not know
        throw InputError(file, line < 0 ? 1 : static_cast<uint32_t>(line) + 1, key.empty() ? "profile" : key, what);
    }
};

template <std::integral T>
requires(!std::same_as<T, bool>) void readYaml(const YAML::Node& node, const YamlPlace& place, T& field) {
    int64_t number = 0;
    if (!node.IsScalar() || !YAML::convert<int64_t>::decode(node, number)) {
        place.fault(node, "not an integer; expected one");
    }
    constexpr int64_t lowest = std::numeric_limits<T>::min();
    constexpr int64_t highest = std::numeric_limits<T>::max();
    if (number < lowest || number > highest) {
        place.fault(node, fmt::format("does not fit; expected {} to {}", lowest, highest));
    }
    field = static_cast<T>(number);
}

inline void readYaml(const YAML::Node& node, const YamlPlace& place, bool& field) {
    if (!node.IsScalar() || !YAML::convert<bool>::decode(node, field)) {
        place.fault(node, "not a boolean; expected true or false");
    }
}

inline void readYaml(const YAML::Node& node, const YamlPlace& place, double& field) {
    if (!node.IsScalar() || !YAML::convert<double>::decode(node, field) || !(field - field == 0)) {
        place.fault(node, "not a number; expected one");
    }
}

inline void readYaml(const YAML::Node& node, const YamlPlace& place, float& field) {
    double number = 0;
    readYaml(node, place, number);
    const std::optional<float> single = singlePrecision(number);
    if (!single) place.fault(node, "does not fit; expected a number of single precision");
    field = *single;
}

inline void readYaml(const YAML::Node& node, const YamlPlace& place, std::string& field) {
    if (!node.IsScalar()) place.fault(node, "not a text; expected one");
    if (!isUtf8(node.Scalar())) place.fault(node, "not UTF-8; expected text that is");
    field = node.Scalar();
}

template <typename T, size_t N>
void readYaml(const YAML::Node& node, const YamlPlace& place, std::array<T, N>& field) {
    if (!node.IsSequence() || node.size() != N) place.fault(node, fmt::format("not a list of {}; expected that", N));
    for (size_t i = 0; i < N; ++i) readYaml(node[i], place.at(i), field[i]);
}

/// Reads an integer that has to lie in a range, both ends included.
template <typename T>
void readYamlWithin(const YAML::Node& node, const YamlPlace& place, T& field, T lowest, T highest) {
    readYaml(node, place, field);
    if (field < lowest || field > highest) place.fault(node, fmt::format("expected {} to {}", lowest, highest));
}

/// Reads a text that is a word of a table.
template <typename Names, typename T>
void readYamlName(const YAML::Node& node, const YamlPlace& place, const Names& names, T& field) {
    std::string word;
    readYaml(node, place, word);
    const auto* known = named(names, word);
    if (known == nullptr) place.fault(node, unknownName(names, word));
    field = known->value;
}

/// The keys of one YAML map, asked for by name; what nobody has asked for by the end is a fault.
class YamlFields {
  public:
    YamlFields(const YAML::Node& map, YamlPlace place) : mMap(map), mPlace(std::move(place)) {
        if (!map.IsMap()) mPlace.fault(map, "not a map; expected keys with values");
    }

    const YamlPlace& place() const { return mPlace; }
    const YAML::Node& node() const { return mMap; }

    /// Calls `read(node, place)` on the key's value, if there is one.
    template <typename Read>
    bool with(const std::string& key, Read read) {
        mAsked.insert(key);
        const YAML::Node value = mMap[key];
        if (!value.IsDefined() || value.IsNull()) return false;
        read(value, mPlace.below(key));
        return true;
    }

    template <typename T>
    void required(const std::string& key, T& field) {
        if (!optional(key, field)) mPlace.below(key).fault(mMap, "missing; expected this key");
    }

    /// Leaves the field as it is where the key is absent.
    template <typename T>
    bool optional(const std::string& key, T& field) {
        return with(key, [&](const YAML::Node& node, const YamlPlace& place) { readYaml(node, place, field); });
    }

    /// Faults on the first key that nobody has asked for, or that stands there twice.
    void done() const {
        std::set<std::string> seen;
        for (const auto& entry : mMap) {
            const std::string key = entry.first.IsScalar() ? entry.first.Scalar() : "";
            if (!mAsked.contains(key)) {
                mPlace.below(key).fault(entry.first,
                                        fmt::format("unknown key; expected one of {}", fmt::join(mAsked, ", ")));
            }
            if (!seen.insert(key).second) mPlace.below(key).fault(entry.first, "given twice; expected once");
        }
    }

  private:
    const YAML::Node mMap;
    YamlPlace mPlace;
    std::set<std::string> mAsked;
};

}  // namespace refhost

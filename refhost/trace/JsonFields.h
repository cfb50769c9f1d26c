#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "refhost/InputError.h"
#include "refhost/Names.h"
#include "refhost/SinglePrecision.h"
#include "refhost/trace/JsonLine.h"

namespace refhost {

/// Where in a trace a value stands: the file, the line and the way to it (`pointers[1].axes[3]`), put into words only
/// when there is a fault to tell.
class JsonPlace {
  public:
    JsonPlace(std::string_view file, uint32_t line) : mFile(file), mLine(line) {}
    JsonPlace(const JsonPlace& parent, std::string_view key) : JsonPlace(parent) {
        mParent = &parent;
        mKey = key;
    }
    JsonPlace(const JsonPlace& parent, size_t index) : JsonPlace(parent) {
        mParent = &parent;
        mKey = {};
        mIndex = index;
    }
    JsonPlace(const JsonPlace&) = default;

    [[noreturn]] void fault(std::string_view what) const { throw InputError(mFile, mLine, path(), what); }

  private:
    std::string path() const {
        if (mParent == nullptr) return "line";
        std::string way = mParent->mParent == nullptr ? "" : mParent->path();
        if (mKey.data() == nullptr) return way + fmt::format("[{}]", mIndex);
        if (!way.empty()) way += ".";
        return way + (mKey.empty() ? "\"\"" : std::string(mKey));
    }

    std::string_view mFile;
    uint32_t mLine;
    const JsonPlace* mParent = nullptr;
    std::string_view mKey;
    size_t mIndex = 0;
};

// One value into one field. Each faults where the value is of another type or does not fit.

template <std::integral T>
requires(!std::same_as<T, bool>) void readJson(const JsonLine::Value& value, const JsonPlace& place, T& field) {
    using Kind = JsonLine::Kind;
    if (value.kind() != Kind::Integer && value.kind() != Kind::BigInteger) place.fault("not an integer; expected one");
    constexpr int64_t lowest = std::numeric_limits<T>::min();
    constexpr int64_t highest = std::numeric_limits<T>::max();
    if (value.kind() == Kind::BigInteger || value.integer() < lowest || value.integer() > highest) {
        place.fault(fmt::format("does not fit; expected {} to {}", lowest, highest));
    }
    field = static_cast<T>(value.integer());
}

inline void readJson(const JsonLine::Value& value, const JsonPlace& place, bool& field) {
    if (value.kind() != JsonLine::Kind::Boolean) place.fault("not a boolean; expected true or false");
    field = value.boolean();
}

inline void readJson(const JsonLine::Value& value, const JsonPlace& place, float& field) {
    using Kind = JsonLine::Kind;
    if (value.kind() != Kind::Integer && value.kind() != Kind::BigInteger && value.kind() != Kind::Float) {
        place.fault("not a number; expected one");
    }
    const std::optional<float> single = singlePrecision(value.real());
    if (!single) place.fault("does not fit; expected a number of single precision");
    field = *single;
}

inline void readJson(const JsonLine::Value& value, const JsonPlace& place, std::string& field) {
    if (value.kind() != JsonLine::Kind::String) place.fault("not a string; expected one");
    field = value.string();
}

template <typename T, size_t N>
void readJson(const JsonLine::Value& value, const JsonPlace& place, std::array<T, N>& field) {
    if (value.kind() != JsonLine::Kind::Array || value.size() != N) {
        place.fault(fmt::format("not an array of {}; expected exactly that", N));
    }
    size_t i = 0;
    for (const JsonLine::Value element : value) {
        readJson(element, JsonPlace(place, i), field[i]);
        ++i;
    }
}

/// A string that is a word of a table.
template <typename Names, typename T>
void readJsonName(const JsonLine::Value& value, const JsonPlace& place, const Names& names, T& field) {
    if (value.kind() != JsonLine::Kind::String) place.fault("not a string; expected a name");
    const auto* known = named(names, value.string());
    if (known == nullptr) place.fault(unknownName(names, value.string()));
    field = known->value;
}

/// The members of one object, asked for by name. What nobody has asked for by the end is a fault: nothing in a trace is
/// passed over in silence.
class JsonFields {
  public:
    JsonFields(const JsonLine::Value& object, const JsonPlace& place) : mObject(object), mPlace(place) {
        if (object.kind() != JsonLine::Kind::Object) place.fault("not an object; expected one");
        if (object.size() > kMost) place.fault(fmt::format("more than {} keys; expected fewer", kMost));
    }

    const JsonPlace& place() const { return mPlace; }

    /// Calls `read(value, place)` on the member, if there is one.
    template <typename Read>
    bool with(std::string_view key, Read read) {
        if (mNames < mKnown.size()) mKnown[mNames++] = key;
        // Members mostly stand in the order in which they are asked for: begin where the last one was found.
        auto it = mNext == 0 ? mObject.begin() : mCursor;
        size_t index = mNext;
        for (size_t seen = 0; seen < mObject.size(); ++seen, ++index) {
            if (index == mObject.size()) {
                index = 0;
                it = mObject.begin();
            }
            if (it.key() == key) {
                if ((mAsked & bit(index)) == 0) {
                    mAsked |= bit(index);
                    read(*it, JsonPlace(mPlace, key));
                }
                mCursor = ++it;
                mNext = index + 1 == mObject.size() ? 0 : index + 1;
                return true;
            }
            ++it;
        }
        return false;
    }

    template <typename T>
    void required(std::string_view key, T& field) {
        if (!optional(key, field)) JsonPlace(mPlace, key).fault("missing; expected this key");
    }

    /// Leaves the field as it is where the key is absent.
    template <typename T>
    bool optional(std::string_view key, T& field) {
        return with(key, [&](const JsonLine::Value& value, const JsonPlace& place) { readJson(value, place, field); });
    }

    /// Faults on the first member that nobody has asked for.
    void done() const {
        size_t index = 0;
        for (auto it = mObject.begin(); !(it == mObject.end()); ++it, ++index) {
            if ((mAsked & bit(index)) != 0) continue;
            size_t sameName = 0;
            for (auto other = mObject.begin(); !(other == mObject.end()); ++other) sameName += other.key() == it.key();
            JsonPlace(mPlace, it.key())
                .fault(sameName > 1 ? std::string("given twice; expected once")
                                    : "unknown key; expected one of " + knownKeys());
        }
    }

  private:
    static constexpr size_t kMost = 64;  ///< no object of the format has nearly as many; properties are read otherwise
    std::string knownKeys() const { return fmt::format("{}", fmt::join(mKnown.data(), mKnown.data() + mNames, ", ")); }
    static constexpr uint64_t bit(size_t index) { return uint64_t{1} << index; }

    JsonLine::Value mObject;
    JsonPlace mPlace;
    JsonLine::Value::Iterator mCursor = mObject.begin();
    size_t mNext = 0;
    uint64_t mAsked = 0;
    std::array<std::string_view, 20> mKnown{};  ///< names that were asked for; they outlive this
    size_t mNames = 0;
};

}  // namespace refhost

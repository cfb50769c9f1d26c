#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "aftplatform/export.h"

/// The system properties that property_get() reads in this process. Any thread.
namespace aftplatform::properties {

/// A value's bytes at most, as on the phone.
inline constexpr size_t kMaxValueLength = 91;

/// A text that could not be read. what() is `FILE:LINE: KEY: what is wrong and what is expected`.
class AFTPLATFORM_API ParseError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
    ~ParseError() override;
};

/// Sets a property; an empty value reads as unset.
/// @throw std::invalid_argument naming key, length and limit when the value is too long, or when the key is empty.
///        Nothing changes then
AFTPLATFORM_API void set(std::string_view key, std::string_view value);

/// Makes a property unset; one that is unset already stays so.
AFTPLATFORM_API void clear(std::string_view key);

AFTPLATFORM_API void clearAll();

/// The stored value, which may be empty; nothing when the property is unset.
AFTPLATFORM_API std::optional<std::string> get(std::string_view key);

/// Keys with their values, in the order of a text; a key that comes twice is there twice.
using Entries = std::vector<std::pair<std::string, std::string>>;

/// Reads a text as `load` does, and sets nothing. Values may be of any length: read-only properties of newer phones are
/// longer than the store takes.
AFTPLATFORM_API Entries parse(std::istream& text, std::string_view sourceName);

/// Sets every property that a text names, and leaves the others as they are. Each entry has one of two forms:
/// - `key=value`, as in a build.prop. Blanks around the key and before the value are not part of them. Blank lines,
///   lines that begin with `#` and `import` lines mean nothing;
/// - `[key]: [value]`, as getprop prints. The value may contain line breaks: it goes on until a line ends with `]`.
/// Lines may end with CR LF. A key that comes twice has its last value.
/// @param sourceName what messages call the text, such as a file's name
/// @throw ParseError at the first entry that is wrong, or when the text cannot be read. No property has changed then
AFTPLATFORM_API void load(std::istream& text, std::string_view sourceName);

}  // namespace aftplatform::properties

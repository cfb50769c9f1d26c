#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

namespace refhost {

struct Recording;

/// Everything that is left in a stream, byte for byte.
std::string readAll(std::istream& in);

constexpr bool isBlank(char c) { return c == ' ' || c == '\t'; }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// True of a line without a single visible character.
bool isBlankLine(std::string_view line);

/// The whole of `text` as a signed decimal number ("-001" is -1), or nothing when it is not one or leaves int64.
std::optional<int64_t> decimalNumber(std::string_view text);

/// The same for what fits a kernel event's value.
std::optional<int32_t> decimalInt32(std::string_view text);

/// The whole of `text` as 1 to 8 hexadecimal digits of either case, without "0x"; otherwise nothing.
std::optional<uint32_t> hexNumber(std::string_view text);

/// Seconds and microseconds as one count, or nothing when the seconds are negative or beyond all clocks.
std::optional<int64_t> microseconds(int64_t seconds, int64_t micros);

/// Records a line that nothing could be made of, unless it is blank.
void skipLine(Recording& recording, uint32_t number, std::string_view line);

/// Walks over the lines of a text that outlives it.
class Lines {
  public:
    explicit Lines(std::string_view text) : mText(text) {}

    /// Goes on to the next line; false at the end.
    bool next();

    /// The line without its end: "\n", or what a phone's shell makes of it, "\r\n" and "\r\r\n".
    std::string_view line() const { return mLine; }
    uint32_t number() const { return mNumber; }
    /// False of a last line that the file ends in the middle of.
    bool terminated() const { return mTerminated; }

  private:
    std::string_view mText;
    std::string_view mLine;
    size_t mAt = 0;
    uint32_t mNumber = 0;
    bool mTerminated = true;
};

/// A place in a line, moved on by what is recognised there. Each taker leaves the place alone when it takes nothing.
class Cursor {
  public:
    explicit Cursor(std::string_view line, size_t at = 0) : mLine(line), mAt(at) {}

    size_t at() const { return mAt; }
    bool atEnd() const { return mAt >= mLine.size(); }
    std::string_view rest() const { return mLine.substr(mAt); }
    /// The next character; NUL at the end.
    char peek() const { return atEnd() ? '\0' : mLine[mAt]; }

    /// Takes blanks; true if there was one.
    bool blanks();
    bool literal(std::string_view expected);
    /// Takes the longest run of characters, at most `limit`, for which `wanted` holds; may be empty.
    template <typename Predicate>
    std::string_view run(Predicate wanted, size_t limit = std::string_view::npos) {
        const size_t from = mAt;
        while (!atEnd() && mAt - from < limit && wanted(mLine[mAt])) ++mAt;
        return mLine.substr(from, mAt - from);
    }
    /// Takes blanks and then everything up to the next blank; may be empty.
    std::string_view word();

  private:
    std::string_view mLine;
    size_t mAt;
};

}  // namespace refhost

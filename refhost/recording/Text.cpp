#include "refhost/recording/Text.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>

#include "refhost/recording/Recording.h"

namespace refhost {

namespace {

constexpr size_t kSkippedBytesKept = 60;

template <typename Number>
std::optional<Number> wholeNumber(std::string_view text, int base) {
    Number number{};
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    if (error != std::errc() || stop != end) return std::nullopt;
    return number;
}

}  // namespace

std::string readAll(std::istream& in) { return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()}; }

bool isBlankLine(std::string_view line) {
    return std::all_of(line.begin(), line.end(),
                       [](char c) { return isBlank(c) || c == '\r' || c == '\v' || c == '\f'; });
}

std::optional<int64_t> decimalNumber(std::string_view text) { return wholeNumber<int64_t>(text, 10); }

std::optional<int32_t> decimalInt32(std::string_view text) { return wholeNumber<int32_t>(text, 10); }

std::optional<uint32_t> hexNumber(std::string_view text) {
    if (text.size() > 8) return std::nullopt;
    return wholeNumber<uint32_t>(text, 16);
}

std::optional<int64_t> microseconds(int64_t seconds, int64_t micros) {
    constexpr int64_t kPerSecond = 1'000'000;
    // Half of what int64 holds: the difference of any two times is then a number, too.
    constexpr int64_t kMaxSeconds = std::numeric_limits<int64_t>::max() / kPerSecond / 2;
    if (seconds < 0 || seconds > kMaxSeconds || micros < 0 || micros >= kPerSecond) return std::nullopt;
    return seconds * kPerSecond + micros;
}

void skipLine(Recording& recording, uint32_t number, std::string_view line) {
    if (isBlankLine(line)) return;
    recording.skipped.push_back({number, std::string(line.substr(0, kSkippedBytesKept))});
}

bool Lines::next() {
    if (mAt >= mText.size()) return false;
    const size_t end = mText.find('\n', mAt);
    mTerminated = end != std::string_view::npos;
    mLine = mText.substr(mAt, mTerminated ? end - mAt : std::string_view::npos);
    mAt = mTerminated ? end + 1 : mText.size();
    while (!mLine.empty() && mLine.back() == '\r') mLine.remove_suffix(1);
    ++mNumber;
    return true;
}

bool Cursor::blanks() { return !run(isBlank).empty(); }

bool Cursor::literal(std::string_view expected) {
    if (rest().substr(0, expected.size()) != expected) return false;
    mAt += expected.size();
    return true;
}

std::string_view Cursor::word() {
    blanks();
    return run([](char c) { return !isBlank(c); });
}

}  // namespace refhost

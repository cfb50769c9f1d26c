#include <algorithm>
#include <istream>
#include <string>
#include <utility>
#include <vector>

#include "platform/control/Properties.h"

namespace aftplatform::properties {
namespace {

constexpr std::string_view kBlank = " \t\v\f\r";
constexpr std::string_view kBetween = "]: [";  // between key and value, as getprop prints

std::string_view withoutLeadingBlank(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlank), text.size()));
    return text;
}

std::string_view withoutTrailingBlank(std::string_view text) {
    return text.substr(0, text.find_last_not_of(kBlank) + 1);
}

bool saysNothing(std::string_view line) {
    if (line.empty() || line.front() == '#') return true;
    constexpr std::string_view import = "import";
    return line.starts_with(import) && line.size() > import.size() &&
           kBlank.find(line[import.size()]) != std::string_view::npos;
}

bool beginsPrintedEntry(std::string_view line) {
    return line.starts_with('[') && line.find(kBetween) != std::string_view::npos;
}

/// Reads a text once, from its first line to its last.
class Reader {
  public:
    Reader(std::istream& text, std::string_view sourceName, size_t longestValue)
        : mText(text), mSourceName(sourceName), mLongestValue(longestValue) {}

    Entries readAll() {
        if (!mText) fail("(no key)", "the text cannot be read, expected an open file");
        while (nextLine()) {
            const std::string_view line = withoutLeadingBlank(mLine);
            if (saysNothing(line)) continue;
            mEntryLine = mLineNumber;
            line.front() == '[' ? readPrinted(std::string(line)) : readAssignment(line);
        }
        mEntryLine = mLineNumber + 1;
        if (mText.bad()) fail("(no key)", "reading failed, expected another line or the end");
        return std::move(mEntries);
    }

  private:
    bool nextLine() {
        if (!std::getline(mText, mLine)) return false;
        if (mLine.ends_with('\r')) mLine.pop_back();
        ++mLineNumber;
        return true;
    }

    void readAssignment(std::string_view line) {
        const size_t equals = line.find('=');
        if (equals == std::string_view::npos) fail(line, "there is no '=', expected key=value or [key]: [value]");
        take(withoutTrailingBlank(line.substr(0, equals)), withoutLeadingBlank(line.substr(equals + 1)));
    }

    void readPrinted(const std::string& entry) {
        const size_t between = entry.find(kBetween);
        if (between == std::string::npos) fail(entry, "the entry begins with '[', expected [key]: [value]");
        const std::string key = entry.substr(1, between - 1);
        std::string value = entry.substr(between + kBetween.size());
        while (!value.ends_with(']')) {
            // The next entry within a value is a bracket forgotten: it must not swallow that entry.
            if (!nextLine() || beginsPrintedEntry(mLine))
                fail(key, "the value has no end, expected ']' at a line's end");
            value.append("\n").append(mLine);
        }
        value.pop_back();
        take(key, value);
    }

    void take(std::string_view key, std::string_view value) {
        if (key.empty()) fail("(no key)", "the key is empty, expected a name before the value");
        if (value.size() > mLongestValue) {
            fail(key, "the value has " + std::to_string(value.size()) + " bytes, expected " +
                          std::to_string(mLongestValue) + " at most");
        }
        mEntries.emplace_back(key, value);
    }

    [[noreturn]] void fail(std::string_view key, std::string_view what) const {
        throw ParseError(mSourceName + ":" + std::to_string(mEntryLine) + ": " + std::string(key) + ": " +
                         std::string(what));
    }

    std::istream& mText;
    const std::string mSourceName;
    const size_t mLongestValue;
    std::string mLine;
    size_t mLineNumber = 0;
    size_t mEntryLine = 0;  // where the entry in hand began
    Entries mEntries;
};

}  // namespace

ParseError::~ParseError() = default;

Entries parse(std::istream& text, std::string_view sourceName) {
    return Reader(text, sourceName, std::string::npos).readAll();
}

void load(std::istream& text, std::string_view sourceName) {
    for (const auto& [key, value] : Reader(text, sourceName, kMaxValueLength).readAll()) set(key, value);
}

}  // namespace aftplatform::properties

#include <fmt/format.h>

#include <limits>

#include "refhost/recording/Readers.h"
#include "refhost/recording/Text.h"

namespace refhost {

namespace {

/// Reads the line-oriented format: a letter, a colon, fields separated by blanks, and free text after the last field.
class EvemuReader {
  public:
    explicit EvemuReader(const std::string& file) {
        mRecording.file = file;
        mRecording.format = "evemu";
    }

    Recording read(std::string_view text) {
        Lines lines(text);
        bool ended = false;
        while (lines.next()) {
            mLine = lines.number();
            ended = ended || endsReading(lines.line());
            if (ended || !readLine(lines.line())) skipLine(mRecording, mLine, lines.line());
        }
        mRecording.lines = lines.number();
        return std::move(mRecording);
    }

  private:
    /// Among the events, a line of two characters or less is where the players of this format stop.
    bool endsReading(std::string_view line) const { return !mRecording.events.empty() && line.size() <= 2; }

    bool readLine(std::string_view line) {
        if (isBlankLine(line)) return true;
        if (line[0] == '#') {
            if (mRecording.devices.empty()) readVersion(line);
            return true;
        }
        if (line.size() < 2 || line[1] != ':') return false;
        Cursor fields(line, 2);
        if (line[0] == 'E') {
            readEvent(fields);
            return true;
        }
        return mRecording.events.empty() && readDescription(line[0], fields);
    }

    /// `# EVEMU 1.3`; without this line the version is 1.0.
    void readVersion(std::string_view line) {
        Cursor at(line);
        if (!at.literal("# EVEMU ")) return;
        const auto major = decimalInt32(at.run(isDigit));
        if (!major || !at.literal(".")) return;
        const auto minor = decimalInt32(at.run(isDigit));
        if (!minor) return;
        mMajor = *major;
        mMinor = *minor;
    }

    bool readDescription(char letter, Cursor& fields) {
        switch (letter) {
            case 'N': readName(fields); return true;
            case 'I': requireHex("I", fields, 4, 0xffff, "bus, vendor, product and version"); return true;
            case 'P': requireHex("P", fields, 8, 0xff, "property bits"); return true;
            case 'B': requireHex("B", fields, 9, 0xff, "an event type and its bits"); return true;
            case 'A': readAxis(fields); return true;
            case 'L':
            case 'S': readState(letter, fields); return true;
            default: return false;
        }
    }

    void readName(Cursor& fields) {
        fields.literal(" ");
        RecordedDevice& only = device();
        if (!only.name.empty()) fail("N", "a second device; a file of this format holds one");
        only.name = std::string(fields.rest());
    }

    /// `A: CC min max fuzz flat [resolution]`, the code in hexadecimal, the rest signed decimal.
    void readAxis(Cursor& fields) {
        const auto code = hexField(fields, 0xffff);
        if (!code) fail("A", "the axis is not a hexadecimal code");
        const bool hasResolution = mMajor > 1 || (mMajor == 1 && mMinor >= 2);
        const size_t expected = hasResolution ? 5 : 4;
        std::vector<int32_t> numbers;
        while (numbers.size() <= expected) {
            const auto number = decimalInt32(fields.word());
            if (!number) break;
            numbers.push_back(*number);
        }
        if (numbers.size() != expected) {
            fail("A", fmt::format(
                          "axis {:02x} has {} decimal numbers after its code; version {}.{} has exactly {}: min, max, "
                          "fuzz, flat{}",
                          *code, numbers.size() > expected ? "more" : std::to_string(numbers.size()), mMajor, mMinor,
                          expected, hasResolution ? ", resolution" : ""));
        }
        device().axes[static_cast<uint16_t>(*code)] = {numbers[0], numbers[1]};
    }

    void readState(char letter, Cursor& fields) {
        if (!hexField(fields, 0xffff) || !decimalInt32(fields.word())) {
            fail(std::string(1, letter), "expected a hexadecimal code and a decimal state");
        }
        device();
    }

    void requireHex(const char* key, Cursor& fields, size_t count, uint32_t largest, const char* what) {
        for (size_t i = 0; i < count; ++i) {
            if (!hexField(fields, largest)) fail(key, fmt::format("expected {} hexadecimal fields: {}", count, what));
        }
        device();
    }

    /// `E: sec.usec TTTT CCCC VVVV`: type and code hexadecimal, the value signed decimal padded with zeros ("0069",
    /// "-001"), and usec a count: "0.5" is five microseconds.
    void readEvent(Cursor& fields) {
        fields.blanks();
        const auto seconds = decimalNumber(fields.run(isDigit));
        const bool point = fields.literal(".");
        const auto micros = decimalNumber(fields.run(isDigit));
        const auto timeUs = seconds && point && micros ? microseconds(*seconds, *micros) : std::nullopt;
        if (!timeUs || !isBlank(fields.peek())) fail("E: time", "expected seconds.microseconds, both decimal");
        const auto type = hexField(fields, 0xffff);
        if (!type) fail("E: type", "expected a hexadecimal event type such as 0003");
        const auto code = hexField(fields, 0xffff);
        if (!code) fail("E: code", "expected a hexadecimal event code such as 0035");
        const std::string_view word = fields.word();
        const auto value = decimalInt32(word);
        if (!value) {
            fail("E: value",
                 fmt::format("'{}' is no signed decimal number of 32 bits such as 0069 or -001", word.substr(0, 20)));
        }
        device();
        mRecording.events.push_back(
            {*timeUs, 0, mLine, static_cast<uint16_t>(*type), static_cast<uint16_t>(*code), *value});
    }

    static std::optional<uint32_t> hexField(Cursor& fields, uint32_t largest) {
        const auto number = hexNumber(fields.word());
        return number && *number <= largest ? number : std::nullopt;
    }

    RecordedDevice& device() {
        if (mRecording.devices.empty()) mRecording.devices.emplace_back().line = mLine;
        return mRecording.devices.front();
    }

    [[noreturn]] void fail(const std::string& key, const std::string& text) const {
        throw InputError(mRecording.file, mLine, key, text);
    }

    Recording mRecording;
    uint32_t mLine = 0;
    int32_t mMajor = 1;
    int32_t mMinor = 0;
};

}  // namespace

Recording readEvemu(std::string_view text, const std::string& file) { return EvemuReader(file).read(text); }

Recording readEvemu(std::istream& in, const std::string& file) { return readEvemu(readAll(in), file); }

}  // namespace refhost

#include "RecordingText.h"
#include "refhost/recording/Readers.h"

using namespace refhost;

namespace {

constexpr const char* kPanel =
    "# EVEMU 1.3\n"
    "N: CoolTouch\xc2\xae System\n"
    "I: 0003 2575 0204 0111\n"
    "\n"
    "P: 02 00 00 00 00 00 00 00\n"
    "B: 00 0b 00 00 00 00 00 00 00\n"
    "A: 35 -10 32767 0 0 55\t# ABS_MT_POSITION_X\n"
    "L: 00 1\n"
    "S: 0a 1\n"
    "E: 0.000001 0003 0035 0810\t# EV_ABS / ABS_MT_POSITION_X  810\n"
    "noise\n"
    "E: 0.5 0003 0039 -001\r\n"
    "E: 1382570977.035628 0003 002f 4\n";

// The panel's name or range would be lost, or a pressed-down decimal number read as hexadecimal, and fingers be
// elsewhere.
TEST(EvemuReader, ReadsDescriptionAndEvents) {
    const Recording recording = readEvemu(kPanel, "in");
    ASSERT_EQ(recording.devices.size(), 1u);
    EXPECT_EQ(recording.devices[0].name, "CoolTouch\xc2\xae System");
    const auto& [minimum, maximum] = recording.devices[0].axes.at(0x35);
    EXPECT_TRUE(minimum == -10 && maximum == 32767) << minimum << ".." << maximum;
    EXPECT_EQ(eventsOf(recording, true), "1/0:3 53 810, 5/0:3 57 -1, 1382570977035628/0:3 47 4; skipped 11");
}

// Events behind the place where players of the format stop would be replayed here and nowhere else.
TEST(EvemuReader, StopsAtAShortLineAmongEvents) {
    const auto recording = readEvemu("\nE: 0.0 0003 0035 1\nabc\nE: 0.1 0003 0035 2\nab\nE: 0.2 0003 0035 3\n", "in");
    EXPECT_EQ(eventsOf(recording), "0:3 53 1, 0:3 53 2; skipped 3 5 6");
}

// A damaged file would be replayed with wrong coordinates, or refused without saying where to look.
TEST(EvemuReader, RefusesMalformedLinesByFileLineAndKey) {
    const auto read = [](const std::string& text) { readEvemu(text, "in"); };
    expectRefusals(read, "in:",
                   {{"E: 0.0 0003 0035 00ff\n", "1: E: value: '00ff'"},
                    {"\nE: 0.0 0003 0035 4294967295\n", "2: E: value: "},
                    {"E: 0.0 0003 0035\n", "1: E: value: ''"},
                    {"E: 0.0 0x03 0035 1\n", "1: E: type: "},
                    {"E: 0 0003 0035 1\n", "1: E: time: "},
                    {"E: 0.1000000 0003 0035 1\n", "1: E: time: "},
                    {"# EVEMU 1.3\nA: 35 0 100 0 0\n", "2: A: axis 35 has 4 "},
                    {"A: 35 0 100 0 0 0\n", "1: A: axis 35 has more "},
                    {"A: zz 0 100 0 0\n", "1: A: "},
                    {"I: 0003 2575 0204\n", "1: I: expected 4 "},
                    {"B: 00 0b 00 00 00 00 00 00 100\n", "1: B: expected 9 "},
                    {"N: one\nN: two\n", "2: N: "}});
    EXPECT_EQ(errorOf([&] { read("# EVEMU 1.1\nA: 35 0 100 0 0\n"); }), "");
}

}  // namespace

#include <gtest/gtest.h>

#include "RecordingText.h"
#include "refhost/recording/Readers.h"

namespace refhost {
namespace {

struct LineCase {
    const char* what;
    const char* text;
    const char* events;
    const char* skipped;
};

// A finger would be missing or in a wrong place because the recording was made with other options or came through a
// phone's shell, a terminal or an editor.
TEST(GeteventReader, ReadsAnEventInEveryFormItIsPrintedIn) {
    const LineCase cases[] = {
        {"bare", "0003 0035 ffffffff\n", "0:3 53 -1", ""},
        {"labels, ending in blanks", "EV_ABS       ABS_MT_POSITION_X    00000251            \r\n", "0:3 53 593", ""},
        {"time and path", "[    5686.076508] /dev/input/event2: 0003 0039 00000001\n", "0:3 57 1", ""},
        {"path alone", "/dev/input/event2: EV_KEY       BTN_TOUCH            DOWN\n", "0:1 330 1", ""},
        {"key labels", "EV_KEY KEY_POWER UP\nEV_KEY KEY_POWER REPEAT\n", "0:1 116 0, 0:1 116 2", ""},
        {"tool label", "EV_ABS       ABS_MT_TOOL_TYPE     MT_TOOL_PALM        \n", "0:3 55 2", ""},
        {"hex code under a label", "EV_SW        0010                 00000001            \n", "0:5 16 1", ""},
        {"unknown type", "0018         0001                 00000002            \n", "0:24 1 2", ""},
        {"cut name", "EV_SW        SW_JACK_PHYSICAL_INS 00000001\n", "0:5 7 1", ""},
        {"cut name of two keys", "EV_KEY       KEY_KBDINPUTASSIST_P DOWN\n", "", "1"},
        {"a code's other name", "EV_KEY       BTN_DIGI             DOWN\n", "0:1 320 1", ""},
        {"upper case", "0003 0039 FFFFFFFF\n", "0:3 57 -1", ""},
        {"rate", "0000 0000 00000000 rate 125\n0003 0035 00000001\n", "0:0 0 0, 0:3 53 1", ""},
        {"stray characters", "$[   1.000001] 0003 0035 00000001\n^C/dev/input/event1: 0003 0036 00000002\n",
         "0:3 53 1, 1:3 54 2", ""},
        {"a shell's line ends", "0003 0035 00000001\r\r\n", "0:3 53 1", ""},
        {"blank lines", "\n  \r\n\t\n0003 0035 00000001\n", "0:3 53 1", ""},
        {"no line ends", "0003 0035 000000010003 0036 000000020000 0000 00000000", "0:3 53 1, 0:3 54 2, 0:0 0 0", ""},
        {"no line ends, times", "[ 1.000000] 0003 0035 00000001[ 1.000000] 0000 0000 00000000", "0:3 53 1, 0:0 0 0",
         ""},
        {"no line ends, paths", "/dev/input/event1: 0003 0035 00000001/dev/input/event1: 0000 0000 00000000",
         "0:3 53 1, 0:0 0 0", ""},
        {"no line ends, rate", "0000 0000 00000000 rate 900003 0035 000000010000 0000 00000000",
         "0:0 0 0, 0:3 53 1, 0:0 0 0", ""},
        {"no line ends, labels",
         "EV_KEY       BTN_TOUCH            UP                  EV_SYN       SYN_REPORT           "
         "00000000             rate 90EV_ABS       ABS_MT_SLOT          00000001",
         "0:1 330 0, 0:0 0 0, 0:3 47 1", ""},
        {"no line ends, cut", "0003 0035 0000000100", "", "1"},
        {"no line ends, cut later", "0000 0000 000000000003 0035 0000000100", "0:0 0 0, 0:3 53 1", "1"},
        {"sendevent", "sendevent /dev/input/event2 3 57 -1\nadb shell sendevent /dev/input/event2: 3 57 4294967295\n",
         "0:3 57 -1, 0:3 57 -1", ""},
        {"sendevent beyond the kernel", "sendevent /dev/input/event2 3 57 4294967296\nsendevent /dev/x 32 0 0\n", "",
         "1 2"},
        {"a ninth digit", "0003 0035 000000251\n", "", "1"},
        {"messages", "could not open /dev/input/mice, Not a directory\nOnePlus3T:/ # getevent\n", "", "1 2"},
    };
    for (const LineCase& c : cases) {
        SCOPED_TRACE(c.what);
        const Recording recording = readGetevent(c.text, "in");
        EXPECT_EQ(eventsOf(recording), c.events);
        EXPECT_EQ(skippedLinesOf(recording), c.skipped);
    }
}

// A recording stopped by pulling the cable would be refused, or would end with a finger at a place it never was.
TEST(GeteventReader, SkipsALastLineCutAnywhere) {
    const std::string whole = "[   10.000001] /dev/input/event2: EV_ABS       ABS_MT_POSITION_X    00000251";
    const std::string hex = "[   10.000001] /dev/input/event2: 0003 0035 00000251";
    for (const std::string& line : {whole, hex}) {
        for (size_t length = 1; length < line.size(); ++length) {
            const Recording recording = readGetevent("0000 0000 00000000\n" + line.substr(0, length), "in");
            EXPECT_EQ(recording.events.size(), 1u) << length;
            EXPECT_EQ(skippedLinesOf(recording), "2") << length;
        }
    }
}

// Times would be off by as much as the seconds' padding or a missing time says, and speeds with them.
TEST(GeteventReader, KeepsTimes) {
    const Recording timed = readGetevent("[1427877119.997480] 0003 0035 00000001\n0000 0000 00000000\n", "in");
    EXPECT_EQ(eventsOf(timed, true), "1427877119997480/0:3 53 1, 1427877119997480/0:0 0 0");
    EXPECT_TRUE(timed.hasTimes);
    EXPECT_FALSE(readGetevent("0003 0035 00000001\n", "in").hasTimes);
    EXPECT_EQ(skippedLinesOf(readGetevent("[99999999999999.000001] 0003 0035 00000001\n", "in")), "1");
}

constexpr const char* kDescribed = R"(add device 1: /dev/input/event7
  name:     "say "hi""
could not get driver version for /dev/input/mice, Not a typewriter
  bus:      0018
  version   0100
  events:
    KEY (0001): 0074* 008b
    ABS (0003): ABS_MT_POSITION_X     : value 0, min -5, max 1199, fuzz 0, flat 0, resolution 0
                0036                  : value 0, min 0, max 2669, fuzz 0, flat 0
                ABS_MT_PRESSURE       : value 0, min 0, max 25
  input props:
    INPUT_PROP_DIRECT
add device 2: /dev/input/event0
  name:     ""
/dev/input/event7: 0003 0035 00000001
)";

// The panel would have no name to ask for and no range to scale by, or wrong ones.
TEST(GeteventReader, ReadsDescriptions) {
    const Recording recording = readGetevent(kDescribed, "in");
    ASSERT_EQ(recording.devices.size(), 2u);
    const RecordedDevice& panel = recording.devices[0];
    EXPECT_EQ(panel.path, "/dev/input/event7");
    EXPECT_EQ(panel.name, "say \"hi\"");
    EXPECT_EQ(panel.line, 1u);
    ASSERT_EQ(panel.axes.size(), 2u);
    EXPECT_EQ(panel.axes.at(0x35).minimum, -5);
    EXPECT_EQ(panel.axes.at(0x36).maximum, 2669);
    EXPECT_EQ(skippedLinesOf(recording), "3 10") << "the message, and the axis that was cut";
    EXPECT_EQ(recording.lines, 15u);
}

// After a panel is unplugged, the finger that was down would stay down for the rest of the replay; or the events of
// whatever is plugged in at its path would be taken for touches.
TEST(GeteventReader, FollowsHotplug) {
    const std::string touch = "/dev/input/event1: 0003 0035 00000001\n";
    const std::string add = "add device 3: /dev/input/event1\n";
    const std::string text = add + "  name:     \"panel\"\n" + touch + "remove device 3: /dev/input/event1\n" + add;

    const Recording same = readGetevent(text + "  name:     \"panel\"\n" + touch, "in");
    EXPECT_EQ(eventsOf(same), "0:3 53 1, 0:0 3 0, 0:0 0 0, 0:3 53 1");
    const Recording another = readGetevent(text + "  name:     \"mouse\"\n" + touch, "in");
    EXPECT_EQ(eventsOf(another), "0:3 53 1, 0:0 3 0, 0:0 0 0, 1:3 53 1");
    EXPECT_EQ(another.devices[1].name, "mouse");
}

// Opening a damaged file would hang the tool or run it out of memory.
TEST(GeteventReader, TakesLongLinesOfAnything) {
    for (const char* piece :
         {"[", "[ 1", "/dev/", "0003 ", "EV_", "EV_ABS ", "rate ", "0", "0000 0000 00000000 rate 1", "\xff"}) {
        std::string line;
        while (line.size() < 1'000'000) line += piece;
        const Recording recording = readGetevent(line, "in");
        EXPECT_EQ(recording.lines, 1u) << piece;
        for (const SkippedLine& skipped : recording.skipped) EXPECT_EQ(skipped.text.size(), 60u) << piece;
    }
}

}  // namespace
}  // namespace refhost

#include "RecordingText.h"
#include "refhost/recording/DeviceChoice.h"
#include "refhost/recording/Readers.h"

using namespace refhost;

namespace {

// A finger would be missing or in a wrong place because the recording was made with other options or came through a
// phone's shell, a terminal or an editor.
TEST(GeteventReader, ReadsAnEventInEveryFormItIsPrintedIn) {
    const std::pair<std::string, std::string> cases[] = {
        {"0003 0035 ffffffff\n0003 0039 FFFFFFFF\n", "0:3 53 -1, 0:3 57 -1"},
        {"EV_ABS       ABS_MT_POSITION_X    00000251            \r\n", "0:3 53 593"},
        {"[    5686.076508] /dev/input/event2: 0003 0039 00000001\n", "0:3 57 1"},
        {"/dev/a: EV_KEY BTN_TOUCH DOWN\n/dev/a: EV_KEY KEY_POWER REPEAT\n", "0:1 330 1, 0:1 116 2"},
        {"EV_ABS       ABS_MT_TOOL_TYPE     MT_TOOL_PALM        \n", "0:3 55 2"},
        {"EV_SW        0010                 00000001            \n", "0:5 16 1"},  // a code without a name
        {"EV_KEY       KEY_KBDINPUTASSIST_P DOWN\n", "; skipped 1"},               // a cut name of two keys
        // a code's other name, and a cut one
        {"EV_KEY BTN_DIGI DOWN\nEV_SW SW_JACK_PHYSICAL_INS 00000001\n", "0:1 320 1, 0:5 7 1"},
        {"$[ 1.000001] 0003 0035 00000001\n^C/dev/a: 0003 0036 00000002\n", "0:3 53 1, 1:3 54 2"},
        {"\n  \r\n\t\n0003 0035 00000001\r\r\n", "0:3 53 1"},
        {"0003 0035 000000010003 0036 000000020000 0000 00000000", "0:3 53 1, 0:3 54 2, 0:0 0 0"},
        {"[ 1.000000] 0003 0035 00000001[ 1.000000] 0000 0000 00000000", "0:3 53 1, 0:0 0 0"},
        {"/dev/a: 0003 0035 00000001/dev/a: 0000 0000 00000000", "0:3 53 1, 0:0 0 0"},
        {"0000 0000 00000000 rate 900003 0035 000000010000 0000 00000000\n", "0:0 0 0, 0:3 53 1, 0:0 0 0"},
        {"EV_KEY BTN_TOUCH UP                  EV_SYN SYN_REPORT 00000000       rate 90EV_ABS ABS_MT_SLOT 00000001",
         "0:1 330 0, 0:0 0 0, 0:3 47 1"},
        {"0000 0000 000000000003 0035 0000000100", "0:0 0 0, 0:3 53 1; skipped 1"},
        {"sendevent /dev/a 3 57 -1\nadb shell sendevent /dev/a: 3 57 4294967295\n", "0:3 57 -1, 0:3 57 -1"},
        {"sendevent /dev/a 3 57 4294967296\nsendevent /dev/a 32 0 0\n", "; skipped 1 2"},
        {"[99999999999999.000001] 0003 0035 00000001\n", "; skipped 1"},  // more seconds than there are
        {"0003 0035 000000251\ncould not open /dev/input/mice, Not a directory\n", "; skipped 1 2"},
    };
    for (const auto& [text, events] : cases) EXPECT_EQ(eventsOf(readGetevent(text, "in")), events) << text;
}

// A recording stopped by pulling the cable would be refused, or would end with a finger at a place it never was.
TEST(GeteventReader, SkipsALastLineCutAnywhere) {
    for (const std::string event : {"EV_ABS       ABS_MT_POSITION_X    00000251", "0003 0035 00000251"}) {
        const std::string line = "[   10.000001] /dev/input/event2: " + event;
        for (size_t length = 1; length < line.size(); ++length) {
            const Recording recording = readGetevent("0000 0000 00000000\n" + line.substr(0, length), "in");
            EXPECT_EQ(eventsOf(recording), "0:0 0 0; skipped 2") << length;
        }
    }
}

// The panel would have no name to ask for and no range to scale by, or wrong ones.
TEST(GeteventReader, ReadsDescriptions) {
    const char* text = R"(add device 1: /dev/input/event7
  name:     "say "hi""
could not get driver version for /dev/input/mice, Not a typewriter
    KEY (0001): 0074* 008b
    ABS (0003): ABS_MT_POSITION_X     : value 0, min -5, max 1199, fuzz 0, flat 0, resolution 0
                0036                  : value 0, min 0, max 2669, fuzz 0, flat 0
                ABS_MT_PRESSURE       : value 0, min 0, max 25, fuzz 0
)";
    const Recording recording = readGetevent(text, "in");
    const RecordedDevice& panel = recording.devices.at(0);
    EXPECT_EQ(describeDevice(panel), "/dev/input/event7 \"say \"hi\"\"");
    ASSERT_EQ(panel.axes.size(), 2u);
    EXPECT_EQ(panel.axes.at(0x35).minimum, -5);
    EXPECT_EQ(panel.axes.at(0x36).maximum, 2669);
    EXPECT_EQ(eventsOf(recording), "; skipped 3 7") << "the message, and the axis that was cut";
}

// After a panel is unplugged, the finger that was down would stay down for the rest of the replay; or the events of
// whatever is plugged in at its path would be taken for touches.
TEST(GeteventReader, FollowsHotplug) {
    const std::string touch = "/dev/input/event1: 0003 0035 00000001\n";
    const std::string add = "add device 3: /dev/input/event1\n  name:     \"panel\"\n";
    const std::string gone = add + touch + "remove device 3: /dev/input/event1\n";
    EXPECT_EQ(eventsOf(readGetevent(gone + add + touch, "in")), "0:3 53 1, 0:0 3 0, 0:0 0 0, 0:3 53 1");
    const std::string mouse = "add device 3: /dev/input/event1\n  name:     \"mouse\"\n";
    EXPECT_EQ(eventsOf(readGetevent(gone + mouse + touch, "in")), "0:3 53 1, 0:0 3 0, 0:0 0 0, 1:3 53 1");
}

// Opening a damaged file would hang the tool or run it out of memory.
TEST(GeteventReader, TakesLongLinesOfAnything) {
    for (const char* piece : {"[ 1", "/dev/", "0003 ", "EV_ABS ", "rate ", "0", "0000 0000 00000000 rate 1", "\xff"}) {
        std::string line;
        while (line.size() < 1'000'000) line += piece;
        const Recording recording = readGetevent(line, "in");
        EXPECT_EQ(recording.lines, 1u) << piece;
        for (const SkippedLine& skipped : recording.skipped) EXPECT_EQ(skipped.text.size(), 60u) << piece;
    }
}

}  // namespace

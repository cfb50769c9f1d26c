#include <gtest/gtest.h>

#include "RecordingText.h"
#include "refhost/recording/DeviceChoice.h"
#include "refhost/recording/Readers.h"

namespace refhost {
namespace {

const std::string kTwoDevices = R"(version: 1
devices:
- node: /dev/input/event14
  evdev:
    name: "Panel"
    absinfo:
      53: [-4, 1051, 0, 0, 12]
  events:
  - evdev:
    - [  0,      0,   3,  53,   608] # EV_ABS / ABS_MT_POSITION_X
    - [  0,      0,   0,   0,     0]
  - libinput:
    - {time: 0.0, type: TOUCH_DOWN}
  - evdev:
    - [  1,     20,   3,  57,    -1]
- node: /dev/input/event3
  evdev:
  events:
- events:
  - evdev:
    - [  0,      0,   1, 116,     1]
  - evdev:
    - [  0, 500000,   1, 116,     0]
)";

const std::string kTwoDevicesEvents = "0/0:3 53 608, 0/0:0 0 0, 0/2:1 116 1, 500000/2:1 116 0, 1000020/0:3 57 -1";

// A key pressed during a touch would be replayed behind it, or a device that sent nothing would make all unreadable.
TEST(LibinputReader, MergesDevicesByTime) {
    const Recording recording = readLibinput(kTwoDevices, "in");
    EXPECT_EQ(eventsOf(recording, true), kTwoDevicesEvents);
    EXPECT_EQ(recording.events[0].line, 10u);
    ASSERT_EQ(recording.devices.size(), 3u);
    EXPECT_EQ(describeDevice(recording.devices[0]), "/dev/input/event14 \"Panel\"");
    EXPECT_EQ(recording.devices[0].axes.at(53).minimum, -4);
    EXPECT_EQ(recording.devices[1].line, 16u);
}

// A recording pasted from a terminal or taken out of a mail would have to be cleaned up by hand first.
TEST(LibinputReader, TakesPastedAndQuotedText) {
    const std::string menu = "/dev/input/event14:\tPanel\nSelect the device event number [0-14]: \n";
    const Recording pasted = readLibinput(menu + kTwoDevices + "^C\nme@host:~$ \n", "in");
    EXPECT_EQ(eventsOf(pasted, true), kTwoDevicesEvents + "; skipped 1 2 26 27");

    std::string quoted;
    for (const char c : "\n" + kTwoDevices) quoted += c == '\n' ? std::string("\n> ") : std::string(1, c);
    quoted += "\n>\nSo what do you see here?\n>   # the end\n";
    const Recording mailed = readLibinput("On Monday he wrote:" + quoted, "in");
    EXPECT_EQ(eventsOf(mailed, true), kTwoDevicesEvents + "; skipped 1 27");
    EXPECT_EQ(mailed.quotedLines, 26u);
}

// A recorder that was killed would leave a file that cannot be used at all.
TEST(LibinputReader, DropsALastLineThatWasCut) {
    for (const char* line : {"    - [  0, 500000,   1, 116,", "  - evdev:\n    - [  0, 500000,   1, 116,     0]"}) {
        const size_t start = kTwoDevices.rfind(line);
        ASSERT_NE(start, std::string::npos);
        for (size_t cut = 7; cut < 22; ++cut)
            EXPECT_EQ(errorOf([&] { readLibinput(kTwoDevices.substr(0, start + cut), "in"); }), "") << cut;
    }
}

// A damaged file would be replayed with wrong events, or crash the tool, or be refused without saying where to look.
TEST(LibinputReader, RefusesWhatItCannotRead) {
    const std::string head = "version: 1\ndevices:\n- node: /dev/input/event1\n  events:\n  - evdev:\n";
    // A few lines of aliases could make the tool read for hours.
    std::string aliases = "version: 1\ndevices:\n- events:\n  - evdev: &f\n    - &e [0, 0, 3, 53, 1]\n";
    for (int i = 0; i < 100; ++i) aliases += "    - *e\n";
    for (int i = 0; i < 100; ++i) aliases += "  - {evdev: *f}\n";
    expectRefusals([](const std::string& text) { readLibinput(text, "in"); }, "in:",
                   {{head + "    - [0, 0, 3, 53]\n", "6: events: evdev: expected a list of 5"},
                    {head + "    - [0, 0, 3, 65536, 1]\n", "6: events: evdev: '65536'"},
                    {head + "    - [0, 0, 3, 53, 2147483648]\n", "6: events: evdev: '2147483648'"},
                    {head + "    - [0, 1000000, 3, 53, 1]\n", "6: events: evdev: no time"},
                    {aliases, "5: events: evdev: aliases make more"},
                    {head + "---\n" + kTwoDevices, "6: YAML: more behind the end"},
                    {"version: 2\ndevices:\n", "1: version: '2'"},
                    {"version: 1\n", "1: devices: missing"},
                    {"version: 1\ndevices: [\n#", "3: YAML: "},
                    {"version: 1\ndevices:\n- 3\n", "3: devices: expected keys"},
                    {"version: 1\ndevices:\n- evdev:\n    absinfo:\n      53: [0, 1]\n", "5: absinfo: 53: 2 numbers"},
                    {"version: 1\ndevices: " + std::string(100'000, '[') + "\n", "3: YAML: "},
                    {"", "1: devices: "}});
}

}  // namespace
}  // namespace refhost

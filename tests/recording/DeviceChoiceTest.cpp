#include "RecordingText.h"
#include "refhost/recording/DeviceChoice.h"
#include "refhost/recording/Readers.h"

using namespace refhost;

namespace {

const std::string kPhone = R"(add device 1: /dev/input/event6
  name:     "fp"
add device 2: /dev/input/event1
  name:     "panel"
add device 3: /dev/input/event0
  name:     "panel"
/dev/input/event6: 0001 0161 00000001
/dev/input/event1: 0001 014a 00000001
/dev/input/event1: 0003 0035 00000001
)";
const std::string kTwoPanels = kPhone + "/dev/input/event0: 0003 0036 00000001\n";

// The touches of another device than the one meant would be replayed.
TEST(DeviceChoice, FindsTheDeviceAskedForOrTheOnlyOneThatTouches) {
    const Recording one = readGetevent(kPhone, "in");
    EXPECT_EQ(chooseTouchDevice(one, std::nullopt), 1u);
    EXPECT_EQ(chooseTouchDevice(one, "panel"), 1u) << "two bear this name, one of them touches";
    const Recording two = readGetevent(kTwoPanels, "in");
    EXPECT_EQ(chooseTouchDevice(two, "event0"), 2u);
    EXPECT_EQ(chooseTouchDevice(two, "/dev/input/event1"), 1u);
    EXPECT_TRUE(sendsKeys(one, 0));
    EXPECT_FALSE(sendsKeys(one, 1)) << "BTN_TOUCH is no key";
}

// Whoever brings a recording without touches would be told only that there are none, and not what to do about it.
TEST(DeviceChoice, SaysWhatThereIsInstead) {
    const std::string axis = "    ABS (0003): 0035  : value 0, min 0, max 9, fuzz 0, flat 0, resolution 0\n";
    const std::string unnamed = "1: device: the unnamed device of line 1 ";
    expectRefusals(
        [](const std::string& text) { chooseTouchDevice(readGetevent(text, "in"), std::nullopt); }, "in:",
        {{kTwoPanels, "10: device: 2 devices send touches, expected the name or path of one: /dev/input/event1 "},
         {"add device 1: /dev/a\nadd device 2: /dev/b\n" + axis, "2: device: the recording only describes"},
         {"add device 1: /dev/a\n  name: \"a\"\n", "1: device: the recording only lists devices (/dev/a \"a\")"},
         {"0003 0002 00000001\n0003 0003 00000001\n0001 014a 00000001\n", unnamed + "sends ABS_Z, ABS_RX, which"},
         {"0001 014a 00000001\n0003 0000 00000001\n", "2: device: the unnamed device of line 1 is single-"},
         {"0003 0039 00000001\n", unnamed + "sends multi-touch events without"},
         {"0002 0000 00000001\n", unnamed + "sends events, but none of touch"},
         {"nothing\n", "1: device: the recording holds no event"}});
    expectRefusals([](const std::string& name) { chooseTouchDevice(readGetevent(kPhone, "in"), name); }, "in:",
                   {{"event", "1: device: no device goes by 'event', expected one of: /dev/input/event6 \"fp\", "},
                    {"fp", "7: device: there are key events only: /dev/input/event6 \"fp\" sends KEY_SELECT;"},
                    {"event0", "5: device: /dev/input/event0 \"panel\" is described here but sends no event"}});
    EXPECT_THROW(chooseTouchDevice(readGetevent(kTwoPanels, "in"), "panel"), InputError) << "two bear this name";
}

}  // namespace

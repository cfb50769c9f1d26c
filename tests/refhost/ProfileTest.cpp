#include <fmt/format.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "refhost/profile/Profile.h"
#include "tests/recording/RecordingText.h"

namespace refhost {
namespace {

const std::string kTouch = "touch: {name: panel, id: 3, surface: {width: 1080, height: 2340}}\n";
const std::string kOpen = "touch:\n  name: panel\n  ";  // a touch device that still lacks something
const std::string kSensors = kTouch + "sensors: [{type: 1, handle: 7}, {type: fold_angle, handle: 8}]\ntimeline:\n";
const std::string kScan = kTouch + "keys: {name: k, id: 5, scancodes: {";

// An engineer whose profile has a fault would be sent to the wrong place, or replay on another phone than the one
// meant.
TEST(Profile, NamesTheFault) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "1: profile: not a map"},
        {"note: a\n", "1: touch: missing"},
        {kTouch + "screen: {}\n", "2: screen: unknown key"},
        {kOpen + "id: 3\n  surface:\n    height: 2340\n", "5: touch.surface.width: missing"},
        {kOpen + "id: 3.5\n", "3: touch.id: not an integer"},
        {kOpen + "id: 2147483648\n", "3: touch.id: does not fit; expected -2147483648 to 2147483647"},
        {kTouch + "properties:\n  a: " + std::string(92, 'v') + "\n", "3: properties.a: 92 bytes long; expected at mo"},
        {kTouch + "properties:\n  a: 1\n  a: 2\n", "4: properties.a: given twice"},
        {kScan + "KEY_NONE: 1}}\n", "2: keys.scancodes.KEY_NONE: no scan code"},
        {kScan + "0x161: 1,\n KEY_SELECT: 2}}\n", "3: keys.scancodes.KEY_SELECT: given twice"},
        {kTouch + "windows: [{name: w}]\nfocused: 1\n", "3: focused: no window of this index"},
        {kTouch + "timeline:\n  - {at: 2, rotate: 1}\n  - {at: 1.9, rotate: 0}\n", "4: timeline[1].at: earlier"},
        {kTouch + "timeline: [{at: 1}]\n", "2: timeline[0]: nothing happens"},
        {kTouch + "windows: [{name: w}]\ntimeline: [{at: 1, windows: [], focused: 0}]\n", "3: timeline[0].focused: no"},
        {kTouch + "sensors:\n- {type: hall, handle: 7}\n",
         "3: sensors[0].type: no sensor type; expected a number, slide"},
        {kTouch + "sensors:\n- {type: 1, handle: 7}\n- {type: 2,\n   handle: 7}\n",
         "5: sensors[1].handle: sensors[0] has"},
        {kTouch + "timeline: [{at: 1, slide_cover: 1}]\n",
         "2: timeline[0].slide_cover: no sensor of type 65557; expected"},
        {kSensors + "- {at: 1, slide_cover: 3}\n", "4: timeline[0].slide_cover: expected 0 to 2"},
        {kSensors + "- at: 1\n  sensor: {values: [1]}\n", "5: timeline[0].sensor: neither type nor handle"},
        {kSensors + "- {at: 1, sensor: {type: 1, handle: 8}}\n",
         "4: timeline[0].sensor: no sensor of type 1 and handle 8"},
        {kSensors + "- {at: 1, fold_angle: {from: 0, samples: 0}}\n",
         "4: timeline[0].fold_angle.samples: expected 1 to 10"},
        {kSensors + "- {at: 1, fold_angle: {from: 0, samples: 9, every: 0}}\n",
         "4: timeline[0].fold_angle.every: expect"},
        {kSensors + "- {at: 1, sensor_service: {}}\n", "4: timeline[0].sensor_service: neither state nor fails"},
        {kSensors + "- {at: 1, sensor_service: {fails: {linkToDeath: noQueue}}}\n",
         "4: timeline[0].sensor_service.fails.linkToDeath: unknown \"noQueue\""},
    };
    for (const auto& [text, fault] : cases) {
        const std::string error = errorOf([&, profile = text] { parseProfile(profile, "phone.yaml", "."); });
        EXPECT_TRUE(beginsWith(error, "phone.yaml:" + fault)) << text << "\n" << error;
    }
}

// What getprop printed on the phone would be ignored, or would win over what the engineer tries out.
TEST(Profile, PropertiesFromAFileGiveWayToItsOwn) {
    const std::string folder = ::testing::TempDir();
    const std::string name = fmt::format("zqaft-{}.txt", getpid());
    const std::string profile = kTouch + "properties: {ro.b: 3}\nproperties_file: " + name;
    std::ofstream(folder + name) << "[ro.a]: [1]\r\n[ro.b]: [2]\r\n[ro.c]: []\r\n";
    const std::vector<std::pair<std::string, std::string>> expected = {{"ro.a", "1"}, {"ro.b", "3"}, {"ro.c", ""}};
    EXPECT_EQ(parseProfile(profile, "phone.yaml", folder).properties, expected);
    std::ofstream(folder + name) << "ro.a=1\n[ro.b]: 2\n";
    const std::string error = errorOf([&] { parseProfile(profile, "phone.yaml", folder); });
    EXPECT_TRUE(beginsWith(error, folder + name + ":2: [ro.b]: 2: ")) << error;
    std::remove((folder + name).c_str());
    EXPECT_THROW(parseProfile(profile, "phone.yaml", folder), InputError);
}

}  // namespace
}  // namespace refhost

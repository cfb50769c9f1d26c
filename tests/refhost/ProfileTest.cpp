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
const std::string kTimeline = kSensors + "- {at: 1, ";
const std::string kScan = kTouch + "keys: {name: k, id: 5, scancodes: {";

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

// An engineer whose profile has a fault would be sent to the wrong place, or replay on another phone than the one
// meant.
TEST(Profile, NamesTheFault) {
    const std::string entry = "4: timeline[0]", fails = "sensor_service: {fails: {linkToDeath: noQueue}}}\n";
    expectRefusals(
        [](const std::string& text) { parseProfile(text, "phone.yaml", "."); }, "phone.yaml:",
        {{"", "1: profile: not a map"},
         {"note: a\n", "1: touch: missing"},
         {kTouch + "screen: {}\n", "2: screen: unknown key"},
         {kTouch + "---\nkeys: {}\n", "2: yaml: more behind the end"},
         {kTouch + "note: \xe9\n", "2: note: not UTF-8"},
         {kTouch + "properties: {\xe9: a}\n", "2: properties: not UTF-8"},
         {kOpen + "id: 3\n  surface:\n    height: 2340\n", "5: touch.surface.width: missing"},
         {kOpen + "id: 3.5\n", "3: touch.id: not an integer"},
         {kOpen + "id: 2147483648\n", "3: touch.id: does not fit; expected -2147483648 to 2147483647"},
         {kTouch + "properties:\n  a: " + std::string(92, 'v') + "\n", "3: properties.a: 92 bytes long"},
         {kTouch + "properties:\n  a: 1\n  a: 2\n", "4: properties.a: given twice"},
         {kScan + "KEY_NONE: 1}}\n", "2: keys.scancodes.KEY_NONE: no scan code"},
         {kScan + "0x161: 1,\n KEY_SELECT: 2}}\n", "3: keys.scancodes.KEY_SELECT: given twice"},
         {kTouch + "windows: [{name: w}]\nfocused: 1\n", "3: focused: no window of this index"},
         {kTouch + "timeline:\n  - {at: 2, rotate: 1}\n  - {at: 1.9, rotate: 0}\n", "4: timeline[1].at: earlier"},
         {kTouch + "timeline: [{at: 1}]\n", "2: timeline[0]: nothing happens"},
         {kTouch + "windows: [{name: w}]\ntimeline: [{at: 1, windows: [], focused: 0}]\n", "3: timeline[0].focused: "},
         {kTouch + "sensors:\n- {type: hall, handle: 7}\n", "3: sensors[0].type: no sensor type; expected a number, "},
         {kTouch + "sensors: [{type: 1, handle: 7}, {type: 2,\n handle: 7}]\n",
          "3: sensors[1].handle: sensors[0] has it"},
         {kTouch + "timeline: [{at: 1, slide_cover: 1}]\n", "2: timeline[0].slide_cover: no sensor of type 65557; "},
         {kTimeline + "slide_cover: 3}\n", entry + ".slide_cover: expected 0 to 2"},
         {kTimeline + "sensor: {values: [1]}}\n", entry + ".sensor: neither type nor handle"},
         {kTimeline + "sensor: {type: 1, handle: 8}}\n", entry + ".sensor: no sensor of type 1 and handle 8"},
         {kTimeline + "fold_angle: {from: 0, samples: 0}}\n", entry + ".fold_angle.samples: expected 1 to 10000"},
         {kTimeline + "fold_angle: {from: 0, samples: 9, every: 0}}\n", entry + ".fold_angle.every: expected seconds"},
         {kTimeline + "fold_angle: &f {from: 0, samples: 10000}}\n" + repeated("- {at: 2, fold_angle: *f}\n", 9),
          "9: timeline[5]: more happens"},
         {kTouch + "windows: [{name: " + std::string(2'000'000, 'w') + "}]\ntimeline:\n" +
              repeated("- {at: 1, keyguard: true}\n", 40),
          "37: timeline[33]: more happens"},
         {kTimeline + "sensor_service: {}}\n", entry + ".sensor_service: neither state nor fails"},
         {kTimeline + fails, entry + ".sensor_service.fails.linkToDeath: unknown \"noQueue\""}});
}

// What getprop printed on the phone would be ignored, or would win over what the engineer tries out.
TEST(Profile, PropertiesFromAFileGiveWayToItsOwn) {
    const std::string folder = ::testing::TempDir();
    const std::string name = fmt::format("zqaft-{}.txt", getpid());
    const std::string profile = kTouch + "properties: {ro.b: 3}\nproperties_file: " + name;
    std::ofstream(folder + name) << "[ro.a]: [0]\r\n[ro.b]: [2]\r\n[ro.c]: []\r\n[ro.\xe9]: [1]\nro.a=1\nro.d=\xe9";
    const std::vector<std::pair<std::string, std::string>> expected = {{"ro.a", "1"}, {"ro.b", "3"}, {"ro.c", ""}};
    const Profile read = parseProfile(profile, "phone.yaml", folder);
    EXPECT_EQ(read.properties, expected);
    EXPECT_EQ(read.notes, std::vector{folder + name + ": 2 properties not in UTF-8 left out"}) << "a trace cannot";
    std::ofstream(folder + name) << "ro.a=1\n[ro.b]: 2\n";
    expectRefusals([&](const std::string& text) { parseProfile(text, "phone.yaml", folder); }, folder + name,
                   {{profile, ":2: [ro.b]: 2: "}});
    std::remove((folder + name).c_str());
    EXPECT_THROW(parseProfile(profile, "phone.yaml", folder), InputError);
}

}  // namespace
}  // namespace refhost

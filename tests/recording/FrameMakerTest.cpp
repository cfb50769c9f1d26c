#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>
#include <map>
#include <sstream>
#include <string>

#include "refhost/recording/FrameMaker.h"

using namespace refhost;

namespace {

const std::map<char, std::pair<uint16_t, uint16_t>> kCodes = {
    {'.', {EV_SYN, SYN_REPORT}},         {',', {EV_SYN, SYN_MT_REPORT}},      {'!', {EV_SYN, SYN_DROPPED}},
    {'i', {EV_ABS, ABS_MT_TRACKING_ID}}, {'x', {EV_ABS, ABS_MT_POSITION_X}},  {'y', {EV_ABS, ABS_MT_POSITION_Y}},
    {'p', {EV_ABS, ABS_MT_PRESSURE}},    {'m', {EV_ABS, ABS_MT_TOUCH_MAJOR}}, {'d', {EV_ABS, ABS_MT_DISTANCE}},
    {'t', {EV_ABS, ABS_MT_TOOL_TYPE}},   {'s', {EV_ABS, ABS_MT_SLOT}},        {'b', {EV_KEY, BTN_TOUCH}},
    {'n', {EV_ABS, ABS_MT_TOUCH_MINOR}}, {'w', {EV_ABS, ABS_MT_WIDTH_MAJOR}}, {'v', {EV_ABS, ABS_MT_WIDTH_MINOR}},
    {'o', {EV_ABS, ABS_MT_ORIENTATION}}, {'P', {EV_KEY, BTN_TOOL_PEN}},       {'L', {EV_ABS, ABS_MISC}},
    {'K', {EV_KEY, KEY_POWER}},          {'M', {EV_MSC, MSC_TIMESTAMP}},
};

/// A panel's events in short: a letter of the table above and a value each; one event a millisecond.
Recording panel(const std::string& script) {
    Recording recording;
    std::istringstream words(script);
    for (std::string word; words >> word;) {
        const auto [type, code] = kCodes.at(word[0]);
        const auto line = static_cast<uint32_t>(recording.events.size() + 1);
        const int32_t value = word.size() > 1 ? std::stoi(word.substr(1)) : 0;
        recording.events.push_back({1000 * int64_t{line}, 0, line, type, code, value});
    }
    return recording;
}

/// Each frame as `id@x,y` of its contacts, with h for hovering and p for a palm, before a bar: "0@1,2 1@3,4h||".
std::string framesOf(const std::string& script, FrameMaker::Counts* counts = nullptr) {
    const Recording recording = panel(script);
    FrameMaker maker(touchProtocolOf(recording, 0));
    std::string text;
    for (const KernelEvent& event : recording.events) {
        const auto frame = maker.feed(event);
        if (!frame) continue;
        EXPECT_EQ(frame->timeUs, event.timeUs);
        std::vector<std::string> contacts;
        for (const Contact& c : frame->contacts)
            contacts.push_back(fmt::format("{}@{},{}{}{}", c.id, c.x, c.y, c.hovering ? "h" : "", c.palm ? "p" : ""));
        text += fmt::format("{}|", fmt::join(contacts, " "));
    }
    maker.finish();
    if (counts != nullptr) *counts = maker.counts();
    return text;
}

/// Each: what it is, the script, the frames.
void expectFrames(const std::vector<std::array<const char*, 3>>& cases) {
    for (const auto& [what, script, frames] : cases) EXPECT_EQ(framesOf(script), frames) << what;
}

// A finger would be missing, stay on the glass for ever, change places with another, or be ahead of its report's time;
// or sensors recorded along with the panel would double its frames.
TEST(Frames, OfSlots) {
    expectFrames({
        {"a new finger at the old column", "i5 x10 y-20 . . i-1 . i6 y30 .", "0@10,-20|0@10,-20||0@10,30|"},
        {"another lands", "i1 x1 y1 s1 i2 x2 y2 . s0 i-1 . i3 x3 .", "0@1,1 1@2,2|1@2,2|0@3,1 1@2,2|"},
        {"a lifted finger's id is free later", "i1 x1 y1 . i-1 s1 i2 x2 y2 . s0 i3 .", "0@1,1|1@2,2|0@1,1 1@2,2|"},
        {"the id changes without a release", "i1 x1 y1 . i2 x2 . i2 x3 .", "0@1,1|1@2,1|1@3,1|"},
        {"lifted and back within a frame", "i1 x1 y1 . i-1 i1 .", "0@1,1|1@1,1|"},
        {"positions behind the release", "i1 x1 y1 . i-1 x2 y2 . .", "0@1,1|||"},
        {"beginning in mid-contact", "x1 . y2 . i-1 .", "|0@1,2||"},
        {"BTN_TOUCH lifts what has no tracking id", "b1 x1 y2 s1 i1 x9 y9 . b0 .", "0@1,2 1@9,9|1@9,9|"},
        {"axes alone are no contact", "m3 . x1 y2 .", "|0@1,2|"},
        {"the last slot there is", "s255 i1 x1 y1 . i-1 .", "0@1,1||"},
        {"absurd slots", "s-1 i1 x1 y1 s2147483647 i2 x2 y2 s256 i3 x3 y3 . s0 x4 y4 .", "|0@4,4|"},
        {"hovering", "i1 x1 y1 p0 . p9 . d1 .", "0@1,1h|0@1,1|0@1,1h|"},
        {"a light sensor, a key", "i1 x1 y1 . L5 . M1 K1 . x2 .", "0@1,1|0@2,1|"},
        {"mixed into the panel's own", "i1 x1 L5 y1 .", "0@1,1|"},
        {"a timestamp alone is a panel's", "i1 x1 y1 . M1 .", "0@1,1|0@1,1|"},
        {"a palm", "i1 x1 y1 t2 . t0 .", "0@1,1p|0@1,1|"},
    });
}

// A panel of the older kind would drop fingers, swap them or never lift them.
TEST(Frames, OfPackets) {
    expectFrames({
        {"lifted by an empty contact", "x1 y1 , . , .", "0@1,1||"},
        {"lifted by BTN_TOUCH", "b1 x1 y1 , . b0 .", "0@1,1||"},
        {"BTN_TOUCH beside a contact lifts nothing", "x1 y1 , . b0 x2 y1 , .", "0@1,1|0@2,1|"},
        {"lifted by size 0", "x1 y1 m3 , . x1 y1 m0 , .", "0@1,1||"},
        {"lifted by pressure 0", "x1 y1 p3 , x9 y9 p3 , . x1 y1 p0 , x9 y9 p3 , .", "0@1,1 1@9,9|1@9,9|"},
        {"lifted by not being listed", "x1 y1 , x9 y9 , . x9 y8 , .", "0@1,1 1@9,9|1@9,8|"},
        {"nearest first, the left over is new", "x0 y0 , . x4 y0 , x1 y0 , .", "0@0,0|1@4,0 0@1,0|"},
        {"ids say more than distance", "i0 x1 y1 , i1 x9 y9 , . i1 x1 y1 , i0 x9 y9 , .", "0@1,1 1@9,9|1@1,1 0@9,9|"},
        {"another id is another finger", "i0 x1 y1 , . i1 x1 y1 , .", "0@1,1|1@1,1|"},
        {"one id for all", "i0 x1 y1 , i0 x9 y9 , . i0 x8 y8 , i0 x2 y2 , .", "0@1,1 1@9,9|1@8,8 0@2,2|"},
        {"farthest corners", "x-2147483648 y-2147483648 , . x2147483647 y2147483647 , .",
         "0@-2147483648,-2147483648|0@2147483647,2147483647|"},
        {"a packet that lists nothing", "x1 y1 , . b1 . x1 y2 , .", "0@1,1|0@1,1|0@1,2|"},
        {"no last SYN_MT_REPORT, no position, a distant pen", "x3 , x1 y1 , x9 y9 d4 .", "0@1,1 1@9,9h|"},
    });
}

// After the kernel lost events, fingers that have lifted meanwhile would stay, or those still down be lost for good.
TEST(Frames, AfterALoss) {
    expectFrames({
        {"what moves lands again", "i1 x1 y1 s1 i2 x2 y2 . x3 ! x4 i-1 . y5 .", "0@1,1 1@2,2||0@3,5|"},
        {"pressure alone tells of a finger that was down", "i1 x1 y1 . ! . p5 .", "0@1,1||0@1,1|"},
        {"but not of one that was up", "i1 x1 y1 . i-1 . ! . p5 .", "0@1,1||||"},
        {"the slot selected in the loss", "i1 x1 y1 s1 i2 x2 y2 . ! s0 . y9 .", "0@1,1 1@2,2||0@1,9|"},
        {"lost twice", "i1 x1 y1 . ! x5 ! x6 . x7 .", "0@1,1||0@7,1|"},
        {"packets", "i1 x1 y1 , . x5 y5 , ! x6 y6 , . i1 x7 y7 , .", "0@1,1||0@7,7|"},
    });
}

// The summary would not say that, or how much of, a recording could not be used.
TEST(FrameMaker, CountsWhatIsInNoFrame) {
    std::string script = "L1 . s300 x1 s0 i1 x1 . y1 . y2 ! ! y3 . ";
    for (int slot = 0; slot < 18; ++slot)
        script += "s" + std::to_string(slot) + " i" + std::to_string(slot) + " x1 y1 ";
    FrameMaker::Counts c;
    framesOf(script + ". b0 x5", &c);
    const std::array<uint32_t, 7> counts = {c.foreignPackets,  c.badSlotEvents, c.unpositionedContacts,
                                            c.surplusContacts, c.resyncs,       c.lostEvents,
                                            c.unfinishedEvents};
    EXPECT_EQ(counts, (std::array<uint32_t, 7>{1, 2, 1, 2, 1, 2, 2})) << "a bad slot counts with its position";
}

// With more fingers than a frame holds, one that has been there all along would vanish for a newcomer.
TEST(FrameMaker, KeepsThoseWhoAreInTheFrame) {
    std::string script;
    for (int slot = 1; slot <= 17; ++slot)
        script += "s" + std::to_string(slot) + " i1 x" + std::to_string(slot) + " y0 ";
    const std::string frames = framesOf(script + ". s0 i2 x0 y0 . s1 i-1 .");
    EXPECT_EQ(frames.find("@0,0"), frames.rfind('|', frames.size() - 2) + 3) << "it comes in when another has lifted";
    EXPECT_NE(frames.find("16@0,0"), std::string::npos) << "by an id that nobody had";
    EXPECT_EQ(std::count(frames.begin(), frames.end(), '@'), 3 * 16);
}

// A filter that looks at sizes would judge by another axis, or take fingers for pens and pens for fingers.
TEST(FrameMaker, GivesAxesInTheHostsOrder) {
    using Axes = std::array<int32_t, kAxisCount>;
    std::vector<Axes> axes;
    FrameMaker maker(TouchProtocol::Slots);
    for (const KernelEvent& event : panel("x1 y2 P1 . P0 p16 m17 w19 o-5 d22 . n18 v20 t1 . t0 P1 .").events)
        if (const auto frame = maker.feed(event)) axes.push_back(frame->contacts.at(0).axes);
    EXPECT_EQ(axes.at(0), (Axes{0, 0, 0, 0, 0, 0, 0, 0, 0, 2})) << "the pen key is down";
    EXPECT_EQ(axes.at(1), (Axes{16, 17, 17, 19, 19, -5, 22, 0, 0, 1})) << "round, and a finger again";
    EXPECT_EQ(axes.at(2), (Axes{16, 17, 18, 19, 20, -5, 22, 0, 0, 2}));
    EXPECT_EQ(axes.at(3).at(kToolType), 1) << "what the contact says goes before the pen key";
}

}  // namespace

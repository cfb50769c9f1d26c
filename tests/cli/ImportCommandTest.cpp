// The built tool with what engineers record, as a shell runs it.

#include "tests/cli/CommandLine.h"

namespace test {
namespace {

const std::string kSwipe = "'" ZQAFT_EXAMPLES "/swipe-from-sensor.getevent'";
const std::string kWithProfile = " --profile '" ZQAFT_EXAMPLES "/phone.yaml' ";
/// A story without the line that says how long it took.
std::string untimed(const std::string& story) { return story.substr(0, story.find("\ncalls ")); }

// A faulty profile would be taken for a faulty recording, or half a trace for a whole one.
TEST_F(CommandLine, EveryFailureOfAnImportHasItsExitCodeAndSentence) {
    write("faulty.yaml", "touch: 3\n");
    expectFailures({
        {"import --profile faulty.yaml " + kSwipe, 2, "faulty.yaml:1: touch: not a map"},
        {"replay --device x" + kWithProfile + kSwipe, 2, "device: no device goes by 'x'"},
        {"import" + kWithProfile + kSwipe + " >/dev/full", 74, "cannot write the output: No space left on device\n"},
    });
}

// What became of a gesture that the cover ended would be lost among the columns.
TEST_F(CommandLine, AStoryOfACover) {
    const Outcome story =
        run("replay --profile '" ZQAFT_EXAMPLES "/phone-slide-cover.yaml' '" ZQAFT_EXAMPLES "/slide-cover.getevent'");
    EXPECT_NE(story.out.find(R"(
     61.506 s  reported     event 651                 cover-report  {time:250, Firstpoint(612,1884), LastPoint(586,1105), state:2}
     62.600 s  kept         finger 0 at (522, 1304)   outside-area

fingers   4: 2 kept, 1 lost, 1 cancelled
frames    153: pointers judged 161, removed 41
gestures  1 cancelled, 1 reported
)"),
              std::string::npos)
        << story.out;
}

// The same bug report would look different at another desk: run again, imported first, or through a pipe.
TEST_F(CommandLine, AReplayIsRepeatable) {
    const Outcome direct = run("replay" + kWithProfile + kSwipe);
    EXPECT_NE(direct.out.find("fingers   3: 1 kept, 1 restored (66 ms late), 1 lost\nframes    65: pointers judged 78, "
                              "removed 22\ngestures  0 cancelled\n"
                              "keys      3 consumed, 0 held back, 0 re-sent, 0 dropped, 0 dispatched\n"),
              std::string::npos);
    EXPECT_EQ(direct.out.find('\x1b'), std::string::npos) << "escape codes where nothing is a terminal";
    EXPECT_EQ(direct.err, "");

    const Outcome import = run("import" + kWithProfile + kSwipe);
    EXPECT_EQ(run("import" + kWithProfile + "- <" + kSwipe).out, import.out);
    write("swipe", import.out);
    EXPECT_EQ(untimed(run("replay swipe").out), untimed(direct.out));

    const Outcome json = run("replay --json swipe");
    EXPECT_EQ(std::count(json.out.begin(), json.out.end(), '\n') + 1,
              std::count(import.out.begin(), import.out.end(), '\n'));
    for (const std::string& again : {std::string("swipe"), std::string("- <swipe"), kWithProfile + kSwipe}) {
        EXPECT_EQ(run("replay --json " + again).out, json.out) << again;
    }
}

}  // namespace
}  // namespace test

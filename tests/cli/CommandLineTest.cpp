// The built tool, as a shell runs it.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "refhost/Files.h"

namespace {

struct Outcome {
    int code = -1;
    std::string out;
    std::string err;
};

const std::string kSwipe = "'" ZQAFT_EXAMPLES "/swipe-from-sensor.getevent'";
const std::string kWithProfile = " --profile '" ZQAFT_EXAMPLES "/phone.yaml' ";
const std::string kTrace = R"({"trace":"zqaft","version":1}
{"call":"notifyInputStart"}
{"call":"processKey","device":null,"when":60000000000,"keyCode":1,"down":true}
)";

/// A folder of the test's own, in which the tool runs.
class CommandLine : public ::testing::Test {
  protected:
    CommandLine() : mFolder(::testing::TempDir() + "zqaft-cli-" + std::to_string(getpid()) + "/") {
        std::filesystem::create_directory(mFolder);
        write("good", kTrace);
    }
    ~CommandLine() override { std::filesystem::remove_all(mFolder); }

    void write(const std::string& name, const std::string& text) { std::ofstream(mFolder + name) << text; }

    /// @param arguments as the shell takes them; may send standard output or input elsewhere
    Outcome run(const std::string& arguments) {
        const std::string shell = "cd '" + mFolder + "' && >out 2>err '" ZQAFT_TOOL "' " + arguments;
        const int status = std::system(shell.c_str());
        EXPECT_TRUE(WIFEXITED(status)) << arguments;
        return {WEXITSTATUS(status), refhost::readFile(mFolder + "out"), refhost::readFile(mFolder + "err")};
    }

  private:
    const std::string mFolder;
};

/// A story without the line that says how long it took.
std::string untimed(const std::string& story) { return story.substr(0, story.find("\ncalls ")); }

// A script that calls the tool could not tell a faulty trace from a missing file, or would take a failure for success.
TEST_F(CommandLine, EveryFailureHasItsExitCodeAndSentence) {
    write("faulty.yaml", "touch: 3\n");
    const struct {
        std::string arguments;
        int code;
        std::string said;
    } cases[] = {
        {"--help", 0, "\n  69  the plug-in cannot be loaded\n  70  a fault of zqaft's own\n  74  the output cannot be"},
        {"", 64, "A subcommand is required"},
        {"replay", 64, "FILE is required"},
        {"replay --device panel good", 64, "--device requires --profile"},
        {"import " + kSwipe, 64, "--profile is required"},
        {"replay none", 66, "none: cannot be opened: No such file or directory\n"},
        {"import --profile faulty.yaml " + kSwipe, 2, "faulty.yaml:1: touch: not a map"},
        {"replay --device x" + kWithProfile + kSwipe, 2, "device: no device goes by 'x'"},
        {"replay " + kSwipe, 2,
         "getevent:1: trace: no JSON object, so no trace; expected its header (a recording needs --profile)\n"},
        {"replay - <" + kSwipe, 2, "standard input:1: trace: no JSON object"},
        {"replay --plugin none/x.so good", 69,
         "none/x.so: cannot open shared object file: No such file or directory; `./run build` builds it"},
        {"replay --plugin '" ZQAFT_TOOL "' good", 69, "the plug-in"},
        // A full disk, which must not leave half a trace behind and call it whole.
        {"import" + kWithProfile + kSwipe + " >/dev/full", 74, "cannot write the output: No space left on device\n"},
        {"replay good >/dev/full", 74, "cannot write the output: No space left on device\n"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = run(c.arguments);
        EXPECT_EQ(outcome.code, c.code) << c.arguments;
        EXPECT_NE((outcome.out + outcome.err).find(c.said), std::string::npos) << c.said << outcome.err;
        const bool oneLine = outcome.err.find('\n') == outcome.err.size() - 1;
        EXPECT_TRUE(c.code == 0 ? outcome.err.empty() : oneLine || c.code == 64) << outcome.err;
    }
}

// A fault late in a long trace would take the results before it along, or be drowned in noise.
TEST_F(CommandLine, ResultsBeforeAFaultStayAndNothingFollows) {
    write("faulty", kTrace + "{\"call\":\"notifyInputExit\",\"x\":1}\n{\"call\":\"notifyInputExit\"}\n");
    for (const char* input : {"faulty", "- <faulty"}) {
        const Outcome outcome = run(std::string("replay --json ") + input);
        EXPECT_EQ(outcome.code, 2);
        EXPECT_NE(outcome.out.find("\n{\"line\":3,\"result\":"), std::string::npos) << outcome.out;
        EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 2) << outcome.out;
        const std::string name = input[0] == '-' ? "standard input" : input;
        EXPECT_EQ(outcome.err, name + ":4: x: unknown key; expected one of call, platform, t\n");
    }
}

// What became of a gesture that the cover ended would be lost among the columns.
TEST_F(CommandLine, AStoryOfACover) {
    const Outcome story =
        run("replay --profile '" ZQAFT_EXAMPLES "/phone-slide-cover.yaml' '" ZQAFT_EXAMPLES "/slide-cover.getevent'");
    EXPECT_NE(story.out.find(R"(
     61.257 s  cancelled    gesture of finger 0       mCurState.state=2, preState=0, preSlideTime=250, need to cancel touch.
     61.382 s  held back    finger 1 at (331, 1422)   (the slide cover's filter has cancelled its gesture)
     61.473 s  lost         finger 1 at (335, 1418)
     61.506 s  reported     event 651                 {time:250, Firstpoint(612,1884), LastPoint(586,1105), state:2}
     62.600 s  kept         finger 0 at (522, 1304)

frames    153: pointers judged 161, removed 41, restored 0
gestures  1 cancelled, 1 reported
)"),
              std::string::npos)
        << story.out;
}

// The same bug report would look different at another desk: run again, imported first, or through a pipe.
TEST_F(CommandLine, AReplayIsRepeatable) {
    const Outcome direct = run("replay" + kWithProfile + kSwipe);
    EXPECT_NE(direct.out.find("frames    65: pointers judged 78, removed 22, restored 1\ngestures  0 cancelled\n"
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

// The built tool, as a shell runs it.

#include "tests/cli/CommandLine.h"

namespace test {
namespace {

// A script that calls the tool could not tell a faulty trace from a missing file, or would take a failure for success.
TEST_F(CommandLine, EveryFailureHasItsExitCodeAndSentence) {
    write("recorded", "[ 1.0] 0003 0035 00000001\n");
    expectFailures({
        {"--help", 0, "\n  69  the plug-in cannot be loaded\n  70  a fault of zqaft's own\n  74  the output cannot be"},
        {"", 64, "A subcommand is required"},
        {"replay", 64, "FILE is required"},
        {"replay --device panel good", 64, "--device requires --profile"},
        {"import recorded", 64, "--profile is required"},
        {"corpus .", 66, ".: no file *.trace.jsonl in this folder or below\n"},
        {"corpus none", 66, "none: no such file or folder\n"},
        {"replay none", 66, "none: cannot be opened: No such file or directory\n"},
        {"replay recorded", 2,
         "recorded:1: trace: no JSON object, so no trace; expected its header (a recording needs --profile)\n"},
        {"replay - <recorded", 2, "standard input:1: trace: no JSON object"},
        {"replay --plugin none/x.so good", 69,
         "none/x.so: cannot open shared object file: No such file or directory; `./run build` builds it"},
        {"replay --plugin '" ZQAFT_TOOL "' good", 69, "the plug-in"},
        {"explain --id 32 good", 64, "--id"},
        {"explain --at nan good", 64, "--at: expected a time"},
        {"report good", 64, "--output is required"},
        {"report good -o none/x.html", 74, "cannot write none/x.html: No such file or directory\n"},
        {"export --format svg good -o x", 64, "--format: svg not in {chrome}"},
        {"export good -o none/x.json", 74, "cannot write none/x.json: No such file or directory\n"},
        {"export good -o - >/dev/full", 74, "cannot write the output: No space left on device\n"},
        {"replay good >/dev/full", 74, "cannot write the output: No space left on device\n"},
    });
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

// The engineer would be shown another finger or another moment than the one asked for, or lines that no program can
// load.
TEST_F(CommandLine, ExplainsOneMomentOneFingerAndForPrograms) {
    write(
        "two",
        R"({"trace":"zqaft","version":1,"properties":{"ro.zqaft.tpfp.filter_area":"200,200"},"devices":[{"id":3,"name":"panel"},{"id":4,"name":"fingerprint"}]}
{"call":"configureSurface","device":3,"width":1000,"height":2000,"orientation":0,"rawX":[0,999],"rawY":[0,1999]}
{"call":"processKey","device":4,"when":11000000000,"keyCode":516,"down":true}
{"call":"processRawTouches","device":3,"when":11100000000,"pointers":[{"id":0,"x":500,"y":1900}]}
{"call":"processRawTouches","device":3,"when":11150000000,"pointers":[{"id":0,"x":500,"y":1869},{"id":1,"x":9,"y":9}]}
{"call":"processRawTouches","device":3,"when":11160000000,"pointers":[]}
)");
    const std::string held = run("explain --at 11.15 --id 0 two").out;
    EXPECT_EQ(held.find("     11.150 s  held back    finger 0 at (500, 1869)\n               rule  no-gesture\n"), 0U)
        << held;
    EXPECT_NE(held.find("moved up                      31         at least 40       no, 9 too little "),
              std::string::npos);
    EXPECT_NE(held.find("     11.100 s  held back    finger 0 at (500, 1900)\n               rule  finger-on-sensor\n"),
              std::string::npos)
        << held;
    EXPECT_EQ(held.find("lost"), std::string::npos);
    EXPECT_EQ(run("explain --at 11.16 two").err, "no finger is down then\n");
    const std::string json =
        R"j({"kind":"decision","time":11150000000,"verdict":"kept","subject":"finger 1 at (9, 9)","device":3,"ids":[1],)j"
        R"j("key":null,"filter":"front-fingerprint","rule":"outside-area","words":"","measures":[)j"
        R"j({"name":"x in the area","value":9,"least":400,"most":600,"unit":"","holds":false,"margin":-391,)j"
        R"j("setting":"ro.zqaft.tpfp.filter_area","cause":null},{"name":"y in the area","value":9,"least":1800,)j"
        R"j("most":2000,"unit":"","holds":false,"margin":-1791,"setting":"ro.zqaft.tpfp.filter_area",)j"
        R"j("cause":null}],"log":[]})j"
        "\n";
    EXPECT_EQ(run("explain --json --id 1 two").out, json);
}

// A folder of traces would pass that should not, or each trace be held against the properties of the first.
TEST_F(CommandLine, ACheckTellsEachBreachAndReadsThePropertiesOfEachTrace) {
    const std::string key = R"({"call":"processKey","device":null,"when":60000000000,"keyCode":516,"down":true})";
    const std::string dirty = R"("when":0,"pointers":[{"id":0,"x":1,"y":2,"extraData":536870912}]})";
    write("off", "{\"trace\":\"zqaft\",\"version\":1,\"devices\":[{\"id\":3,\"name\":\"panel\"}]}\n" + key +
                     "\n{\"call\":\"processRawTouches\",\"device\":3," + dirty);
    write("on", R"({"trace":"zqaft","version":1,"properties":{"ro.zqaft.tpfp.filter_area":"9,9"}})"
                "\n" +
                    key);
    const Outcome sound = run("check off on off - <on");
    EXPECT_EQ(sound.code, 0) << sound.err;
    EXPECT_EQ(sound.out, "traces    4: 2 frames, 4 keys\nbreaches  0\ndesigned  2: abnormal-touch-passes 2\n");
    EXPECT_EQ(run("check --designed off").out.find("off:3: designed: abnormal-touch-passes: "), 0U);

    const Outcome broken = run("check --plugin '" ZQAFT_BROKEN_PLUGIN "' good good");
    const std::string text = "key 1 down was consumed; expected it dispatched";
    EXPECT_EQ(broken.code, 1);
    const std::string found =
        "good:3: key-answer: " + text + "\ngood:3: record-missing: key 1; expected the record of it\n";
    EXPECT_EQ(broken.out, found + found + "traces    2: 0 frames, 2 keys\nbreaches  4\ndesigned  0\n");
    EXPECT_EQ(
        run("check --json --plugin '" ZQAFT_BROKEN_PLUGIN "' good")
            .out.find(R"({"kind":"breach","trace":"good","line":3,"rule":"key-answer","text":")" + text + "\"}\n"),
        0U);
    EXPECT_EQ(run("explain --plugin '" ZQAFT_BROKEN_PLUGIN "' good").err,
              "this library records no decisions: what came back is shown, but not why\n");
}

}  // namespace
}  // namespace test

// A folder of traces, as a regression suite.

#include <regex>

#include "tests/cli/CommandLine.h"

namespace test {
namespace {

const std::string kBroken = " --plugin '" ZQAFT_BROKEN_PLUGIN "'";
const std::string kHeader = "# zqaft verdicts 1\n";
const std::string kKey = R"({"call":"processKey","device":null,"when":60000000000,"down":true,"keyCode":)";

// A key that meets another fate than it used to would go unnoticed, or be told without an end.
TEST_F(CommandLine, ACorpusTellsWhatHasChangedUntilItIsUpdated) {
    write("in/keys.trace.jsonl", kTrace + kKey + "1}\n" + kKey + "516}\n");
    EXPECT_EQ(run("corpus .").err, "1 trace has no verdicts yet; --update writes them\n");
    const std::string one = kHeader + "     60.000 s  key 1 down                dispatched\n";
    write("in/keys.verdicts.txt", one + "60.000 s  key 1 down  held back\r\n120.5 s  finger  \n");
    EXPECT_NE(run("corpus --update in").out.find("\n\nin/keys.verdicts.txt:4: verdict: expected"), std::string::npos);
    write("in/keys.verdicts.txt", one + "60.000 s  key 1 down  held back\r\n1.500 s  finger  kept");
    for (const auto& [arguments, code] : {std::pair("corpus in", 1), {"corpus --update in", 0}, {"corpus in", 0}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.code, code);
        EXPECT_EQ(outcome.out.find("changed") != std::string::npos, outcome.out.ends_with(R"(
in/keys.trace.jsonl
      1.500 s  finger                    was kept; is gone
     60.000 s  key 1 down                was held back; is dispatched
     60.000 s  key 516 down              is new: consumed
)")) << outcome.out;
    }
    EXPECT_EQ(read("in/keys.verdicts.txt"),
              one + one.substr(kHeader.size()) + "     60.000 s  key 516 down              consumed\n");
}

// One bad trace would take the results of a night's run with it, or a report look different from machine to machine.
TEST_F(CommandLine, ACorpusGoesOnPastATraceThatFails) {
    write("1/killed.trace.jsonl", kTrace + kKey + "99}\n");
    write("2.trace.jsonl", kTrace + "{}\n");
    write("3.trace.jsonl", kTrace);
    write("3.verdicts.txt", kHeader + "60.000 s  key 1 down  dispatched\n");
    write(".hidden/none.trace.jsonl", kTrace);
    const std::string told = run("corpus . --jobs 1" + kBroken).out;
    EXPECT_EQ(told.substr(told.find("\n\n")), R"(

./3.trace.jsonl
     60.000 s  key 1 down                was dispatched; is consumed

./1/killed.trace.jsonl: the plug-in crashed: signal 6, Aborted
./2.trace.jsonl:4: line: neither "call" nor "platform"; expected one of them
./3.trace.jsonl:3: key-answer: key 1 down was consumed; expected it dispatched
./3.trace.jsonl:3: record-missing: key 1; expected the record of it
)");
    const std::regex time(" +[0-9.]+ m?s  ");
    EXPECT_EQ(std::regex_replace(run("corpus . --jobs 3" + kBroken).out, time, ""), std::regex_replace(told, time, ""));
    const Outcome json = run("corpus --json ." + kBroken);
    EXPECT_EQ(json.code, 2);
    EXPECT_NE(
        json.out.find(R"("text":"key 1; expected the record of it"}],"verdicts":"changed","changed":)"
                      R"([{"time":60.000,"subject":"key 1 down","was":"dispatched","is":"consumed"}],"error":null)"),
        std::string::npos)
        << json.out;
}

}  // namespace
}  // namespace test

#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "refhost/Files.h"

namespace test {

struct Outcome {
    int code = -1;
    std::string out;
    std::string err;
};

inline const std::string kTrace = R"({"trace":"zqaft","version":1}
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

    void write(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(mFolder + name).parent_path());
        std::ofstream(mFolder + name) << text;
    }
    std::string read(const std::string& name) const { return refhost::readFile(mFolder + name); }

    /// @param arguments as the shell takes them; may send standard output or input elsewhere
    Outcome run(const std::string& arguments) {
        const std::string shell = "cd '" + mFolder + "' && >out 2>err " ZQAFT_EMULATOR " '" ZQAFT_TOOL "' " + arguments;
        const int status = std::system(shell.c_str());
        EXPECT_TRUE(WIFEXITED(status)) << arguments;
        return {WEXITSTATUS(status), refhost::readFile(mFolder + "out"), refhost::readFile(mFolder + "err")};
    }

    struct Failure {
        std::string arguments;
        int code;
        std::string said;
    };
    /// Expects each to end with its exit code and its sentence, on one line.
    void expectFailures(const std::vector<Failure>& failures) {
        for (const Failure& f : failures) {
            const Outcome outcome = run(f.arguments);
            EXPECT_EQ(outcome.code, f.code) << f.arguments;
            EXPECT_NE((outcome.out + outcome.err).find(f.said), std::string::npos) << f.said << outcome.err;
            const bool oneLine = outcome.err.find('\n') == outcome.err.size() - 1;
            EXPECT_TRUE(f.code == 0 ? outcome.err.empty() : oneLine || f.code == 64) << outcome.err;
        }
    }

  private:
    const std::string mFolder;
};

}  // namespace test

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "android/log.h"
#include "platform/control/LogSink.h"

namespace {

using aftplatform::LogLine;

class Log : public testing::Test {
  protected:
    ~Log() override {
        aftplatform::setLogSink(nullptr);
        aftplatform::setMinimumLogPriority(ANDROID_LOG_VERBOSE);
    }

    void collect() {
        aftplatform::setLogSink([this](const LogLine& line) {
            lines.push_back(std::string(aftplatform::priorityName(line.priority)) + "/" + std::string(line.tag) + ": " +
                            std::string(line.text));
        });
    }

    std::vector<std::string> lines;
};

// An engineer would not see who said what, or not the end of it, or a line without a tag would end the process.
TEST_F(Log, PassesPriorityTagAndWholeText) {
    collect();
    for (const size_t length : {511u, 512u, 513u, 100000u}) {
        const std::string text(length, 'x');
        EXPECT_EQ(__android_log_print(ANDROID_LOG_INFO, "T", "%s", text.c_str()), static_cast<int>(length));
        EXPECT_EQ(lines.back(), "INFO/T: " + text);
    }
    lines.clear();
    __android_log_print(ANDROID_LOG_DEBUG, "Tag", "%d of %s", 3, "five");
    __android_log_print(ANDROID_LOG_ERROR, nullptr, "no tag");
    __android_log_print(42, "Tag", "%s", "");
    EXPECT_EQ(lines, (std::vector<std::string>{"DEBUG/Tag: 3 of five", "ERROR/: no tag", "UNKNOWN/Tag: "}));
}

// A host that silences the log would still pay for each line: %n shows whether anything was formatted.
TEST_F(Log, DropsLinesBelowTheMinimumBeforeFormatting) {
    collect();
    aftplatform::setMinimumLogPriority(ANDROID_LOG_WARN);
    int formatted = -1;
    EXPECT_EQ(__android_log_print(ANDROID_LOG_INFO, "Tag", "info%n", &formatted), 0);
    EXPECT_EQ(formatted, -1);
    __android_log_print(ANDROID_LOG_WARN, "Tag", "warn%n", &formatted);
    EXPECT_EQ(formatted, 4);
    EXPECT_EQ(lines, std::vector<std::string>{"WARN/Tag: warn"});
}

// A host whose sink logs, or hands over to another sink, would hang or run a function that has been destroyed.
TEST_F(Log, ASinkMayLogAndChangeTheSink) {
    const std::string own = "a text kept by the sink itself, on the heap";
    aftplatform::setLogSink([this, own](const LogLine& line) {
        collect();
        __android_log_print(line.priority, "Inner", "%s", own.c_str());
        lines.push_back(own);
    });
    __android_log_print(ANDROID_LOG_INFO, "Outer", "first");
    __android_log_print(ANDROID_LOG_INFO, "Outer", "second");
    EXPECT_EQ(lines, (std::vector<std::string>{"INFO/Inner: " + own, own, "INFO/Outer: second"}));
}

// Lines of two threads would be lost or mixed in a sink that has no lock of its own.
TEST_F(Log, TwoThreadsTakeTurns) {
    collect();
    auto logMany = [] {
        for (int i = 0; i < 2000; ++i) __android_log_print(ANDROID_LOG_INFO, "T", "%d", i);
    };
    std::thread other(logMany);
    logMany();
    other.join();
    EXPECT_EQ(lines.size(), 4000u);
}

// A script that reads the phone's log would not be able to read ours.
TEST_F(Log, WritesToStderrAsThePhoneDoes) {
    testing::internal::CaptureStderr();
    __android_log_print(ANDROID_LOG_WARN, "ZqTag", "100%% of %s", "it");
    const std::string written = testing::internal::GetCapturedStderr();
    int pid = 0, end = 0;
    std::sscanf(written.c_str(), "%*2d-%*2d %*2d:%*2d:%*2d.%*3d %d %*d%n", &pid, &end);
    EXPECT_EQ(pid, getpid()) << written;
    EXPECT_EQ(written.substr(static_cast<size_t>(end)), " W ZqTag: 100% of it\n");
}

}  // namespace

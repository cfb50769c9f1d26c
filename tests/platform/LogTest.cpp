#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "android/log.h"
#include "platform/control/LogSink.h"

namespace {

struct Log : testing::Test {
    ~Log() override {
        aftplatform::setLogSink(nullptr);
        aftplatform::setMinimumLogPriority(ANDROID_LOG_VERBOSE);
    }

    void collect() {
        aftplatform::setLogSink([this](const auto& line) {
            std::string& kept = lines.emplace_back(aftplatform::priorityName(line.priority));
            kept.append("/").append(line.tag).append(": ").append(line.text);
        });
    }

    std::vector<std::string> lines;
};

// An engineer would not see the end of a long line, or lines of two threads would be lost or mixed.
TEST_F(Log, PassesWholeLinesOfTwoThreads) {
    collect();
    const auto logMany = [] {
        for (int length = 0; length < 2000; ++length)
            EXPECT_EQ(__android_log_print(ANDROID_LOG_INFO, "T", "%0*d", length, 0), std::max(length, 1));
    };
    std::thread other(logMany);
    logMany();
    other.join();
    ASSERT_EQ(lines.size(), 4000u);
    std::sort(lines.begin(), lines.end());
    for (size_t i = 4; i < 4000; ++i) EXPECT_EQ(lines[i], "INFO/T: " + std::string(i / 2, '0'));
}

// A host that silences the log would still pay for each line (%n shows whether anything was formatted), or a line
// without a tag would end the process.
TEST_F(Log, DropsLinesBelowTheMinimumBeforeFormatting) {
    collect();
    aftplatform::setMinimumLogPriority(ANDROID_LOG_WARN);
    int formatted = -1;
    EXPECT_EQ(__android_log_print(ANDROID_LOG_INFO, "Tag", "info%n", &formatted), 0);
    EXPECT_EQ(formatted, -1);
    __android_log_print(ANDROID_LOG_WARN, nullptr, "warn%n", &formatted);
    EXPECT_EQ(formatted, 4);
    __android_log_print(42, "Tag", "%s", "");
    EXPECT_EQ(lines, (std::vector<std::string>{"WARN/: warn", "UNKNOWN/Tag: "}));
}

// A host whose sink logs, or hands over to another sink, would hang or run a function that has been destroyed.
TEST_F(Log, ASinkMayLogAndChangeTheSink) {
    const std::string own = "a text kept by the sink itself, on the heap";
    aftplatform::setLogSink([this, own](const auto& line) {
        collect();
        __android_log_print(line.priority, "Inner", "%s", own.c_str());
        lines.push_back(own);
    });
    for (const char* text : {"first", "second"}) __android_log_print(ANDROID_LOG_INFO, "Outer", "%s", text);
    EXPECT_EQ(lines, (std::vector<std::string>{"INFO/Inner: " + own, own, "INFO/Outer: second"}));
}

// A script that reads the phone's log would not be able to read ours.
TEST_F(Log, WritesToStderrAsThePhoneDoes) {
    testing::internal::CaptureStderr();
    __android_log_print(ANDROID_LOG_WARN, "ZqTag", "100%% of %s", "it");
    const std::string written = testing::internal::GetCapturedStderr();
    const std::string line =
        R"(\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} +)" + std::to_string(getpid()) + R"( +\d+ W ZqTag: 100% of it\n)";
    EXPECT_TRUE(std::regex_match(written, std::regex(line))) << written;
}

}  // namespace

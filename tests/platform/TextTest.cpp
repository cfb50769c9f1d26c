#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "bounded_c.h"
#include "utils/String8.h"

namespace {

using android::String8;

// A message put together in pieces would lose its end where a piece crosses the text's storage.
TEST(String8, FormatsTextsOfEveryLength) {
    String8 text;
    std::string expected;
    for (size_t i = 0; i < 200; ++i) {
        const std::string piece(i, 'z');
        ASSERT_EQ(text.appendFormat("[%s]", piece.c_str()), 0);
        expected += "[" + piece + "]";
        ASSERT_STREQ(text.c_str(), expected.c_str());
        ASSERT_EQ(text.length(), expected.size());
    }
}

// A report one character too long would run over its buffer, or one that just fits would be refused.
TEST(BoundedC, SprintfFillsTheBufferToItsLastByte) {
    char buffer[101];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(sprintf_s(buffer, 100, "%s", std::string(99, 'x').c_str()), 99);
    EXPECT_EQ(buffer, std::string(99, 'x'));
    EXPECT_EQ(sprintf_s(buffer, 100, "%s", std::string(100, 'x').c_str()), -1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(buffer[100], '#');
}

// A record would be copied past its end, or a refused copy would leave the old record looking fresh.
TEST(BoundedC, CopyAndSetRefuseWhatDoesNotFit) {
    char dest[8] = "old";
    const std::string zeros(8, '\0');
    const char larger[9] = "12345678";
    EXPECT_EQ(memcpy_s(dest, 8, larger, 8), 0);
    EXPECT_EQ(std::string(dest, 8), "12345678");
    auto refused = [&](int error, int expected) {
        EXPECT_EQ(error, expected);
        EXPECT_EQ(std::string(dest, 8), zeros);
        std::memset(dest, 'o', 8);
    };
    refused(memcpy_s(dest, 8, larger, 9), ERANGE);
    refused(memcpy_s(dest, 8, nullptr, 1), EINVAL);
    refused(memcpy_s(dest, 8, dest + 1, 2), EINVAL);
    refused(memset_s(dest, 8, 'y', 9), ERANGE);
    EXPECT_EQ(memcpy_s(dest, 0, larger, 0), ERANGE);
    EXPECT_EQ(memcpy_s(dest, static_cast<size_t>(-1), larger, 1), ERANGE);
    EXPECT_EQ(std::string(dest, 8), "oooooooo");
}

}  // namespace

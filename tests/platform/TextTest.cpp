#include <gtest/gtest.h>

#include <cerrno>
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
        expected += "[" + std::string(i, 'z') + "]";
        ASSERT_EQ(text.appendFormat("[%s]", std::string(i, 'z').c_str()), 0);
        ASSERT_EQ(std::string(text.c_str(), text.length() + 1), expected + '\0');
    }
}

// A report one character too long would run over its buffer, or one that just fits would be refused.
TEST(BoundedC, SprintfFillsTheBufferToItsLastByte) {
    char buffer[] = "#######";
    EXPECT_EQ(sprintf_s(buffer, 6, "%s", "12345"), 5);
    EXPECT_STREQ(buffer, "12345");
    EXPECT_EQ(sprintf_s(buffer, 6, "%s", "123456"), -1);
    EXPECT_EQ(std::string(buffer, 7).substr(6), "#");
    EXPECT_STREQ(buffer, "");
}

// A record would be copied past its end, or a refused copy would leave the old record looking fresh.
TEST(BoundedC, CopyAndSetRefuseWhatDoesNotFit) {
    char dest[8] = "old";
    const char larger[9] = "12345678";
    EXPECT_EQ(memcpy_s(dest, 8, larger, 8), 0);
    EXPECT_EQ(std::string(dest, 8), larger);
    EXPECT_EQ(memcpy_s(dest, 8, dest + 1, 2), EINVAL);
    EXPECT_EQ(std::string(dest, 8), std::string(8, '\0'));
    EXPECT_EQ(memcpy_s(dest, 8, larger, 9), ERANGE);
    EXPECT_EQ(memcpy_s(dest, 8, nullptr, 1), EINVAL);
    EXPECT_EQ(memset_s(dest, 8, 'y', 9), ERANGE);
}

}  // namespace

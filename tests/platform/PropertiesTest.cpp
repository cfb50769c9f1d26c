#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

#include "cutils/properties.h"
#include "platform/control/Properties.h"

namespace {

namespace properties = aftplatform::properties;

struct Properties : testing::Test {
    Properties() { properties::clearAll(); }

    static std::string read(const char* key, const char* fallback) {
        char value[PROPERTY_VALUE_MAX];
        const int length = property_get(key, value, fallback);
        EXPECT_EQ(value[length], '\0');
        return std::string(value, static_cast<size_t>(length));
    }

    /// Loads a text; gives the message of the refusal, or nothing.
    static std::string load(const std::string& text) try {
        std::istringstream stream(text);
        properties::load(stream, "phone.prop");
        return "";
    } catch (const properties::ParseError& error) {
        return error.what();
    }
};

// A filter would come up with a setting other than its default on a phone that leaves the property unset or empty, or
// with one that no phone can hold.
TEST_F(Properties, ReadAsOnThePhone) {
    EXPECT_EQ(read("a", "default"), "default");
    EXPECT_EQ(read("a", nullptr), "");
    const std::string longest(91, 'v');
    properties::set("a", longest);
    EXPECT_THROW(properties::set("a", longest + "v"), std::invalid_argument);
    EXPECT_EQ(read("a", "default"), longest);
    properties::set("a", "");
    EXPECT_EQ(read("a", (longest + "v").c_str()), longest);
}

// An engineer would load the phone's own text and get other settings than the phone has.
TEST_F(Properties, LoadsBothForms) {
    const std::map<std::string, std::map<std::string, std::string>> cases = {
        {"# note\n\n  \n a = 1,2 \nb=x=y\r\nimport /vendor/build.prop\nimported=1\nempty=",
         {{"a", "1,2 "}, {"b", "x=y"}, {"imported", "1"}, {"empty", ""}}},
        {"[a]: [1]\r\n[b]: []\n[c]: [x]: [y]]\n", {{"a", "1"}, {"b", ""}, {"c", "x]: [y]"}}},
        {"[a]: [one] \n# two\n\n[3\r\nfour]\n[b]: [2]", {{"a", "one] \n# two\n\n[3\nfour"}, {"b", "2"}}},
        {"a=first\n[a]: [last]\n", {{"a", "last"}}},
    };
    properties::set("kept", "so");
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(load(text), "");
        for (const auto& [key, value] : expected) EXPECT_EQ(properties::get(key), value) << key << " of\n" << text;
    }
    EXPECT_EQ(properties::get("kept"), "so");
}

// An engineer would search a file of a thousand lines for what is wrong, or go on with half of its settings.
TEST_F(Properties, ErrorsNamePlaceAndRemedyAndChangeNothing) {
    const std::map<std::string, std::string> cases = {
        {"good=1\njust words\n", "2: just words: there is no '=', expected key=value or [key]: [value]"},
        {"good=1\n\n=v\n", "3: (no key): the key is empty, expected a name before the value"},
        {"good=1\n[k] [v]", "2: [k] [v]: the entry begins with '[', expected [key]: [value]"},
        {"good=1\nk=" + std::string(92, 'v'), "2: k: the value has 92 bytes, expected 91 at most"},
        {"good=1\n[k]: [one\ntwo\n", "2: k: the value has no end, expected ']' at a line's end"},
        {"[k]: [one\n[good]: [1]\n", "1: k: the value has no end, expected ']' at a line's end"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(load(text), "phone.prop:" + expected);
        EXPECT_EQ(properties::get("good"), std::nullopt) << text;
    }
}

}  // namespace

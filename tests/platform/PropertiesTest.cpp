#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

#include "cutils/properties.h"
#include "platform/control/Properties.h"

namespace {

namespace properties = aftplatform::properties;

class Properties : public testing::Test {
  protected:
    Properties() { properties::clearAll(); }
    ~Properties() override { properties::clearAll(); }

    static std::string read(const char* key, const char* fallback) {
        char value[PROPERTY_VALUE_MAX];
        const int length = property_get(key, value, fallback);
        EXPECT_EQ(value[length], '\0');
        return std::string(value, static_cast<size_t>(length));
    }

    static void load(const std::string& text) {
        std::istringstream stream(text);
        properties::load(stream, "phone.prop");
    }
};

// A filter would come up with a setting other than its default on a phone that leaves the property unset or empty.
TEST_F(Properties, UnsetAndEmptyReadAsTheDefault) {
    EXPECT_EQ(read("a", "default"), "default");
    EXPECT_EQ(read("a", nullptr), "");
    properties::set("a", "value");
    EXPECT_EQ(read("a", "default"), "value");
    properties::set("a", "");
    EXPECT_EQ(read("a", "default"), "default");
    EXPECT_EQ(properties::get("a"), "");
    properties::clear("a");
    EXPECT_EQ(properties::get("a"), std::nullopt);
    EXPECT_EQ(read("b", std::string(100, 'd').c_str()), std::string(91, 'd'));
}

// A setting would be tried out at the desk that no phone can hold.
TEST_F(Properties, AValueHas91BytesAtMost) {
    const std::string longest(91, 'v');
    properties::set("key", longest);
    EXPECT_THROW(properties::set("key", longest + "v"), std::invalid_argument);
    EXPECT_EQ(read("key", ""), longest);
}

// An engineer would load the phone's own text and get other settings than the phone has.
TEST_F(Properties, LoadsBothForms) {
    const std::map<std::string, std::map<std::string, std::string>> cases = {
        {"# note\n\n  \n a = 1,2 \nb=x=y\r\nimport /vendor/build.prop\nimported=1\nempty=",
         {{"a", "1,2 "}, {"b", "x=y"}, {"imported", "1"}, {"empty", ""}}},
        {"[a]: [1]\r\n[b]: []\n[c]: [x]: [y]]\n", {{"a", "1"}, {"b", ""}, {"c", "x]: [y]"}}},
        {"[a]: [one\n# two\n\n[3\r\nfour]\n[b]: [2]", {{"a", "one\n# two\n\n[3\nfour"}, {"b", "2"}}},
        {"a=first\n[a]: [last]\n", {{"a", "last"}}},
    };
    for (const auto& [text, expected] : cases) {
        properties::clearAll();
        properties::set("kept", "so");
        load(text);
        for (const auto& [key, value] : expected) EXPECT_EQ(properties::get(key), value) << key << " of\n" << text;
        EXPECT_EQ(properties::get("kept"), "so");
        EXPECT_EQ(properties::get("import /vendor/build.prop"), std::nullopt);
    }
}

// An engineer would search a file of a thousand lines for what is wrong, or go on with half of its settings.
TEST_F(Properties, ErrorsNamePlaceAndRemedyAndChangeNothing) {
    const std::string tooLong(92, 'v');
    const std::map<std::string, std::string> cases = {
        {"good=1\njust words\n", "phone.prop:2: just words: there is no '=', expected key=value or [key]: [value]"},
        {"good=1\n\n=v\n", "phone.prop:3: (no key): the key is empty, expected a name before the value"},
        {"good=1\n[k] [v]", "phone.prop:2: [k] [v]: the entry begins with '[', expected [key]: [value]"},
        {"k=" + tooLong, "phone.prop:1: k: the value has 92 bytes, expected 91 at most"},
        {"good=1\n[k]: [one\ntwo\n", "phone.prop:2: k: the value has no end, expected ']' at a line's end"},
        {"[k]: [one\n[good]: [1]\n", "phone.prop:1: k: the value has no end, expected ']' at a line's end"},
    };
    for (const auto& [text, expected] : cases) {
        try {
            load(text);
            ADD_FAILURE() << text;
        } catch (const properties::ParseError& error) {
            EXPECT_EQ(error.what(), expected);
        }
        EXPECT_EQ(properties::get("good"), std::nullopt) << text;
    }
}

}  // namespace

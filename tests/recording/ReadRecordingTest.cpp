#include "RecordingText.h"
#include "refhost/recording/Readers.h"

using namespace refhost;

namespace {

// A recording would be refused, or read as garbage, because of its name or of what stands before its first event.
TEST(ReadRecording, TellsTheFormatFromTheText) {
    const std::pair<std::string, std::string> cases[] = {
        {"phone:/ # getevent -lt\n\n[   1.000001] EV_SYN SYN_REPORT 00000000\n", "getevent"},
        {"add device 1: /dev/input/event7\n  name:     \"a\"\n  version:  1.0.1\n", "getevent"},
        {"#!/bin/sh\nsendevent /dev/input/event2 3 57 -1\n", "getevent"},
        {"\xef\xbb\xbf 0000 0000 00000000\n", "getevent"},
        {"\n# EVEMU 1.3\nN: a\n", "evemu"},
        {"E: 0.000001 0000 0000 0000\n", "evemu"},
        {"# a comment\nA: 35 0 100 0 0\n", "evemu"},
        {"Recording to 'stdout'.\nversion: 1\ndevices:\n", "libinput"},
        {"> # libinput record\n> version: 1\n> devices:\n", "libinput"},
    };
    for (const auto& [text, format] : cases) EXPECT_EQ(readRecordingText(text, "in").format, format) << text;
}

// Whoever names a wrong file would be left to guess what is wrong with it.
TEST(ReadRecording, SaysWhatAForeignFileIs) {
    const std::string evtest = "Event: time 1.5, type 3 (EV_ABS), code 53 (ABS_MT_POSITION_X), value 9\n";
    expectRefusals([](const std::string& text) { readRecordingText(text, "in"); }, "in:",
                   {{" \r\n", "1: format: the file is empty; expected "},
                    {"Testing ...\n" + evtest, "2: format: output of evtest"},
                    {std::string("\xff\xfe[\0 \0", 6), "1: format: UTF-16"},
                    {std::string("\x01\0\x02", 3), "1: format: binary"},
                    {"Dear all,\n", "1: format: no line"}});
    EXPECT_THROW(readRecording("/nowhere/a"), FileError);
    EXPECT_THROW(readRecording("/"), FileError);
}

}  // namespace

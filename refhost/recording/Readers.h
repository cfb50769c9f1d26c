#pragma once

#include <istream>
#include <string>
#include <string_view>

#include "refhost/InputError.h"
#include "refhost/recording/Recording.h"

namespace refhost {

/// Readers of what engineers already record. Each takes a text of any bytes and of any length, in time proportional to
/// it, and names `file` in Recording::file and in its errors. What a reader cannot make sense of is in
/// Recording::skipped; what would give wrong events throws InputError.

/// What `getevent` prints, with whatever options, and scripts of `sendevent` lines. Never throws: the format is printed
/// for people, and every line that is neither event nor description is skipped. Where the recording says that a device
/// was removed, its events go on with SYN_DROPPED and SYN_REPORT, for nothing it said before holds any longer.
Recording readGetevent(std::string_view text, const std::string& file);
Recording readGetevent(std::istream& in, const std::string& file);

/// What `evemu-record` and `evemu-describe` write: description, events, or both.
Recording readEvemu(std::string_view text, const std::string& file);
Recording readEvemu(std::istream& in, const std::string& file);

/// What `libinput record` writes, also as pasted from a terminal or quoted in a mail.
Recording readLibinput(std::string_view text, const std::string& file);
Recording readLibinput(std::istream& in, const std::string& file);

/// Tells the format from the text itself and reads it. Throws InputError also for a text in none of the formats.
Recording readRecordingText(std::string_view text, const std::string& file);

/// The same for a file; "-" is standard input. Throws FileError where the file cannot be read.
Recording readRecording(const std::string& path);

}  // namespace refhost

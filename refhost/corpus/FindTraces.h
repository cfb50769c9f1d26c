#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace refhost {

/// What a trace's file name ends with; the path without it names the trace.
constexpr std::string_view kTraceEnding = ".trace.jsonl";
std::string withoutEnding(std::string path);

/// A trace of a corpus.
struct FoundTrace {
    std::string path;  ///< to open it
    std::string name;  ///< to show it: the path below the folder that was searched, without the ending
};

/// Every file `*.trace.jsonl` below a folder, sorted by path, or the one file that is named. Links to files are
/// followed, links to folders are not, and what is hidden is left out. A link that leads nowhere is found, too: whoever
/// opens it will say so. Throws FileError where there is nothing of that name, a folder cannot be read, or no trace is
/// in it.
std::vector<FoundTrace> findTraces(const std::string& path);

}  // namespace refhost

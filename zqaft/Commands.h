#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zqaft {

struct ReplayOptions {
    std::string input;    ///< a trace, or with a profile a recording; "-" for standard input
    std::string profile;  ///< empty: the input is a trace
    std::string device;   ///< of the recording; empty: the profile's, or the only one there is
    std::string plugin;   ///< path of the library; empty: this build's
    bool json = false;
};

struct ExplainOptions : ReplayOptions {
    std::optional<double> at;    ///< s, as stories print them: what holds then; else every decision
    std::optional<uint32_t> id;  ///< 0..31: only what concerns this pointer id
};

struct ReportOptions : ReplayOptions {
    std::string output;  ///< the page; "-" for standard output
};

struct ExportOptions : ReplayOptions {
    std::string format = "chrome";  ///< of the file; no other is known
    std::string output;             ///< the file; "-" for standard output
};

struct CheckOptions {
    std::vector<std::string> traces;  ///< "-" for standard input
    std::string plugin;               ///< as for a replay
    bool designed = false;            ///< list what filters are designed for, too; else it is counted
    bool json = false;
};

struct CorpusOptions {
    std::string path;    ///< of a folder of traces, or of one trace
    std::string plugin;  ///< as for a replay
    size_t jobs = 0;     ///< traces that are played at a time; 0: as many as there are cores
    bool update = false;
    bool json = false;
};

struct ImportOptions {
    std::string input;  ///< a recording
    std::string profile;
    std::string device;
};

// Each does one of the program's jobs, writes its results to standard output and what the user should know beside them
// to stderr, and answers the exit code. Failures are thrown; main() puts them into words.

int replay(const ReplayOptions& options);
int explain(const ExplainOptions& options);
int report(const ReportOptions& options);
int exportTrace(const ExportOptions& options);
int import(const ImportOptions& options);
int check(const CheckOptions& options);
int corpus(const CorpusOptions& options);

}  // namespace zqaft

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>

#include "refhost/InputError.h"
#include "refhost/play/Plugin.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"

namespace {

constexpr char kFooter[] =
    R"(Examples:
  zqaft replay gesture.trace.jsonl
  zqaft replay --profile phone.yaml swipe.getevent
  zqaft import --profile phone.yaml swipe.getevent > swipe.trace.jsonl
  zqaft replay --json gesture.trace.jsonl | jq .removed
  zqaft explain --at 61.25 gesture.trace.jsonl
  zqaft report gesture.trace.jsonl -o report.html
  zqaft export --format chrome gesture.trace.jsonl -o decisions.json
  zqaft check *.trace.jsonl
  zqaft corpus traces/

Exit codes:
   0  done
   1  check, corpus: the plug-in breaks what a host relies on; corpus: a verdict has changed
   2  a trace, profile or recording has a fault; stderr says FILE:LINE: KEY: what is wrong and what is expected.
      corpus: a trace or its verdicts, as the table says, or a trace crashes the plug-in
  64  the command line is wrong
  66  a file cannot be opened or read
  69  the plug-in cannot be loaded
  70  a fault of zqaft's own
  74  the output cannot be written)";

/// What is played, and through which plug-in.
void addPlayed(CLI::App& verb, zqaft::ReplayOptions& options) {
    verb.add_option("FILE", options.input, "The trace; - reads standard input. With --profile, a recording")
        ->required();
    CLI::Option* profile =
        verb.add_option("--profile", options.profile, "The phone that the recording is taken to come from (YAML)");
    verb.add_option("--device", options.device, "The touch device of the recording: its name or path")->needs(profile);
    verb.add_option("--plugin", options.plugin, "The libzqaftprocessor.so to play through (default: this build's)");
}

/// Runs `work` and puts what it throws into one line on stderr and an exit code.
template <typename Work>
int reporting(Work work) {
    const auto fail = [](const std::exception& fault, int code) {
        fmt::print(stderr, "{}\n", fault.what());
        return code;
    };
    try {
        return work();
    } catch (const zqaft::UsageError& fault) {
        return fail(fault, zqaft::kUsage);
    } catch (const refhost::InputError& fault) {
        return fail(fault, zqaft::kFaultyInput);
    } catch (const refhost::FileError& fault) {
        return fail(fault, zqaft::kNoInput);
    } catch (const refhost::PluginError& fault) {
        return fail(fault, zqaft::kNoPlugin);
    } catch (const zqaft::OutputError& fault) {
        return fail(fault, zqaft::kNoOutput);
    } catch (const std::exception& fault) {
        fmt::print(stderr, "zqaft: internal error: {}\n", fault.what());
        return zqaft::kInternalError;
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);  // standard input may be a trace: read it in pieces, not byte by byte
    CLI::App app(
        "Replays touch recordings through the false-touch filter and says what became of every finger and key.");
    app.name("zqaft");
    app.footer(kFooter);
    app.require_subcommand(1);
    app.set_version_flag("--version", ZQAFT_VERSION);

    zqaft::ReplayOptions replayOptions;
    CLI::App* replay =
        app.add_subcommand("replay", "Play a trace, or a recording with its profile, and print what became of it.");
    addPlayed(*replay, replayOptions);
    replay->add_flag("--json", replayOptions.json, "A line of JSON for each line of the trace: all that came back");

    zqaft::ExplainOptions explainOptions;
    CLI::App* explain = app.add_subcommand("explain", "Say of each decision which rule made it, and by how much.");
    addPlayed(*explain, explainOptions);
    explain->add_option("--at", explainOptions.at, "Each finger's latest record at this time (s, as replay prints it)")
        ->check(CLI::Range(0.0, 9e9));
    explain->add_option("--id", explainOptions.id, "Only what concerns this pointer id")->check(CLI::Range(0, 31));
    explain->add_flag("--json", explainOptions.json, "A line of JSON for each decision");

    zqaft::ReportOptions reportOptions;
    CLI::App* report = app.add_subcommand("report", "Draw every finger and every decision, as one page for a browser.");
    addPlayed(*report, reportOptions);
    report->add_option("-o,--output", reportOptions.output, "The HTML file to write; - writes standard output")
        ->required();

    zqaft::ExportOptions exportOptions;
    CLI::App* exporting =
        app.add_subcommand("export", "Write every decision as a trace file for a system trace viewer.");
    addPlayed(*exporting, exportOptions);
    exporting
        ->add_option("--format", exportOptions.format,
                     "chrome: the Chrome JSON trace event format, for Perfetto's UI and chrome://tracing")
        ->check(CLI::IsMember(std::vector<std::string>{"chrome"}))
        ->capture_default_str();
    exporting->add_option("-o,--output", exportOptions.output, "The file to write; - writes standard output")
        ->required();

    zqaft::ImportOptions importOptions;
    CLI::App* import = app.add_subcommand("import", "Make a trace of a recording (getevent, evemu, libinput record).");
    import->add_option("FILE", importOptions.input, "The recording; - reads standard input")->required();
    import->add_option("--profile", importOptions.profile, "The phone that it is taken to come from (YAML)")
        ->required();
    import->add_option("--device", importOptions.device, "The touch device of the recording: its name or path");

    zqaft::CheckOptions checkOptions;
    CLI::App* check =
        app.add_subcommand("check", "Compare the plug-in's results for traces with what a host relies on.");
    check->add_option("TRACE", checkOptions.traces, "The traces; - reads standard input")->required();
    check->add_option("--plugin", checkOptions.plugin,
                      "The libzqaftprocessor.so to play through (default: this build's)");
    check->add_flag("--designed", checkOptions.designed,
                    "List the designed findings as well, with their lines; without it they are counted");
    check->add_flag("--json", checkOptions.json,
                    "A line of JSON for each finding: kind, trace, line, rule, name, text");

    zqaft::CorpusOptions corpusOptions;
    CLI::App* corpus =
        app.add_subcommand("corpus", "Replay a folder of traces, and print which verdicts have changed.");
    corpus->add_option("PATH", corpusOptions.path, "The folder, searched for *.trace.jsonl; or one trace")->required();
    corpus->add_option("--jobs", corpusOptions.jobs, "Traces to replay at a time (default: as many as there are cores)")
        ->check(CLI::Range(1, 256));
    corpus->add_flag("--update", corpusOptions.update,
                     "Write the verdicts of each trace beside it: NAME.verdicts.txt for NAME.trace.jsonl");
    corpus->add_option("--plugin", corpusOptions.plugin,
                       "The libzqaftprocessor.so to play through (default: this build's)");
    corpus->add_flag("--json", corpusOptions.json, "A line of JSON for each trace");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& fault) {
        return app.exit(fault) == 0 ? zqaft::kDone : zqaft::kUsage;
    }
    return reporting([&] {
        if (*check) return zqaft::check(checkOptions);
        if (*corpus) return zqaft::corpus(corpusOptions);
        if (*explain) return zqaft::explain(explainOptions);
        if (*report) return zqaft::report(reportOptions);
        if (*exporting) return zqaft::exportTrace(exportOptions);
        return *replay ? zqaft::replay(replayOptions) : zqaft::import(importOptions);
    });
}

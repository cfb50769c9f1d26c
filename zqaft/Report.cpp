#include <filesystem>

#include "refhost/play/Player.h"
#include "refhost/report/TraceReport.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"
#include "zqaft/Progress.h"

namespace zqaft {

namespace {

std::string nameOf(const std::string& input) {
    return input == "-" ? "standard input" : std::filesystem::path(input).filename().string();
}

}  // namespace

int report(const ReportOptions& options) {
    const std::unique_ptr<refhost::TraceSource> source = openPlayed(options);
    refhost::Player player(source->header(), pluginOr(options.plugin));
    refhost::TraceReport report(source->header());
    Progress progress;
    refhost::TraceLine line;
    for (uint64_t lines = 0; source->next(line); ++lines) {
        report.hear(line, player.play(line));
        if (progress.due(lines)) progress.at(lines, source->progress());
    }
    progress.clear();
    Output out;
    refhost::TextBuffer page;
    report.writePage(page, nameOf(options.input));
    if (options.output == "-") {
        refhost::append(out.text(), {page.data(), page.size()});
        out.flush();
    } else {
        replaceFile(options.output, {page.data(), page.size()});
    }
    sayAtEnd(report.summary(), *source);
    return kDone;
}

}  // namespace zqaft

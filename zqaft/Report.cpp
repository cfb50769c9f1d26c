#include <filesystem>

#include "refhost/report/TraceReport.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"
#include "zqaft/TerminalObserver.h"

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
    TerminalObserver observer(nullptr);
    playLines(*source, player, &observer,
              [&](const refhost::TraceLine& line, const refhost::CallResult& result) { report.hear(line, result); });
    observer.end();
    refhost::TextBuffer page;
    report.writePage(page, nameOf(options.input));
    writeResult(options.output, {page.data(), page.size()});
    sayAtEnd(report.summary(), *source);
    return kDone;
}

}  // namespace zqaft

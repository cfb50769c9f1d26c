// What the tool shows of a trace: the calls of a host, as far as a trace can hold them, to everything that looks at
// what came back. What the library records must agree with what it does.

#include <nlohmann/json.hpp>
#include <sstream>

#include "fuzz/CallsFromBytes.h"
#include "fuzz/FreshPlugin.h"
#include "fuzz/Oracles.h"
#include "refhost/check/TraceCheck.h"
#include "refhost/corpus/VerdictFile.h"
#include "refhost/explain/ExplainedWriter.h"
#include "refhost/export/ChromeTrace.h"
#include "refhost/play/DecisionLog.h"
#include "refhost/report/TraceReport.h"
#include "refhost/trace/TraceWriter.h"

namespace {

using namespace refhost;

fuzz::FreshPlugin sPlugin;

std::string traceOf(fuzz::CallsFromBytes calls) {
    TextBuffer text;
    writeTrace(text, calls.header());
    for (TraceLine line; calls.next(line);) writeTrace(text, line);
    return fmt::to_string(text);
}

void requireAReport(const TraceReport& report) {
    TextBuffer page;
    report.writePage(page, "in");
    const std::string text = fmt::to_string(page);
    const size_t from = text.find("id=\"data\">") + 10;
    require(nlohmann::json::accept(text.substr(from, text.find("</script>", from) - from)), "a report holds its data");
}

void requireVerdicts(const Verdicts& verdicts) {
    const std::string text = textOf(verdicts);
    require(changesBetween(readVerdicts(text, "in"), verdicts).empty(), "verdicts read as they were written");
}

void playAll(TraceReader& trace) {
    Player& player = sPlugin.load(trace.header());
    TraceReport report(trace.header());
    TraceCheck check(trace.header());
    DecisionLog log;
    ChromeTrace viewed(trace.header());
    VerdictCollector verdicts;
    for (TraceLine line; trace.next(line);) {
        const CallResult& result = player.play(line);
        report.hear(line, result);
        check.hear(line, result);
        viewed.onLine(line, result);
        verdicts.hear(line, log.onLine(line, result));
        for (const Breach& breach : check.breaches()) {
            fuzz::giveUp(fmt::format("line {}: {}: {}", breach.line, breach.rule, breach.text));
        }
    }
    requireAReport(report);
    requireVerdicts(verdicts.verdicts());
    TextBuffer exported;
    viewed.write(exported);
    require(nlohmann::json::accept(fmt::to_string(exported)), "an export is JSON");
}

}  // namespace

/// Loads the plug-in a first time, so that its counters are among those that the fuzzer begins with.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    sPlugin.load({});
    return 0;
}

// A trace that an engineer attached to a bug would crash the tool, give a page that shows nothing, or verdicts that
// change by being written.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::istringstream in(traceOf({data, size}));
    try {
        TraceReader trace(in, "in");
        playAll(trace);
    } catch (const InputError&) {  // from here on it is no trace
    }
    return 0;
}

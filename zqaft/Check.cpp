#include "refhost/check/Contract.h"
#include "refhost/play/Player.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"
#include "zqaft/Progress.h"

namespace zqaft {

namespace {

using refhost::append;
using refhost::appendJson;

struct Totals {
    size_t lines = 0;
    size_t frames = 0;
    size_t keys = 0;
    size_t breaches = 0;
};

void count(const refhost::TraceLine& line, Totals& totals) {
    ++totals.lines;
    if (std::holds_alternative<refhost::ProcessRawTouches>(line.event)) ++totals.frames;
    if (std::holds_alternative<refhost::ProcessKey>(line.event)) ++totals.keys;
}

void print(Output& out, const std::string& file, const refhost::Breach& breach, bool json) {
    if (json) {
        append(out.text(), R"({"trace":)");
        appendJson(out.text(), file);
        append(out.text(), FMT_COMPILE(R"(,"line":{},"rule":"{}","text":)"), breach.line, breach.rule);
        appendJson(out.text(), breach.text);
        append(out.text(), "}\n");
    } else {
        append(out.text(), FMT_COMPILE("{}:{}: {}: {}\n"), file, breach.line, breach.rule, breach.text);
    }
    out.offer();
}

}  // namespace

int check(const CheckOptions& options) {
    Output out;
    Totals totals;
    for (const std::string& file : options.traces) {
        const std::unique_ptr<refhost::TraceSource> source = openTrace(file);
        refhost::Player player(source->header(),
                               pluginOr(options.plugin));  // loaded anew: it reads the properties once
        refhost::Contract contract(source->header());
        Progress progress;
        refhost::TraceLine line;
        size_t told = 0;
        while (source->next(line)) {
            contract.hear(line, player.play(line));
            for (; told < contract.breaches().size(); ++told) {
                if (out.isTerminal()) progress.clear();
                print(out, file, contract.breaches()[told], options.json);
            }
            count(line, totals);
            if (progress.due(totals.lines)) progress.at(totals.lines, source->progress());
        }
        totals.breaches += told;
    }
    if (!options.json) {
        append(out.text(), FMT_COMPILE("traces    {}: {} frames, {} keys\nbreaches  {}\n"), options.traces.size(),
               totals.frames, totals.keys, totals.breaches);
    }
    out.flush();
    return totals.breaches == 0 ? kDone : kBreach;
}

}  // namespace zqaft

#include <map>
#include <string_view>

#include "refhost/check/TraceCheck.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"
#include "zqaft/TerminalObserver.h"

namespace zqaft {

namespace {

using refhost::append;
using refhost::appendJson;
using refhost::Breach;
using refhost::Designed;

struct Totals {
    size_t frames = 0;
    size_t keys = 0;
    size_t breaches = 0;
    size_t designed = 0;
    std::map<std::string, size_t> byName;  ///< of what is designed
};

void count(const refhost::TraceLine& line, Totals& totals) {
    if (std::holds_alternative<refhost::ProcessRawTouches>(line.event)) ++totals.frames;
    if (std::holds_alternative<refhost::ProcessKey>(line.event)) ++totals.keys;
}

/// Writes what is found in one trace.
class Teller {
  public:
    Teller(Output& out, const std::string& file, const CheckOptions& options)
        : mOut(out), mFile(file), mOptions(options) {}

    void tell(const Breach& breach) { print("breach", "", breach); }
    void tell(const Designed& designed) {
        if (mOptions.designed) print("designed", designed.name, designed.breach);
    }

  private:
    /// @param name empty for a breach
    void print(std::string_view kind, std::string_view name, const Breach& breach) {
        refhost::TextBuffer& out = mOut.text();
        if (mOptions.json) {
            append(out, FMT_COMPILE(R"({{"kind":"{}","trace":)"), kind);
            appendJson(out, mFile);
            append(out, FMT_COMPILE(R"(,"line":{},"rule":"{}",)"), breach.line, breach.rule);
            if (!name.empty()) append(out, FMT_COMPILE(R"("name":"{}",)"), name);
            append(out, R"("text":)");
            appendJson(out, breach.text);
            append(out, "}\n");
        } else if (name.empty()) {
            append(out, FMT_COMPILE("{}:{}: {}: {}\n"), mFile, breach.line, breach.rule, breach.text);
        } else {
            append(out, FMT_COMPILE("{}:{}: designed: {}: {}\n"), mFile, breach.line, name, breach.text);
        }
        mOut.offer();
    }

    Output& mOut;
    const std::string& mFile;
    const CheckOptions& mOptions;
};

void summarise(Output& out, size_t traces, const Totals& totals) {
    append(out.text(), FMT_COMPILE("traces    {}: {} frames, {} keys\nbreaches  {}\ndesigned  {}"), traces,
           totals.frames, totals.keys, totals.breaches, totals.designed);
    std::string_view between = ": ";
    for (const auto& [name, times] : totals.byName) {
        append(out.text(), FMT_COMPILE("{}{} {}"), between, name, times);
        between = ", ";
    }
    append(out.text(), "\n");
}

}  // namespace

int check(const CheckOptions& options) {
    Output out;
    Totals totals;
    for (const std::string& file : options.traces) {
        const std::unique_ptr<refhost::TraceSource> source = openTrace(file);
        refhost::Player player(source->header(),
                               pluginOr(options.plugin));  // loaded anew: it reads the properties once
        refhost::TraceCheck check(source->header());
        Teller teller(out, file, options);
        TerminalObserver observer(&out);
        size_t breaches = 0;
        size_t designed = 0;
        playLines(*source, player, &observer, [&](const refhost::TraceLine& line, const refhost::CallResult& result) {
            check.hear(line, result);
            if (breaches < check.breaches().size() || designed < check.designed().size()) observer.makeRoom();
            for (; breaches < check.breaches().size(); ++breaches) teller.tell(check.breaches()[breaches]);
            for (; designed < check.designed().size(); ++designed) {
                teller.tell(check.designed()[designed]);
                ++totals.byName[check.designed()[designed].name];
            }
            count(line, totals);
        });
        totals.breaches += breaches;
        totals.designed += designed;
    }
    if (!options.json) summarise(out, options.traces.size(), totals);
    out.flush();
    return totals.breaches == 0 ? kDone : kBreach;
}

}  // namespace zqaft

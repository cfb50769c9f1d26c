#include <cmath>

#include "refhost/explain/ExplainedWriter.h"
#include "zqaft/Commands.h"
#include "zqaft/DecisionPrinter.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/TerminalObserver.h"

namespace zqaft {

namespace {

using refhost::Explained;

/// Times are shown in ms, rounded: what is shown with the requested time has happened by then.
constexpr int64_t kHalfMs = 500'000;

class ExplainedPrinter {
  public:
    ExplainedPrinter(Output& out, bool json) : mOut(out), mJson(json), mPrinter(out, wantsColours()) {}

    /// @param kind as writeExplained() has it
    void print(std::string_view kind, const Explained& explained) {
        if (mJson) {
            refhost::writeExplained(mOut.text(), kind, explained);
        } else {
            refhost::Decision headline = explained.decision;
            if (!headline.message.starts_with('(')) headline.message.clear();  // it is among the log
            headline.rule = {};                                                // it stands in a line of its own
            mPrinter.print(headline);
            refhost::printReason(mOut.text(), explained);
        }
        mOut.offer();
    }

  private:
    Output& mOut;
    bool mJson;
    DecisionPrinter mPrinter;
};

/// What the library has recorded last of each finger that is down, and of the key that waits.
void printMoment(const refhost::Explainer& explainer, const ExplainOptions& options, ExplainedPrinter& printer) {
    if (explainer.waitingKey() && !options.id) printer.print("key", *explainer.waitingKey());
    const std::vector<refhost::FingerDown> fingers = explainer.fingersDown();
    if (fingers.empty()) say({"no finger is down then"});
    for (const refhost::FingerDown& finger : fingers) {
        if (options.id && !finger.latest.decision.target.pointers.hasBit(*options.id)) continue;
        printer.print("finger", finger.latest);
        for (const Explained& each : finger.decisions) printer.print("decision", each);
    }
}

}  // namespace

int explain(const ExplainOptions& options) {
    if (options.at && std::isnan(*options.at)) throw UsageError("--at: expected a time in seconds, such as 61.25");
    const std::unique_ptr<refhost::TraceSource> source = openPlayed(options);
    Output out;
    refhost::Player player(source->header(), pluginOr(options.plugin));
    refhost::Explainer explainer;
    ExplainedPrinter printer(out, options.json);
    TerminalObserver observer(&out);
    std::optional<int64_t> until;
    if (options.at) until = std::llround(*options.at * 1e9) + kHalfMs;
    playLines(*source, player, &observer, until,
              [&](const refhost::TraceLine& line, const refhost::CallResult& result) {
                  for (const Explained& each : explainer.onLine(line, result)) {
                      if (options.at || (options.id && !each.decision.target.pointers.hasBit(*options.id))) continue;
                      observer.makeRoom();
                      printer.print("decision", each);
                  }
              });
    observer.end();
    if (options.at) printMoment(explainer, options, printer);
    out.flush();
    sayAtEnd(explainer.summary(), *source);
    return kDone;
}

}  // namespace zqaft

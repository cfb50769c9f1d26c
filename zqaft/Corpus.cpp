#include <algorithm>
#include <chrono>
#include <map>
#include <optional>
#include <thread>
#include <utility>

#include "zqaft/Commands.h"
#include "zqaft/CorpusPrinter.h"
#include "zqaft/CorpusRow.h"
#include "zqaft/DecisionPrinter.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Progress.h"

namespace zqaft {

namespace {

using refhost::ChildProcesses;
using refhost::FoundTrace;

/// Plays the traces of a corpus, each in a process of its own, some at a time.
class CorpusRun {
  public:
    CorpusRun(const std::vector<FoundTrace>& traces, const std::string& plugin, size_t atATime)
        : mTraces(traces), mAtATime(atATime), mChildren([&traces, plugin](size_t number) {
              return refhost::packed(refhost::playTrace(traces[number].path, plugin));
          }) {}

    /// What came of the next trace, in their order whichever ends first; may return with nothing, to be called again.
    std::optional<ChildProcesses::Ended> next() {
        using namespace std::chrono_literals;
        while (mStarted < mTraces.size() && mChildren.running() < mAtATime) mChildren.start(mStarted++);
        if (mEarly.count(mTaken) == 0) {
            if (auto ended = mChildren.next(100ms)) mEarly.emplace(ended->number, std::move(*ended));
        }
        const auto inTurn = mEarly.extract(mTaken);
        if (inTurn.empty()) return std::nullopt;
        ++mTaken;
        return std::move(inTurn.mapped());
    }
    bool over() const { return mTaken == mTraces.size(); }
    size_t ended() const { return mTaken + mEarly.size(); }

  private:
    const std::vector<FoundTrace>& mTraces;
    size_t mAtATime;
    ChildProcesses mChildren;
    size_t mStarted = 0;
    size_t mTaken = 0;
    std::map<size_t, ChildProcesses::Ended> mEarly;  ///< by number: have ended before their turn
};

int codeOf(const CorpusRow& row) {
    if (row.failed()) return kFaultyInput;
    return row.standing == Standing::Changed || !row.played.breaches.empty() ? kBreach : kDone;
}

}  // namespace

int corpus(const CorpusOptions& options) {
    const auto start = std::chrono::steady_clock::now();
    const std::vector<FoundTrace> traces = refhost::findTraces(options.path);
    const size_t cores = std::max(1U, std::thread::hardware_concurrency());
    CorpusRun run(traces, pluginOr(options.plugin), options.jobs > 0 ? options.jobs : cores);
    Output out;
    Progress progress;
    CorpusPrinter printer(out, traces, wantsColours());
    int code = kDone;
    while (!run.over()) {
        if (const std::optional<ChildProcesses::Ended> ended = run.next()) {
            const CorpusRow row = judge(traces[ended->number], *ended, options.update);
            if (out.isTerminal()) progress.clear();
            options.json ? writeJson(out.text(), row) : printer.print(row);
            out.offer();
            code = std::max(code, codeOf(row));
        }
        progress.at(run.ended(), traces.size(), "traces");
    }
    progress.clear();
    if (!options.json) printer.printTotals((std::chrono::steady_clock::now() - start) / std::chrono::nanoseconds(1));
    out.flush();
    if (!options.json && printer.unwritten() > 0) {
        const bool one = printer.unwritten() == 1;
        say({fmt::format("{} {} no verdicts yet; --update writes them", printer.unwritten(),
                         one ? "trace has" : "traces have")});
    }
    return code;
}

}  // namespace zqaft

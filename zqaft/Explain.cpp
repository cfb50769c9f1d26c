#include <cmath>

#include "refhost/explain/ExplainedWriter.h"
#include "refhost/play/Player.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"
#include "zqaft/Progress.h"
#include "zqaft/StoryPrinter.h"

namespace zqaft {

namespace {

using refhost::Explained;

/// Times are shown in ms, rounded: whatever is shown with the asked time has happened by then.
constexpr int64_t kHalfMs = 500'000;

int64_t timeOf(const refhost::TraceLine& line, int64_t clock) {
    if (const auto* frame = std::get_if<refhost::ProcessRawTouches>(&line.event)) return frame->when;
    if (const auto* key = std::get_if<refhost::ProcessKey>(&line.event)) return key->when;
    return clock;
}

class Teller {
  public:
    Teller(Output& out, bool json) : mOut(out), mJson(json), mPrinter(out, wantsColours()) {}

    void tell(std::string_view kind, const Explained& explained) {
        if (mJson) {
            refhost::writeExplained(mOut.text(), kind, explained);
        } else {
            refhost::Decision headline = explained.decision;
            if (!headline.words.starts_with('(')) headline.words.clear();  // they are among the log
            mPrinter.print(headline);
            refhost::tellExplained(mOut.text(), explained);
        }
        mOut.offer();
    }

  private:
    Output& mOut;
    bool mJson;
    StoryPrinter mPrinter;
};

}  // namespace

int explain(const ExplainOptions& options) {
    if (options.at && std::isnan(*options.at)) throw UsageError("--at: expected a time in seconds, such as 61.25");
    const std::unique_ptr<refhost::TraceSource> source = openPlayed(options);
    Output out;
    refhost::Player player(source->header(), pluginOr(options.plugin));
    refhost::Explainer explainer(source->header());
    Teller teller(out, options.json);
    const auto wanted = [&](const Explained& each) {
        return !options.id || each.decision.about.fingers.hasBit(*options.id);
    };

    std::optional<int64_t> at;
    if (options.at) at = std::llround(*options.at * 1e9);
    Progress progress;
    refhost::TraceLine line;
    int64_t clock = 0;
    for (uint64_t lines = 0; source->next(line); ++lines) {
        clock = line.t.value_or(clock);
        if (at && timeOf(line, clock) >= *at + kHalfMs) break;
        for (const Explained& each : explainer.explain(line, player.play(line))) {
            if (at || !wanted(each)) continue;
            if (out.isTerminal()) progress.clear();
            teller.tell("decision", each);
        }
        if (source->wouldWait()) out.flush();
        if (progress.due(lines)) progress.at(lines, source->progress());
    }
    progress.clear();
    if (at) {
        if (const auto key = explainer.keyAt(*at); key && !options.id) teller.tell("key", *key);
        const std::vector<refhost::OnGlass> fingers = explainer.fingersAt(*at);
        if (fingers.empty()) say({"no finger is on the glass then"});
        for (const refhost::OnGlass& finger : fingers) {
            if (!wanted(finger.state)) continue;
            teller.tell("finger", finger.state);
            for (const Explained& each : finger.decisions) teller.tell("decision", each);
        }
    }
    out.flush();
    sayAtEnd(explainer.summary(), *source);
    return kDone;
}

}  // namespace zqaft

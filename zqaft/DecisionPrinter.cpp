#include "zqaft/DecisionPrinter.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "zqaft/Colours.h"

namespace zqaft {

namespace {

using refhost::append;
using refhost::Outcome;

/// As a terminal takes it.
std::string_view colourOf(Outcome fate) {
    switch (fate) {
        case Outcome::Kept:
        case Outcome::Dispatched: return kGreen;
        case Outcome::HeldBack:
        case Outcome::Consumed: return kYellow;
        case Outcome::Restored:
        case Outcome::LetThrough:
        case Outcome::ReSent:
        case Outcome::Reported: return kCyan;
        case Outcome::Lost:
        case Outcome::Cancelled:
        case Outcome::Dropped: return kRed;
        case Outcome::Noted: return kDim;
    }
    return kPlain;
}

/// "0.8 µs", from ns.
std::string shortly(int64_t ns) {
    if (ns < 1000) return fmt::format("{} ns", ns);
    if (ns < 1'000'000) return fmt::format("{:.1f} µs", static_cast<double>(ns) / 1e3);
    return fmt::format("{:.1f} ms", static_cast<double>(ns) / 1e6);
}

}  // namespace

bool wantsColours() {
    const char* refused = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    const bool dumb = terminal != nullptr && std::string_view(terminal) == "dumb";
    return isatty(STDOUT_FILENO) != 0 && !dumb && (refused == nullptr || *refused == '\0');
}

void DecisionPrinter::print(const refhost::Decision& decision) {
    const auto colour = [this](std::string_view code) { return mColours ? code : std::string_view(); };
    const double seconds = static_cast<double>(decision.when) / 1e9;
    append(mOut.text(), FMT_COMPILE("{:>11.3f} s  {}{:<11}{}  {:<24}"), seconds, colour(colourOf(decision.outcome)),
           refhost::wordOf(decision.outcome), colour(kPlain), decision.subject);
    const bool isContext = decision.outcome == Outcome::Noted;  // its subject is the rule
    if (!decision.rule.empty() && !isContext) append(mOut.text(), FMT_COMPILE("  {}"), decision.rule);
    if (!decision.message.empty()) {
        append(mOut.text(), FMT_COMPILE("  {}{}{}"), colour(kDim), decision.message, colour(kPlain));
    }
    while (mOut.text().size() > 0 && mOut.text()[mOut.text().size() - 1] == ' ') {
        mOut.text().resize(mOut.text().size() - 1);  // the column's padding, where nothing follows it
    }
    append(mOut.text(), "\n");
    mOut.offer();
}

void DecisionPrinter::print(const refhost::Summary& summary) {
    refhost::TextBuffer& out = mOut.text();
    append(out, FMT_COMPILE("\nfingers   {}\n"), summary.fingers.text());
    append(out, FMT_COMPILE("frames    {}: pointers judged {}, removed {}\n"), summary.frames, summary.pointersJudged,
           summary.pointersRemoved);
    append(out, FMT_COMPILE("gestures  {} cancelled"), summary.gesturesCancelled);
    if (summary.cancelRequests > summary.gesturesCancelled) {
        append(out, FMT_COMPILE(", in {} requests"), summary.cancelRequests);
    }
    if (summary.reports > 0) append(out, FMT_COMPILE(", {} reported"), summary.reports);
    append(out, "\n");
    append(out, FMT_COMPILE("keys      {} consumed, {} held back, {} re-sent, {} dropped, {} dispatched\n"),
           summary.keysConsumed, summary.keysHeldBack, summary.keysReSent, summary.keysDropped, summary.keysDispatched);
    append(out, FMT_COMPILE("calls     {}: median {}, p99 {}, max {}\n"), summary.calls.count(),
           shortly(summary.calls.percentile(0.5)), shortly(summary.calls.percentile(0.99)),
           shortly(summary.calls.maximum()));
    mOut.offer();
}

}  // namespace zqaft

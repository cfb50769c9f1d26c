// Calls of a host, plausible ones and hostile ones, through the exports of the built plug-in; what a host relies on is
// checked after each.

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>

#include "fuzz/CallsFromBytes.h"
#include "fuzz/FreshPlugin.h"
#include "refhost/check/Contract.h"
#include "refhost/play/Player.h"
#include "refhost/trace/TraceWriter.h"

namespace {

fuzz::FreshPlugin sPlugin;

[[noreturn]] void tell(const refhost::Breaches& breaches, fuzz::CallsFromBytes trace) {
    refhost::TextBuffer out;
    refhost::writeTrace(out, trace.header());
    refhost::TraceLine line;
    while (trace.next(line)) {
        refhost::writeTrace(out, line);
        if (line.line == breaches.front().line) break;
    }
    for (const refhost::Breach& breach : breaches) {
        fmt::format_to(std::back_inserter(out), "line {}: {}: {}\n", breach.line, breach.rule, breach.text);
    }
    fuzz::giveUp(fmt::to_string(out));
}

}  // namespace

/// Loads the plug-in a first time, so that its counters are among those that the fuzzer begins with.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    sPlugin.load({});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::CallsFromBytes trace(data, size);
    refhost::Player& player = sPlugin.load(trace.header());
    refhost::Contract contract(trace.header());
    refhost::TraceLine line;
    while (trace.next(line)) {
        contract.hear(line, player.play(line));
        if (!contract.breaches().empty()) tell(contract.breaches(), fuzz::CallsFromBytes(data, size));
    }
    return 0;
}

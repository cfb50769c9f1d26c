#include "refhost/corpus/PlayedTrace.h"

#include <algorithm>
#include <chrono>
#include <exception>

#include "refhost/check/TraceCheck.h"
#include "refhost/play/DecisionLog.h"
#include "refhost/play/Playback.h"
#include "refhost/trace/TraceReader.h"

namespace refhost {

namespace {

int64_t latest(const std::vector<int64_t>& ns) { return ns.empty() ? 0 : *std::max_element(ns.begin(), ns.end()); }

PlayedTrace::Counts countsOf(const Summary& summary) {
    const FingerSummary& fingers = summary.fingers;
    return {.frames = summary.frames,
            .fingers = fingers.total(),
            .kept = fingers.kept,
            .lost = fingers.lost,
            .restored = fingers.restoredLate.size(),
            .letThrough = fingers.letThroughLate.size(),
            .interrupted = fingers.interrupted,
            .fingersCancelled = fingers.cancelled,
            .latestNs = std::max(latest(fingers.restoredLate), latest(fingers.letThroughLate)),
            .pointersJudged = summary.pointersJudged,
            .pointersRemoved = summary.pointersRemoved,
            .cancelled = summary.gesturesCancelled,
            .reports = summary.reports,
            .keysConsumed = summary.keysConsumed,
            .keysHeldBack = summary.keysHeldBack,
            .keysReSent = summary.keysReSent,
            .keysDropped = summary.keysDropped,
            .keysDispatched = summary.keysDispatched};
}

void play(const std::string& path, const std::string& pluginPath, PlayedTrace& played) {
    TraceReader trace(path);
    Player player(trace.header(), pluginPath);
    DecisionLog decisions;
    TraceCheck check(trace.header());
    VerdictCollector verdicts;
    playLines(trace, player, nullptr, [&](const TraceLine& line, const CallResult& result) {
        check.hear(line, result);
        verdicts.hear(line, decisions.onLine(line, result));
    });
    played.counts = countsOf(decisions.summary());
    played.verdicts = verdicts.verdicts();
    for (const auto& [at, rule, text] : check.breaches()) played.breaches.push_back({at, std::string(rule), text});
}

}  // namespace

PlayedTrace::Counts& PlayedTrace::Counts::operator+=(const Counts& other) {
    frames += other.frames;
    fingers += other.fingers;
    kept += other.kept;
    fingersCancelled += other.fingersCancelled;
    lost += other.lost;
    letThrough += other.letThrough;
    interrupted += other.interrupted;
    latestNs = std::max(latestNs, other.latestNs);
    pointersJudged += other.pointersJudged;
    pointersRemoved += other.pointersRemoved;
    restored += other.restored;
    cancelled += other.cancelled;
    reports += other.reports;
    keysConsumed += other.keysConsumed;
    keysHeldBack += other.keysHeldBack;
    keysReSent += other.keysReSent;
    keysDropped += other.keysDropped;
    keysDispatched += other.keysDispatched;
    return *this;
}

PlayedTrace playTrace(const std::string& path, const std::string& pluginPath) {
    PlayedTrace played;
    const auto start = std::chrono::steady_clock::now();
    try {
        play(path, pluginPath, played);
    } catch (const PluginError& fault) {
        played.noPlugin = fault.what();
    } catch (const std::exception& fault) {
        played.fault = fault.what();
    }
    const auto end = std::chrono::steady_clock::now();
    played.ns = std::chrono::duration_cast<std::chrono::nanoseconds>(end - start).count();
    return played;
}

}  // namespace refhost

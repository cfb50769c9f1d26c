#include "refhost/corpus/PlayedTrace.h"

#include <chrono>
#include <exception>

#include "refhost/check/TraceCheck.h"
#include "refhost/play/Player.h"
#include "refhost/play/Story.h"
#include "refhost/trace/TraceReader.h"

namespace refhost {

namespace {

PlayedTrace::Counts countsOf(const Summary& summary) {
    return {.frames = summary.frames,
            .pointersJudged = summary.pointersJudged,
            .pointersRemoved = summary.pointersRemoved,
            .restored = summary.restored,
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
    Story story;
    TraceCheck check(trace.header());
    VerdictCollector verdicts;
    TraceLine line;
    while (trace.next(line)) {
        const CallResult& result = player.play(line);
        check.hear(line, result);
        verdicts.hear(line, story.tell(line, result));
    }
    played.counts = countsOf(story.summary());
    played.verdicts = verdicts.verdicts();
    for (const auto& [at, rule, text] : check.breaches()) played.breaches.push_back({at, std::string(rule), text});
}

}  // namespace

PlayedTrace::Counts& PlayedTrace::Counts::operator+=(const Counts& other) {
    frames += other.frames;
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

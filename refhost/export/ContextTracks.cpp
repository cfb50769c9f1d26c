#include "refhost/export/ContextTracks.h"

#include "platform/control/LogSink.h"
#include "refhost/export/DecisionArguments.h"
#include "refhost/export/TrackGroups.h"

namespace refhost {

namespace {

/// A measurement that is drawn as a counter.
struct Counter {
    std::string_view rule;
    std::string_view measurement;
};

constexpr Counter kCounters[] = {{"cover-state", "cover state"}, {"fold-state", "spread of the averages"}};

std::string argumentsOf(const LogEntry& entry) {
    return fmt::format(R"({{"priority":"{}"}})", aftplatform::priorityName(entry.priority));
}

}  // namespace

size_t ContextTracks::contextProcess() {
    if (!mContext) mContext = mEvents.addProcess("sensors and context", static_cast<int>(TrackGroup::Context));
    return *mContext;
}

const ChromeEvents::Track& ContextTracks::contextTrack(std::string_view filter) {
    const auto [known, isNew] = mContextTracks.try_emplace(std::string(filter));
    if (isNew) known->second = mEvents.addTrack(contextProcess(), filter.empty() ? "sensor service" : filter);
    return known->second;
}

const ChromeEvents::Track& ContextTracks::logTrack(const std::string& tag) {
    const auto [known, isNew] = mLogTracks.try_emplace(tag);
    if (isNew) {
        if (!mLog) mLog = mEvents.addProcess("log", static_cast<int>(TrackGroup::Log));
        known->second = mEvents.addTrack(*mLog, tag.empty() ? "no tag" : tag);
    }
    return known->second;
}

void ContextTracks::onLine(int64_t when, const CallResult& result, const Decisions& decisions) {
    for (const Decision& decision : decisions) {
        if (decision.outcome != Outcome::Noted) continue;
        mEvents.addInstant(contextTrack(decision.filter), decision.when, decision.subject, argumentsOf(decision));
    }
    for (const Record& record : result.records) {
        if (record.outcome == RecordOutcome::Noted || record.outcome == RecordOutcome::Sampled) onSample(record);
    }
    for (const LogEntry& entry : result.log) {
        mEvents.addInstant(logTrack(entry.tag), when, entry.text, argumentsOf(entry));
    }
}

/// A counter keeps its value until the next event: an equal value needs none.
void ContextTracks::onSample(const Record& record) {
    for (const Counter& counter : kCounters) {
        const Measurement* measured = find(record.measurements, counter.measurement);
        if (record.rule != counter.rule || measured == nullptr) continue;
        const auto [known, isNew] = mCounters.try_emplace(counter.measurement, measured->value);
        if (!isNew && known->second == measured->value) continue;
        known->second = measured->value;
        mEvents.addCounter(contextProcess(), record.when, counter.measurement, measured->value);
    }
}

}  // namespace refhost

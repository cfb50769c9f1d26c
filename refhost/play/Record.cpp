#include "refhost/play/Record.h"

#include <algorithm>
#include <cmath>

namespace refhost {

namespace {

using android::DecisionRecord;

const Record* findOutcome(const std::vector<Record>& records, uint32_t pointer, RecordOutcome outcome) {
    const auto found = std::find_if(records.begin(), records.end(), [&](const Record& record) {
        return record.pointer == pointer && record.outcome == outcome;
    });
    return found == records.end() ? nullptr : &*found;
}

}  // namespace

Record recordOf(const DecisionRecord& made, std::string_view message) {
    Record record{.filter = made.filter,
                  .rule = made.rule,
                  .outcome = made.outcome,
                  .when = made.when,
                  .measurements = {made.measurements, made.measurements + made.measurementCount}};
    if (made.hasDevice) record.device = made.deviceId;
    if (made.hasPointer) {
        record.pointer = made.pointerId;
        record.x = made.x;
        record.y = made.y;
        record.extraData = made.extraData;
    }
    if (made.hasKey) record.key = made.keyCode;
    if (made.logged) record.message = message;
    return record;
}

std::string_view nameOf(RecordOutcome outcome) {
    constexpr std::string_view kNames[] = {"out of scope", "passed",   "removed",   "restored", "cancelled",
                                           "dispatched",   "consumed", "held back", "re-sent",  "dropped",
                                           "reported",     "noted",    "sampled"};
    return kNames[static_cast<size_t>(outcome)];
}

double marginOf(const Measurement& measurement) {
    return std::min(measurement.value - measurement.least, measurement.most - measurement.value);
}

bool isFact(const Measurement& measurement) { return std::isinf(measurement.least) && std::isinf(measurement.most); }

bool isFlag(const Measurement& measurement) { return measurement.least == 1 && measurement.most == 1; }

const Measurement* find(const std::vector<Measurement>& measurements, std::string_view name) {
    const auto found = std::find_if(measurements.begin(), measurements.end(),
                                    [&](const Measurement& each) { return each.name == name; });
    return found == measurements.end() ? nullptr : &*found;
}

const Record* removalOf(const std::vector<Record>& records, uint32_t pointer) {
    return findOutcome(records, pointer, RecordOutcome::Removed);
}

const Record* restorationOf(const std::vector<Record>& records, uint32_t pointer) {
    return findOutcome(records, pointer, RecordOutcome::Restored);
}

const Record* passageOf(const std::vector<Record>& records, uint32_t pointer, std::string_view filter) {
    const Record* acting = nullptr;
    const Record* any = nullptr;
    for (const Record& record : records) {
        if (record.pointer != pointer) continue;
        const bool acts = record.outcome == RecordOutcome::Passed || record.outcome == RecordOutcome::Restored;
        if (!acts && record.outcome != RecordOutcome::OutOfScope) continue;
        if (record.filter == filter) return &record;
        if (acting == nullptr && acts) acting = &record;
        if (any == nullptr) any = &record;
    }
    return acting != nullptr ? acting : any;
}

}  // namespace refhost

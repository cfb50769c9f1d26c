#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "aft/host/DecisionRecord.h"
#include "refhost/trace/Trace.h"

namespace refhost {

using android::Measurement;
using RecordOutcome = android::DecisionRecord::Outcome;

/// One decision as the library recorded it: a copy of an android::DecisionRecord. Its texts, but the message, are the
/// library's own and live as long as the Player that loaded it.
struct Record {
    std::string_view filter;
    std::string_view rule;
    RecordOutcome outcome = RecordOutcome::Noted;
    int64_t when = 0;  ///< ns
    DeviceRef device{};
    std::optional<uint32_t> pointer{};  ///< id; the next three belong to it
    int32_t x = 0;
    int32_t y = 0;
    uint32_t extraData = 0;
    std::optional<int32_t> key{};  ///< key code
    std::vector<Measurement> measurements{};
    std::string message{};  ///< the log line that says the same; empty: there is none
};

/// `message` is the last line that the library logged.
Record recordOf(const android::DecisionRecord& made, std::string_view message);

/// The name of an outcome, as `replay --json` writes it.
std::string_view nameOf(RecordOutcome outcome);

/// How far inside its range a value is, 0 on its end; negative: how far from it, to the end that it misses.
double marginOf(const Measurement& measurement);

/// Whether the range is open at both ends: the value is a fact, not a condition.
bool isFact(const Measurement& measurement);
/// Whether the value is a flag that has to be set.
bool isFlag(const Measurement& measurement);

/// The first measurement of this name, or null.
const Measurement* find(const std::vector<Measurement>& measurements, std::string_view name);

// Of the records of a frame: the one that says what a filter did with a pointer, or null.

const Record* removalOf(const std::vector<Record>& records, uint32_t pointer);
const Record* restorationOf(const std::vector<Record>& records, uint32_t pointer);
/// Why a pointer stayed in the frame: the record of `filter`, if it made one; else of the first filter that acts where
/// the pointer is; else the first.
const Record* passageOf(const std::vector<Record>& records, uint32_t pointer, std::string_view filter);

}  // namespace refhost

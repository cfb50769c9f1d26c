#include "refhost/check/RecordRules.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "aft/host/Rules.h"

namespace refhost {

namespace {

using android::RuleNeeds;

int64_t toMs(int64_t ns) { return ns / 1'000'000; }

/// Times that no clock can have wrap around.
int64_t elapsed(int64_t later, int64_t earlier) {
    return static_cast<int64_t>(static_cast<uint64_t>(later) - static_cast<uint64_t>(earlier));
}

size_t countOf(const CallResult& result, RecordOutcome outcome) {
    return static_cast<size_t>(std::count_if(result.records.begin(), result.records.end(),
                                             [&](const Record& record) { return record.outcome == outcome; }));
}

RuleNeeds needsOf(std::string_view rule) {
    for (const android::RuleDescription& each : android::kRules) {
        if (each.name == rule) return each.needs;
    }
    return RuleNeeds::Nothing;  // a rule of another build
}

bool isMet(RuleNeeds needs, const std::vector<Measurement>& measurements) {
    const auto holds = [](const Measurement& each) { return each.holds; };
    switch (needs) {
        case RuleNeeds::Nothing: return true;
        case RuleNeeds::All: return std::all_of(measurements.begin(), measurements.end(), holds);
        case RuleNeeds::Some: return std::any_of(measurements.begin(), measurements.end(), holds);
        case RuleNeeds::None: return std::none_of(measurements.begin(), measurements.end(), holds);
        case RuleNeeds::NotAll:
            return measurements.empty() || !std::all_of(measurements.begin(), measurements.end(), holds);
    }
    return true;
}

}  // namespace

void RecordRules::remember(const TraceLine& line) {
    const auto* key = std::get_if<ProcessKey>(&line.event);
    if (key != nullptr && key->down) mKeys.emplace(key->keyCode, toMs(key->when));
}

void RecordRules::check(const TraceLine& line, const CallResult& result, Breaches& breaches) {
    mBreaches = &breaches;
    mLine = result.line;
    if (const auto* key = std::get_if<ProcessKey>(&line.event)) checkKey(*key, result);
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) checkFrame(*frame, result);
    for (const Record& record : result.records) {
        checkMeasurements(record);
        checkRule(record);
    }
}

void RecordRules::breach(std::string_view rule, std::string text) {
    mBreaches->push_back({mLine, rule, std::move(text)});
}

void RecordRules::checkFrame(const ProcessRawTouches& call, const CallResult& result) {
    for (const Record& record : result.records) {
        if (record.outcome != RecordOutcome::Noted && record.when != call.when) {
            breach("record-frame",
                   fmt::format("{} at {} ns; expected the frame's time, {}", record.rule, record.when, call.when));
        }
        if (record.pointer) checkPointer(call, result, record);
    }
    for (uint32_t id : result.frame.removed) {
        if (call.frame.find(id) == nullptr || removalOf(result.records, id) != nullptr) continue;
        breach("record-missing", fmt::format("pointer {} leaves the frame; expected the record of its removal", id));
    }
    const auto same = [&](RecordOutcome outcome, size_t seen, std::string_view what) {
        const size_t recorded = countOf(result, outcome);
        if (recorded == seen) return;
        breach(recorded < seen ? "record-missing" : "record-frame",
               fmt::format("{} {} recorded; expected {}, as the host has seen", recorded, what, seen));
    };
    if (call.device) same(RecordOutcome::Cancelled, result.requests.cancelled.size(), "cancels");
    same(RecordOutcome::SentAgain, result.frame.keys.size() / 2, "keys to send");
    same(RecordOutcome::Reported, result.requests.reports.size(), "reports");
}

/// Of two records with one index in a broken frame, none can be compared.
void RecordRules::checkPointer(const ProcessRawTouches& call, const CallResult& result, const Record& record) {
    const uint32_t id = *record.pointer;
    const auto* came = call.frame.find(id);
    const auto* went = result.frame.frame.find(id);
    if (came == nullptr) {
        return breach("record-frame", fmt::format("{} of pointer {}; the frame has none", record.rule, id));
    }
    const auto isAt = [&](const android::RawPointerData::Pointer& p) {
        return p.x == record.x && p.y == record.y && p.extraData == record.extraData;
    };
    const bool restored = restorationOf(result.records, id) != nullptr;
    const bool removed = result.frame.removed.hasBit(id);
    if (!isAt(*came) && !(restored && !removed && went != nullptr && isAt(*went)) && !(restored && removed)) {
        breach("record-frame", fmt::format("{} of pointer {} at ({}, {}); expected ({}, {}), as it came", record.rule,
                                           id, record.x, record.y, came->x, came->y));
    }
    if (record.outcome == RecordOutcome::Removed && !removed) {
        breach("record-frame", fmt::format("{} removes pointer {}; it stays in the frame", record.rule, id));
    }
}

void RecordRules::checkKey(const ProcessKey& call, const CallResult& result) {
    const auto made = std::find_if(result.records.begin(), result.records.end(),
                                   [&](const Record& record) { return record.key == call.keyCode; });
    if (made == result.records.end()) {
        return breach("record-missing", fmt::format("key {}; expected the record of it", call.keyCode));
    }
    const bool consumed = result.keyResult.value_or(0) != 0;
    if (made->when != call.when || consumed == (made->outcome == RecordOutcome::Dispatched)) {
        breach("record-frame",
               fmt::format("key {} is recorded as {} at {} ns; expected {} at {}", call.keyCode, nameOf(made->outcome),
                           made->when, consumed ? "consumed" : "dispatched", call.when));
    }
}

void RecordRules::checkMeasurements(const Record& record) {
    for (const Measurement& measured : record.measurements) checkMeasurement(record, measured);
}

void RecordRules::checkMeasurement(const Record& record, const Measurement& measured) {
    const bool inRange = measured.least <= measured.value && measured.value <= measured.most;
    if (!isFact(measured) && inRange != measured.holds) {
        breach("record-measure", fmt::format("{}: {} {} is {} its range", record.rule, measured.name, measured.value,
                                             inRange ? "said to be outside" : "said to be inside"));
    }
    const auto& [event, keyCode, when, until] = measured.cause;
    const std::string_view name = measured.name;
    const std::string_view unit = measured.unit;
    const bool wraps = until != 0 && until < when;  // of times that no clock can have
    const auto differs = [&](double expected) {
        if (measured.value == expected) return;
        breach("record-measure", fmt::format("{}: {} {}; expected {}", record.rule, name, measured.value, expected));
    };
    if (event != nullptr && (unit == "ms" || unit == "ns") && when >= 0 && !wraps) {
        const int64_t end = until != 0 ? until : record.when;
        differs(static_cast<double>(unit == "ms" ? toMs(end) - toMs(when) : elapsed(end, when)));
    }
    if (event != nullptr && std::string_view(event) == "key" && !mKeys.contains({keyCode, toMs(when)})) {
        breach("record-measure", fmt::format("{}: {} counts from key {} at {} ms; the host handed in none then",
                                             record.rule, name, keyCode, toMs(when)));
    }
    if (record.pointer && name.starts_with("x in the ")) differs(record.x);
    if (record.pointer && name.starts_with("y in the ")) differs(record.y);
}

void RecordRules::checkRule(const Record& record) {
    std::vector<Measurement> conditions = record.measurements;
    std::erase_if(conditions, [](const Measurement& each) { return isFact(each); });
    if (isMet(needsOf(record.rule), conditions)) return;
    breach("record-rule", fmt::format("{}: its measurements do not say so", record.rule));
}

}  // namespace refhost

#include "refhost/trace/EventFields.h"
#include "refhost/trace/SensorNames.h"
#include "refhost/trace/TraceEvents.h"

namespace refhost {

namespace {

using aftplatform::sensors::Call;
using aftplatform::sensors::Fault;

void readValues(const JsonLine::Value& value, const JsonPlace& place, std::vector<float>& values) {
    if (value.kind() != JsonLine::Kind::Array) place.fault("not an array; expected the sensor's values");
    if (value.size() > SensorEvent::kMostValues) {
        place.fault(fmt::format("{} values; expected at most {}", value.size(), SensorEvent::kMostValues));
    }
    for (const JsonLine::Value element : value) {
        const JsonPlace here(place, values.size());
        readJson(element, here, values.emplace_back());
    }
}

void readFaults(const JsonLine::Value& value, const JsonPlace& place, std::map<Call, Fault>& faults) {
    JsonFields fields(value, place);
    for (const auto& [name, call] : kServiceCalls) {
        fields.with(name, [&faults, call = call](const JsonLine::Value& fault, const JsonPlace& here) {
            readJsonName(fault, here, faultsOf(call), faults[call]);
        });
    }
    fields.done();
}

}  // namespace

void read(JsonFields& fields, const TraceHeader& /*header*/, SetProperty& happening) {
    fields.required("key", happening.key);
    if (happening.key.empty()) JsonPlace(fields.place(), "key").fault("empty; expected a property's name");
    fields.required("value", happening.value);
    checkPropertyValue(happening.value, JsonPlace(fields.place(), "value"));
}

void read(JsonFields& fields, const TraceHeader& /*header*/, SensorEvent& happening) {
    fields.required("type", happening.type);
    fields.required("handle", happening.handle);
    fields.required("timestamp", happening.timestamp);
    fields.with("values", [&](const JsonLine::Value& value, const JsonPlace& place) {
        readValues(value, place, happening.values);
    });
}

void read(JsonFields& fields, const TraceHeader& /*header*/, SensorService& happening) {
    const bool fails = fields.with("fails", [&](const JsonLine::Value& value, const JsonPlace& place) {
        readFaults(value, place, happening.fails.emplace());
    });
    const bool state = fields.with("state", [&](const JsonLine::Value& value, const JsonPlace& place) {
        readJsonName(value, place, kServiceStates, happening.state.emplace());
    });
    if (!fails && !state) fields.place().fault("neither \"state\" nor \"fails\"; expected one of them, or both");
}

}  // namespace refhost

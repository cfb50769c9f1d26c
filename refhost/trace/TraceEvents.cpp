#include "refhost/trace/TraceEvents.h"

#include <algorithm>

#include "refhost/trace/EventFields.h"

namespace refhost {

void readDevice(JsonFields& fields, const TraceHeader& header, DeviceRef& device) {
    const bool given = fields.with("device", [&](const JsonLine::Value& value, const JsonPlace& place) {
        device.reset();
        if (value.kind() == JsonLine::Kind::Null) return;
        readJson(value, place, device.emplace());
        const auto same = [&](const DeviceDescription& known) { return known.id == *device; };
        if (std::none_of(header.devices.begin(), header.devices.end(), same)) {
            place.fault("no device of this id; expected one of the header's, or null");
        }
    });
    if (!given) JsonPlace(fields.place(), "device").fault("missing; expected a device's id, or null");
}

namespace {

void read(JsonFields& fields, const TraceHeader& header, ProcessKey& call) {
    readDevice(fields, header, call.device);
    fields.required("when", call.when);
    fields.required("keyCode", call.keyCode);
    fields.optional("scanCode", call.scanCode);
    fields.required("down", call.down);
    fields.optional("metaState", call.metaState);
    fields.optional("policyFlags", call.policyFlags);
}

void read(JsonFields& fields, const TraceHeader& /*header*/, ProcessInputWindow& call) {
    const auto windows = [&](const JsonLine::Value& value, const JsonPlace& place) {
        if (value.kind() != JsonLine::Kind::Array) place.fault("not an array; expected the windows");
        for (const JsonLine::Value element : value) {
            WindowDescription window;
            JsonFields of(element, JsonPlace(place, call.windows.size()));
            of.required("name", window.name);
            of.optional("token", window.token);
            of.optional("type", window.type);
            of.optional("frame", window.frame);
            of.optional("visible", window.visible);
            of.optional("notchArea", window.notchArea);
            of.done();
            call.windows.push_back(std::move(window));
        }
    };
    if (!fields.with("windows", windows)) JsonPlace(fields.place(), "windows").fault("missing; expected this key");
    fields.with("focused", [&](const JsonLine::Value& value, const JsonPlace& place) {
        if (value.kind() == JsonLine::Kind::Null) return;
        readJson(value, place, call.focused.emplace());
        if (*call.focused >= call.windows.size()) place.fault("no window of this index; expected one, or null");
    });
    fields.optional("keyguard", call.keyguard);
}

void read(JsonFields& fields, const TraceHeader& header, ConfigureSurface& call) {
    readDevice(fields, header, call.device);
    fields.required("width", call.width);
    fields.required("height", call.height);
    fields.required("orientation", call.orientation);
    fields.optional("calibration", call.calibration);
    fields.required("rawX", call.rawX);
    fields.required("rawY", call.rawY);
    fields.optional("scale", call.scale);
    fields.optional("translate", call.translate);
}

void read(JsonFields& /*fields*/, const TraceHeader& /*header*/, NotifyInputStart& /*call*/) {}
void read(JsonFields& /*fields*/, const TraceHeader& /*header*/, NotifyInputExit& /*call*/) {}
void read(JsonFields& /*fields*/, const TraceHeader& /*header*/, NotifyScreenState& /*call*/) {}

/// Reads the rest of a line as an `Event`. A frame, of which there are most, is read over the last one.
template <typename Event>
void readAs(JsonFields& fields, const TraceHeader& header, TraceLine& line) {
    if (!std::holds_alternative<ProcessRawTouches>(line.event) || !std::is_same_v<Event, ProcessRawTouches>) {
        line.event.emplace<Event>();
    }
    read(fields, header, std::get<Event>(line.event));
}

using ReadLine = void (*)(JsonFields&, const TraceHeader&, TraceLine&);

constexpr Named<ReadLine> kCalls[] = {
    {"processRawTouches", readAs<ProcessRawTouches>},   {"processKey", readAs<ProcessKey>},
    {"processInputWindow", readAs<ProcessInputWindow>}, {"configureSurface", readAs<ConfigureSurface>},
    {"notifyInputStart", readAs<NotifyInputStart>},     {"notifyInputExit", readAs<NotifyInputExit>},
    {"notifyScreenState", readAs<NotifyScreenState>},
};

constexpr Named<ReadLine> kPlatform[] = {
    {"sensorEvent", readAs<SensorEvent>},
    {"sensorService", readAs<SensorService>},
    {"setProperty", readAs<SetProperty>},
};

/// How a line of the kind that `key` names is read, or null where the key is absent.
template <size_t N>
ReadLine find(JsonFields& fields, std::string_view key, const Named<ReadLine> (&kinds)[N]) {
    ReadLine found = nullptr;
    fields.with(
        key, [&](const JsonLine::Value& value, const JsonPlace& place) { readJsonName(value, place, kinds, found); });
    return found;
}

}  // namespace

void readTraceLine(const JsonLine::Value& object, const JsonPlace& place, const TraceHeader& header, TraceLine& line) {
    JsonFields fields(object, place);
    line.t.reset();
    const ReadLine call = find(fields, "call", kCalls);
    const ReadLine happening = find(fields, "platform", kPlatform);
    if (call != nullptr && happening != nullptr) {
        JsonPlace(place, "platform").fault("beside \"call\"; expected one of them");
    }
    const ReadLine readRest = call != nullptr ? call : happening;
    if (readRest == nullptr) place.fault("neither \"call\" nor \"platform\"; expected one of them");
    fields.with("t",
                [&](const JsonLine::Value& value, const JsonPlace& here) { readJson(value, here, line.t.emplace()); });
    readRest(fields, header, line);
    fields.done();
}

}  // namespace refhost

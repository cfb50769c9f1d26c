#include "refhost/trace/TraceWriter.h"

#include "refhost/trace/SensorNames.h"

namespace refhost {

namespace {

using android::BitSet32;
using android::RawPointerData;

void write(TextBuffer& out, const DeviceRef& device) {
    if (device) {
        append(out, FMT_COMPILE(R"(,"device":{})"), *device);
    } else {
        append(out, R"(,"device":null)");
    }
}

template <typename T>
void writeUnless(TextBuffer& out, std::string_view key, T value, T usual) {
    if (value != usual) append(out, FMT_COMPILE(R"(,"{}":{})"), key, value);
}

template <typename Array>
void writeArrayUnless(TextBuffer& out, std::string_view key, const Array& value, const Array& usual) {
    if (value == usual) return;
    append(out, FMT_COMPILE(R"(,"{}":)"), key);
    appendJsonNumbers(out, value);
}

void writeIdsUnless(TextBuffer& out, std::string_view key, BitSet32 ids, BitSet32 usual) {
    if (ids == usual) return;
    append(out, FMT_COMPILE(R"(,"{}":)"), key);
    appendJson(out, ids);
}

void writePointer(TextBuffer& out, const RawPointerData::Pointer& pointer) {
    append(out, FMT_COMPILE(R"({{"id":{},"x":{},"y":{})"), pointer.id, pointer.x, pointer.y);
    writeArrayUnless(out, "axes", pointer.axes, {});
    writeUnless(out, "hovering", pointer.isHovering != 0, false);
    writeUnless<uint32_t>(out, "extraData", pointer.extraData, 0);
    writeUnless<uint32_t>(out, "reserved", pointer.reserved, 0);
    out.push_back('}');
}

void write(TextBuffer& out, const ProcessRawTouches& call) {
    append(out, R"("call":"processRawTouches")");
    write(out, call.device);
    append(out, FMT_COMPILE(R"(,"when":{},"pointers":)"), call.when);

    BitSet32 touching{};
    BitSet32 hovering{};
    RawPointerData implied{};
    const RawPointerData& frame = call.frame;
    std::string_view separator = "[";
    for (uint32_t i = 0; i < frame.recordCount(); ++i) {
        const RawPointerData::Pointer& pointer = frame.pointers[i];
        append(out, separator);
        writePointer(out, pointer);
        separator = ",";
        (pointer.isHovering != 0 ? hovering : touching).markBit(pointer.id);
        if (pointer.id < RawPointerData::kMaxIds) implied.idToIndex[pointer.id] = i;
    }
    append(out, separator == "[" ? "[]" : "]");

    writeIdsUnless(out, "touching", frame.touchingIdBits, touching);
    writeIdsUnless(out, "hovering", frame.hoveringIdBits, hovering);
    writeIdsUnless(out, "ids", call.ids, frame.touchingIdBits);

    const uint32_t named = frame.touchingIdBits.value | call.ids.value;
    const uint32_t present = touching.value | hovering.value;
    separator = R"(,"idToIndex":{)";
    for (uint32_t id = 0; id < RawPointerData::kMaxIds; ++id) {
        const bool needsOne = (BitSet32::maskOf(id) & named & ~present) != 0;
        if (!needsOne && frame.idToIndex[id] == implied.idToIndex[id]) continue;
        append(out, FMT_COMPILE(R"({}"{}":{})"), separator, id, frame.idToIndex[id]);
        separator = ",";
    }
    if (separator == ",") out.push_back('}');
}

void write(TextBuffer& out, const ProcessKey& call) {
    append(out, R"("call":"processKey")");
    write(out, call.device);
    append(out, FMT_COMPILE(R"(,"when":{},"keyCode":{})"), call.when, call.keyCode);
    writeUnless(out, "scanCode", call.scanCode, 0);
    append(out, FMT_COMPILE(R"(,"down":{})"), call.down);
    writeUnless(out, "metaState", call.metaState, 0);
    writeUnless<uint32_t>(out, "policyFlags", call.policyFlags, 0);
}

void write(TextBuffer& out, const ProcessInputWindow& call) {
    append(out, R"("call":"processInputWindow","windows":)");
    const WindowDescription usual;
    appendJsonArray(out, call.windows, [&](const WindowDescription& window) {
        append(out, R"({"name":)");
        appendJson(out, window.name);
        writeUnless(out, "token", window.token, usual.token);
        writeUnless(out, "type", window.type, usual.type);
        writeArrayUnless(out, "frame", window.frame, usual.frame);
        writeUnless(out, "visible", window.visible, usual.visible);
        writeUnless(out, "notchArea", window.notchArea, usual.notchArea);
        out.push_back('}');
    });
    if (call.focused) append(out, FMT_COMPILE(R"(,"focused":{})"), *call.focused);
    writeUnless(out, "keyguard", call.keyguard, false);
}

void write(TextBuffer& out, const ConfigureSurface& call) {
    append(out, R"("call":"configureSurface")");
    write(out, call.device);
    append(out, FMT_COMPILE(R"(,"width":{},"height":{},"orientation":{})"), call.width, call.height, call.orientation);
    const ConfigureSurface usual;
    writeArrayUnless(out, "calibration", call.calibration, usual.calibration);
    append(out, R"(,"rawX":)");
    appendJsonNumbers(out, call.rawX);
    append(out, R"(,"rawY":)");
    appendJsonNumbers(out, call.rawY);
    writeArrayUnless(out, "scale", call.scale, usual.scale);
    writeArrayUnless(out, "translate", call.translate, usual.translate);
}

void write(TextBuffer& out, const NotifyInputStart& /*call*/) { append(out, R"("call":"notifyInputStart")"); }
void write(TextBuffer& out, const NotifyInputExit& /*call*/) { append(out, R"("call":"notifyInputExit")"); }
void write(TextBuffer& out, const NotifyScreenState& /*call*/) { append(out, R"("call":"notifyScreenState")"); }

void write(TextBuffer& out, const SetProperty& happening) {
    append(out, R"("platform":"setProperty","key":)");
    appendJson(out, happening.key);
    append(out, R"(,"value":)");
    appendJson(out, happening.value);
}

void write(TextBuffer& out, const SensorEvent& happening) {
    append(out, FMT_COMPILE(R"("platform":"sensorEvent","type":{},"handle":{},"timestamp":{})"), happening.type,
           happening.handle, happening.timestamp);
    writeArrayUnless(out, "values", happening.values, {});
}

void write(TextBuffer& out, const SensorService& happening) {
    append(out, R"("platform":"sensorService")");
    if (happening.fails) {
        std::string_view separator = R"(,"fails":{)";
        for (const auto& [call, fault] : *happening.fails) {
            append(out, FMT_COMPILE(R"({}"{}":"{}")"), separator, nameOf(kServiceCalls, call),
                   nameOf(kServiceFaults, fault));
            separator = ",";
        }
        append(out, separator == "," ? "}" : R"(,"fails":{})");
    }
    if (happening.state) append(out, FMT_COMPILE(R"(,"state":"{}")"), nameOf(kServiceStates, *happening.state));
}

}  // namespace

void writeTrace(TextBuffer& out, const TraceHeader& header) {
    append(out, R"({"trace":"zqaft","version":1,"properties":)");
    char separator = '{';
    for (const auto& [key, value] : header.properties) {
        out.push_back(separator);
        appendJson(out, key);
        out.push_back(':');
        appendJson(out, value);
        separator = ',';
    }
    append(out, separator == '{' ? "{}" : "}");
    append(out, R"(,"devices":)");
    const DeviceDescription usual;
    appendJsonArray(out, header.devices, [&](const DeviceDescription& device) {
        append(out, FMT_COMPILE(R"({{"id":{},"name":)"), device.id);
        appendJson(out, device.name);
        writeUnless(out, "external", device.external, usual.external);
        writeUnless(out, "sources", device.sources, usual.sources);
        out.push_back('}');
    });
    if (header.sensors) {
        append(out, R"(,"sensors":)");
        appendJsonArray(out, *header.sensors, [&](const aftplatform::sensors::Sensor& sensor) {
            append(out, FMT_COMPILE(R"({{"type":{},"handle":{}}})"), sensor.type, sensor.handle);
        });
    }
    if (!header.note.empty()) {
        append(out, R"(,"note":)");
        appendJson(out, header.note);
    }
    append(out, "}\n");
}

void writeTrace(TextBuffer& out, const TraceLine& line) {
    out.push_back('{');
    if (line.t) append(out, FMT_COMPILE(R"("t":{},)"), *line.t);
    std::visit([&](const auto& event) { write(out, event); }, line.event);
    append(out, "}\n");
}

}  // namespace refhost

#include "refhost/trace/TraceEvents.h"

#include <algorithm>
#include <charconv>

namespace refhost {

namespace {

using android::BitSet32;
using android::RawPointerData;
using Pointer = RawPointerData::Pointer;

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

void readId(const JsonLine::Value& value, const JsonPlace& place, uint32_t& id) {
    int64_t number = 0;
    readJson(value, place, number);
    if (number < 0 || number >= int64_t{RawPointerData::kMaxIds}) place.fault("no pointer id; expected 0 to 31");
    id = static_cast<uint32_t>(number);
}

/// An id set. False where the key is absent.
bool readIds(JsonFields& fields, std::string_view key, BitSet32& ids) {
    return fields.with(key, [&](const JsonLine::Value& value, const JsonPlace& place) {
        if (value.kind() != JsonLine::Kind::Array) place.fault("not an array; expected pointer ids");
        ids.clear();
        size_t index = 0;
        for (const JsonLine::Value element : value) {
            const JsonPlace here(place, index++);
            uint32_t id = 0;
            readId(element, here, id);
            if (ids.hasBit(id)) here.fault("given twice; expected each id once");
            ids.markBit(id);
        }
    });
}

void readPointer(const JsonLine::Value& value, const JsonPlace& place, Pointer& pointer) {
    JsonFields fields(value, place);
    const auto id = [&](const JsonLine::Value& number, const JsonPlace& here) { readId(number, here, pointer.id); };
    if (!fields.with("id", id)) JsonPlace(place, "id").fault("missing; expected this key");
    fields.required("x", pointer.x);
    fields.required("y", pointer.y);
    fields.optional("axes", pointer.axes);
    bool hovering = false;
    fields.optional("hovering", hovering);
    pointer.isHovering = hovering ? 1 : 0;
    fields.optional("extraData", pointer.extraData);
    fields.optional("reserved", pointer.reserved);
    fields.done();
}

/// The records, with the sets and indexes that follow from them. Returns the ids that have a record.
BitSet32 readPointers(const JsonLine::Value& value, const JsonPlace& place, RawPointerData& frame) {
    if (value.kind() != JsonLine::Kind::Array) place.fault("not an array; expected the frame's pointers");
    if (value.size() > RawPointerData::kMaxPointers) {
        place.fault(fmt::format("{} pointers; expected at most {}", value.size(), RawPointerData::kMaxPointers));
    }
    BitSet32 present{};
    for (const JsonLine::Value element : value) {
        const JsonPlace here(place, frame.pointerCount);
        Pointer& pointer = frame.pointers[frame.pointerCount];
        readPointer(element, here, pointer);
        if (present.hasBit(pointer.id)) {
            JsonPlace(here, "id").fault("another pointer of the frame has it; expected an id of its own");
        }
        present.markBit(pointer.id);
        (pointer.isHovering != 0 ? frame.hoveringIdBits : frame.touchingIdBits).markBit(pointer.id);
        frame.idToIndex[pointer.id] = frame.pointerCount++;
    }
    return present;
}

/// Indexes that the call itself gives. Returns the ids that got one.
BitSet32 readIdToIndex(const JsonLine::Value& value, const JsonPlace& place, RawPointerData& frame) {
    if (value.kind() != JsonLine::Kind::Object) place.fault("not an object; expected ids with the index of a record");
    BitSet32 given{};
    for (auto it = value.begin(); !(it == value.end()); ++it) {
        const std::string_view key = it.key();
        const JsonPlace here(place, key);
        uint32_t id = 0;
        const auto [end, fault] = std::from_chars(key.data(), key.data() + key.size(), id);
        if (fault != std::errc() || end != key.data() + key.size() || id >= RawPointerData::kMaxIds) {
            here.fault("no pointer id; expected 0 to 31");
        }
        if (given.hasBit(id)) here.fault("given twice; expected each id once");
        uint32_t index = 0;
        readJson(*it, here, index);
        if (index >= RawPointerData::kMaxPointers) here.fault("no index of a record; expected 0 to 15");
        frame.idToIndex[id] = index;
        given.markBit(id);
    }
    return given;
}

void checkEachHasRecord(BitSet32 ids, BitSet32 indexed, const JsonPlace& place) {
    for (uint32_t id : ids) {
        if (indexed.hasBit(id)) continue;
        place.fault(fmt::format("id {} has no record; expected a pointer with it, or its index in idToIndex", id));
    }
}

void read(JsonFields& fields, const TraceHeader& header, ProcessRawTouches& call) {
    call = {};
    readDevice(fields, header, call.device);
    fields.required("when", call.when);
    BitSet32 indexed{};
    const auto pointers = [&](const JsonLine::Value& value, const JsonPlace& place) {
        indexed = readPointers(value, place, call.frame);
    };
    if (!fields.with("pointers", pointers)) JsonPlace(fields.place(), "pointers").fault("missing; expected this key");
    readIds(fields, "touching", call.frame.touchingIdBits);
    readIds(fields, "hovering", call.frame.hoveringIdBits);
    if (!readIds(fields, "ids", call.ids)) call.ids = call.frame.touchingIdBits;
    fields.with("idToIndex", [&](const JsonLine::Value& value, const JsonPlace& place) {
        indexed.value |= readIdToIndex(value, place, call.frame).value;
    });
    checkEachHasRecord(call.frame.touchingIdBits, indexed, JsonPlace(fields.place(), "touching"));
    checkEachHasRecord(call.ids, indexed, JsonPlace(fields.place(), "ids"));
}

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

void read(JsonFields& fields, const TraceHeader& /*header*/, SetProperty& happening) {
    fields.required("key", happening.key);
    if (happening.key.empty()) JsonPlace(fields.place(), "key").fault("empty; expected a property's name");
    fields.required("value", happening.value);
    checkPropertyValue(happening.value, JsonPlace(fields.place(), "value"));
}

/// Reads the rest of a line as an `Event`. A frame, of which there are most, is read over the last one.
template <typename Event>
void readAs(JsonFields& fields, const TraceHeader& header, TraceLine& line) {
    if (!std::holds_alternative<ProcessRawTouches>(line.event) || !std::is_same_v<Event, ProcessRawTouches>) {
        line.event.emplace<Event>();
    }
    read(fields, header, std::get<Event>(line.event));
}

struct Kind {
    std::string_view name;
    void (*read)(JsonFields&, const TraceHeader&, TraceLine&);
};

constexpr Kind kCalls[] = {
    {"processRawTouches", readAs<ProcessRawTouches>},   {"processKey", readAs<ProcessKey>},
    {"processInputWindow", readAs<ProcessInputWindow>}, {"configureSurface", readAs<ConfigureSurface>},
    {"notifyInputStart", readAs<NotifyInputStart>},     {"notifyInputExit", readAs<NotifyInputExit>},
    {"notifyScreenState", readAs<NotifyScreenState>},
};

constexpr Kind kPlatform[] = {{"setProperty", readAs<SetProperty>}};

/// Finds what `key` names among `kinds`, or faults with the names that there are.
template <size_t N>
const Kind* find(JsonFields& fields, std::string_view key, const Kind (&kinds)[N]) {
    const Kind* found = nullptr;
    fields.with(key, [&](const JsonLine::Value& value, const JsonPlace& place) {
        if (value.kind() != JsonLine::Kind::String) place.fault("not a string; expected a name");
        std::string names;
        for (const Kind& kind : kinds) {
            if (kind.name == value.string()) found = &kind;
            names += (names.empty() ? "" : ", ") + std::string(kind.name);
        }
        if (found == nullptr) place.fault(fmt::format("unknown \"{}\"; expected one of {}", value.string(), names));
    });
    return found;
}

}  // namespace

void readTraceLine(const JsonLine::Value& object, const JsonPlace& place, const TraceHeader& header, TraceLine& line) {
    JsonFields fields(object, place);
    line.t.reset();
    const Kind* call = find(fields, "call", kCalls);
    const Kind* happening = find(fields, "platform", kPlatform);
    if (call != nullptr && happening != nullptr) {
        JsonPlace(place, "platform").fault("beside \"call\"; expected one of them");
    }
    const Kind* kind = call != nullptr ? call : happening;
    if (kind == nullptr) place.fault("neither \"call\" nor \"platform\"; expected one of them");
    fields.with("t",
                [&](const JsonLine::Value& value, const JsonPlace& here) { readJson(value, here, line.t.emplace()); });
    kind->read(fields, header, line);
    fields.done();
}

}  // namespace refhost

#include <charconv>

#include "refhost/trace/EventFields.h"

namespace refhost {

namespace {

using android::BitSet32;
using android::RawPointerData;
using Pointer = RawPointerData::Pointer;

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

}  // namespace

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

}  // namespace refhost

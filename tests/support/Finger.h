#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <vector>

#include "aft/host/RawPointerData.h"

namespace test {

/// A finger as a hand puts it on the glass. What a test does not name is boring: touching, no flags, all axes 0.
struct Finger {
    uint32_t id = 0;
    int32_t x = 0;
    int32_t y = 0;
    int32_t axis0 = 0;
    uint32_t flags = 0;
    bool hovers = false;

    Finger at(int32_t toX, int32_t toY) const { return {id, toX, toY, axis0, flags, hovers}; }
    Finger pressing(int32_t pressure) const { return {id, x, y, pressure, flags, hovers}; }
    Finger flagged(uint32_t extraData) const { return {id, x, y, axis0, extraData, hovers}; }
    Finger hovering() const { return {id, x, y, axis0, flags, true}; }

    bool operator==(const Finger&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Finger& finger) {
        return out << "finger(" << finger.id << ").at(" << finger.x << ", " << finger.y << ").pressing(" << finger.axis0
                   << ").flagged(" << finger.flags << ")";
    }
};

inline Finger finger(uint32_t id) { return {.id = id}; }

using Fingers = std::vector<Finger>;

/// Nobody touches, or nobody is seen.
inline const Fingers kNone;

inline constexpr uint32_t kOnEdge = android::RawPointerData::Pointer::kOnEdge;
inline constexpr uint32_t kAbnormal = android::RawPointerData::Pointer::kAbnormal;
inline constexpr uint32_t kStylusDirty = android::RawPointerData::Pointer::kStylusDirty;

/// The frame that a host makes of these fingers. A hovering one is in the touching set here, too: the filters must look
/// at its own byte. An id beyond 31 is in no set and has no index.
inline android::RawPointerData frameOf(const Fingers& fingers) {
    android::RawPointerData frame{};
    for (const Finger& finger : fingers) {
        frame.touchingIdBits.markBit(finger.id);
        if (finger.id < android::RawPointerData::kMaxIds) frame.idToIndex[finger.id] = frame.pointerCount;
        auto& pointer = frame.pointers[frame.pointerCount++];
        pointer.id = finger.id;
        pointer.x = finger.x;
        pointer.y = finger.y;
        pointer.axes[0] = finger.axis0;
        pointer.isHovering = finger.hovers ? 1 : 0;
        pointer.extraData = finger.flags;
    }
    return frame;
}

/// The fingers of a frame, in the order of its records, whose indexes and touching ids have to be theirs.
inline Fingers fingersIn(const android::RawPointerData& frame) {
    Fingers fingers;
    android::BitSet32 present{};
    for (uint32_t i = 0; i < frame.pointerCount; ++i) {
        const auto& [id, x, y, axes, hovers, padding, flags, reserved] = frame.pointers[i];
        EXPECT_TRUE(id >= android::RawPointerData::kMaxIds || frame.idToIndex[id] == i) << "stale index of " << id;
        present.markBit(id);
        fingers.push_back({id, x, y, axes[0], flags, hovers != 0});
    }
    EXPECT_EQ(frame.touchingIdBits, present) << "the touching ids are not those of the records";
    return fingers;
}

}  // namespace test

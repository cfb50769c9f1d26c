#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "aft/host/BitSet32.h"

namespace android {

/// One raw multi-touch frame as the host's touch mapper has decoded it. Shared with the host byte for byte; 1164 bytes
/// on every machine. Belongs to whoever declared it.
struct RawPointerData {
    static constexpr uint32_t kMaxPointers = 16;
    static constexpr uint32_t kMaxIds = 32;

    /// One pointer of the frame, 64 bytes.
    struct Pointer {
        uint32_t id;                   ///< 0..31
        int32_t x;                     ///< raw panel units
        int32_t y;                     ///< raw panel units
        std::array<int32_t, 10> axes;  ///< further raw axes in the host's order; [0] travels with a restored pointer
        uint8_t isHovering;            ///< nonzero: not in contact
        std::array<uint8_t, 3> padding;
        uint32_t extraData;  ///< flag word of the touch driver; only the bits below are known
        uint32_t reserved;   ///< the host's own; copied, never read

        // Bits of extraData.
        static constexpr uint32_t kOnEdge = 0x01000000;
        static constexpr uint32_t kOnSide = 0x02000000;
        static constexpr uint32_t kDataValid = 0x04000000;
        static constexpr uint32_t kAbnormal = 0x08000000;
        static constexpr uint32_t kFolded = 0x10000000;
        static constexpr uint32_t kStylusDirty = 0x20000000;
    };

    uint32_t pointerCount;                       ///< 0..16; only that many records are valid
    std::array<Pointer, kMaxPointers> pointers;  ///< in no particular order
    BitSet32 hoveringIdBits;                     ///< ids of the pointers not in contact
    BitSet32 touchingIdBits;                     ///< ids of the pointers in contact
    std::array<uint32_t, kMaxIds> idToIndex;     ///< id to index in `pointers`; stale for ids that are not in the frame

    /// The record that `idToIndex` gives for `id`, or null where the id or its index is outside the record.
    Pointer* find(uint32_t id) {
        if (id >= kMaxIds || idToIndex[id] >= kMaxPointers) return nullptr;
        return &pointers[idToIndex[id]];
    }
    const Pointer* find(uint32_t id) const { return const_cast<RawPointerData*>(this)->find(id); }

    /// The valid records that really exist: `pointerCount`, but never more than the frame can hold.
    uint32_t recordCount() const { return pointerCount < kMaxPointers ? pointerCount : kMaxPointers; }
};

static_assert(std::is_trivial_v<RawPointerData> && std::is_standard_layout_v<RawPointerData>);

static_assert(sizeof(RawPointerData::Pointer) == 64);
static_assert(offsetof(RawPointerData::Pointer, id) == 0);
static_assert(offsetof(RawPointerData::Pointer, x) == 4);
static_assert(offsetof(RawPointerData::Pointer, y) == 8);
static_assert(offsetof(RawPointerData::Pointer, axes) == 12);
static_assert(offsetof(RawPointerData::Pointer, isHovering) == 52);
static_assert(offsetof(RawPointerData::Pointer, padding) == 53);
static_assert(offsetof(RawPointerData::Pointer, extraData) == 56);
static_assert(offsetof(RawPointerData::Pointer, reserved) == 60);

static_assert(sizeof(RawPointerData) == 1164);
static_assert(offsetof(RawPointerData, pointerCount) == 0);
static_assert(offsetof(RawPointerData, pointers) == 4);
static_assert(offsetof(RawPointerData, hoveringIdBits) == 1028);
static_assert(offsetof(RawPointerData, touchingIdBits) == 1032);
static_assert(offsetof(RawPointerData, idToIndex) == 1036);

}  // namespace android

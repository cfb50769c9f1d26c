#include "refhost/check/FrameRules.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

namespace refhost {

namespace {

using android::BitSet32;
using android::RawPointerData;
using Pointer = RawPointerData::Pointer;

/// A finger that has been held back for longer, or that has moved further sideways, is not put back.
constexpr uint64_t kRestoredWithinMs = 1000;
constexpr int64_t kRestoredSidewaysLimit = 200;  ///< raw panel units

bool isSubset(BitSet32 part, BitSet32 of) { return (part.value & ~of.value) == 0; }

/// The first id whose record the frame does not lead to, or leads to twice; 32 for a record or a count beyond all
/// bounds.
std::optional<uint32_t> firstLost(const RawPointerData& frame, BitSet32 ids) {
    BitSet32 present{};
    if (frame.pointerCount > RawPointerData::kMaxPointers) return RawPointerData::kMaxIds;
    for (uint32_t i = 0; i < frame.pointerCount; ++i) {
        const uint32_t id = frame.pointers[i].id;
        if (id >= RawPointerData::kMaxIds || present.hasBit(id) || frame.idToIndex[id] != i) return id;
        present.markBit(id);
    }
    for (uint32_t id : BitSet32{frame.touchingIdBits.value | ids.value}) {
        if (!present.hasBit(id)) return id;
    }
    return std::nullopt;
}

/// Whether two records agree in all that no filter changes.
bool sameBeneath(const Pointer& one, const Pointer& other) {
    return one.id == other.id && std::equal(one.axes.begin() + 1, one.axes.end(), other.axes.begin() + 1) &&
           one.isHovering == other.isHovering && one.padding == other.padding && one.reserved == other.reserved;
}

/// Whether two records agree in what travels with a finger that is put back.
bool sameOnTop(const Pointer& one, const Pointer& other) {
    return one.x == other.x && one.y == other.y && one.axes[0] == other.axes[0] && one.extraData == other.extraData;
}

uint64_t msBetween(int64_t later, int64_t earlier) {
    return static_cast<uint64_t>(later / 1'000'000) - static_cast<uint64_t>(earlier / 1'000'000);
}

}  // namespace

void FrameRules::check(const ProcessRawTouches& call, const CallResult& result, Breaches& breaches) {
    const RawPointerData& in = call.frame;
    const RawPointerData& out = result.frame.frame;
    const auto breach = [&](std::string_view rule, std::string text) {
        breaches.push_back({result.line, rule, std::move(text)});
    };

    const bool sound = !firstLost(in, call.ids);
    mSound = sound && (mSound || in.touchingIdBits.isEmpty());

    if (!isSubset(out.touchingIdBits, in.touchingIdBits) || !isSubset(result.frame.ids, call.ids)) {
        breach("frame-adds", "an id came out that was not handed in");
    }
    if (out.hoveringIdBits != in.hoveringIdBits) {
        breach("frame-adds", "the hovering ids changed; expected them to stay");
    }
    if (out.pointerCount > in.pointerCount) {
        breach("frame-adds", fmt::format("{} pointers came out of {}", out.pointerCount, in.pointerCount));
    } else if (const auto index = firstOutOfOrder(in, out)) {
        breach("frame-order", fmt::format("record {}, of id {}, is none of those handed in, or out of their order",
                                          *index, out.pointers[*index].id));
    } else if (sound) {
        checkSound(call, result, breaches);
    }
    remember(call, result);
}

/// Of a frame that the host has handed in whole, and of which records in their order came out.
void FrameRules::checkSound(const ProcessRawTouches& call, const CallResult& result, Breaches& breaches) const {
    const RawPointerData& in = call.frame;
    const RawPointerData& out = result.frame.frame;
    const auto breach = [&](std::string_view rule, std::string text) {
        breaches.push_back({result.line, rule, std::move(text)});
    };

    if (const auto id = firstLost(out, result.frame.ids)) {
        breach("frame-index", fmt::format("id {} has no record of its own at its index", *id));
    }
    const BitSet32 removed = {call.ids.value & ~result.frame.ids.value};
    if (out.pointerCount != in.pointerCount - removed.count()) {
        breach("frame-sets", fmt::format("{} ids left the host's set, but {} pointers became {}", removed.count(),
                                         in.pointerCount, out.pointerCount));
    }
    if (out.touchingIdBits.value != (in.touchingIdBits.value & ~removed.value)) {
        breach("frame-sets", "other ids left the touching set than the host's own");
    }
    if (!mSound) return;
    for (uint32_t i = 0; i < out.recordCount(); ++i) {
        const Pointer& went = out.pointers[i];
        const Pointer& came = *in.find(went.id);
        if (mayBecome(came, went, call.when)) continue;
        breach("frame-altered", fmt::format("finger {} came at ({}, {}) and went out at ({}, {}), or with other flags",
                                            went.id, came.x, came.y, went.x, went.y));
    }
}

/// The index of the first record that came out and is none of those that went in after the one before it.
std::optional<size_t> FrameRules::firstOutOfOrder(const RawPointerData& in, const RawPointerData& out) {
    const Pointer* next = in.pointers.data();
    const Pointer* const end = next + in.recordCount();
    for (uint32_t i = 0; i < out.recordCount(); ++i) {
        next = std::find_if(next, end, [&](const Pointer& came) { return sameBeneath(came, out.pointers[i]); });
        if (next == end) return i;
        ++next;
    }
    return std::nullopt;
}

bool FrameRules::mayBecome(const Pointer& came, const Pointer& went, int64_t when) const {
    if (sameOnTop(came, went)) return true;
    const auto& held = mHeld[went.id];
    return std::any_of(held.begin(), held.end(), [&](const Held& landed) {
        return sameOnTop(landed.finger, went) && msBetween(when, landed.when) <= kRestoredWithinMs &&
               std::llabs(int64_t{landed.finger.x} - came.x) <= kRestoredSidewaysLimit;
    });
}

/// A finger that hovers for a frame is passed on in it and stays held back all the same.
void FrameRules::remember(const ProcessRawTouches& call, const CallResult& result) {
    for (uint32_t id = 0; id < RawPointerData::kMaxIds; ++id) {
        const Pointer* came =
            call.ids.hasBit(id) && !call.frame.touchingIdBits.isEmpty() ? call.frame.find(id) : nullptr;
        const bool hovers = came != nullptr && came->isHovering != 0;
        const bool passed = result.frame.ids.hasBit(id) && !hovers;
        if (came == nullptr || passed) {
            mHeld[id].clear();
        } else if (!hovers) {
            mHeld[id].push_back({call.when, *came});
        }
    }
}

}  // namespace refhost

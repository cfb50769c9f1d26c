#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

namespace android {

/// A set of pointer ids 0..31 in one word: id n is bit 0x80000000 >> n. An id of 32 or more has no bit, so it is never
/// found, marked or cleared. A loop over a set visits the ids from the lowest up, as they were when the loop began.
/// Plain data; any thread that owns it.
struct BitSet32 {
    uint32_t value;

    /// The set of `id` alone; empty for an id of 32 or more.
    static constexpr uint32_t maskOf(uint32_t id) { return id < 32 ? 0x80000000u >> id : 0; }

    constexpr bool hasBit(uint32_t id) const { return (value & maskOf(id)) != 0; }
    constexpr void markBit(uint32_t id) { value |= maskOf(id); }
    constexpr void clearBit(uint32_t id) { value &= ~maskOf(id); }
    constexpr void clear() { value = 0; }
    constexpr bool isEmpty() const { return value == 0; }
    constexpr uint32_t count() const { return static_cast<uint32_t>(std::popcount(value)); }

    constexpr BitSet32& operator&=(BitSet32 other) {
        value &= other.value;
        return *this;
    }
    friend constexpr bool operator==(BitSet32, BitSet32) = default;

    class Iterator {
      public:
        constexpr explicit Iterator(uint32_t left) : mLeft(left) {}
        constexpr uint32_t operator*() const { return static_cast<uint32_t>(std::countl_zero(mLeft)); }
        constexpr Iterator& operator++() {
            mLeft ^= 0x80000000u >> **this;
            return *this;
        }
        friend constexpr bool operator==(Iterator, Iterator) = default;

      private:
        uint32_t mLeft;
    };
    constexpr Iterator begin() const { return Iterator(value); }
    constexpr Iterator end() const { return Iterator(0); }
};

static_assert(sizeof(BitSet32) == 4 && std::is_trivial_v<BitSet32>);

}  // namespace android

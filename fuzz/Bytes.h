#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace fuzz {

/// A fuzzer's input, taken from the front; behind its end all is 0.
class Bytes {
  public:
    Bytes(const uint8_t* data, size_t size) : mData(data), mSize(size) {}

    bool atEnd() const { return mSize == 0; }

    uint8_t byte() { return number<uint8_t>(); }
    bool flag() { return (byte() & 1) != 0; }
    /// 0 to `limit` - 1.
    uint32_t below(uint32_t limit) { return byte() % limit; }

    /// Any value, of any pattern of bits.
    template <typename T>
    T number() {
        T value{};
        const size_t taken = mSize < sizeof(T) ? mSize : sizeof(T);
        std::memcpy(&value, mData, taken);
        mData += taken;
        mSize -= taken;
        return value;
    }

    template <typename T, size_t N>
    const T& pick(const T (&table)[N]) {
        static_assert(N <= 256);
        return table[below(N)];
    }

    /// One of the table, or, for one choice more, any number.
    template <typename T, size_t N>
    T pickOrAny(const T (&table)[N]) {
        const uint32_t choice = below(N + 1);
        return choice < N ? table[choice] : number<T>();
    }

    std::string text(size_t length) {
        std::string text;
        while (text.size() < length && !atEnd()) text += static_cast<char>(byte());
        return text;
    }

  private:
    const uint8_t* mData;
    size_t mSize;
};

}  // namespace fuzz

#include "bounded_c.h"

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

constexpr size_t kMaxSize = 0x7fffffff;

bool validSize(size_t destMax) { return destMax > 0 && destMax <= kMaxSize; }

bool overlap(const void* a, const void* b, size_t count) {
    const auto first = reinterpret_cast<uintptr_t>(a);
    const auto second = reinterpret_cast<uintptr_t>(b);
    return first < second ? second - first < count : first - second < count;
}

int refuse(void* dest, size_t destMax, int error) {
    std::memset(dest, 0, destMax);
    return error;
}

}  // namespace

extern "C" {

int memcpy_s(void* dest, size_t destMax, const void* src, size_t count) {
    if (!dest) return EINVAL;
    if (!validSize(destMax)) return ERANGE;
    if (!src) return refuse(dest, destMax, EINVAL);
    if (count > destMax) return refuse(dest, destMax, ERANGE);
    if (overlap(dest, src, count)) return refuse(dest, destMax, EINVAL);
    std::memcpy(dest, src, count);
    return 0;
}

int memset_s(void* dest, size_t destMax, int c, size_t count) {
    if (!dest) return EINVAL;
    if (!validSize(destMax)) return ERANGE;
    if (count > destMax) return refuse(dest, destMax, ERANGE);
    std::memset(dest, c, count);
    return 0;
}

int sprintf_s(char* dest, size_t destMax, const char* fmt, ...) {
    if (!dest || !validSize(destMax)) return -1;
    dest[0] = '\0';
    if (!fmt) return -1;

    va_list args;
    va_start(args, fmt);
    const int length = std::vsnprintf(dest, destMax, fmt, args);
    va_end(args);
    if (length >= 0 && static_cast<size_t>(length) < destMax) return length;
    dest[0] = '\0';
    return -1;
}

int sscanf_s(const char* buffer, const char* fmt, ...) {
    if (!buffer || !fmt) return -1;
    va_list args;
    va_start(args, fmt);
    const int stored = std::vsscanf(buffer, fmt, args);
    va_end(args);
    return stored;
}

}  // extern "C"

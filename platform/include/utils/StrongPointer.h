#pragma once

#include <cstddef>
#include <functional>
#include <utility>

namespace android {

template <typename T>
class wp;

/// A strong reference to a T that derives from RefBase: the object lives at least as long as the sp.
/// One sp belongs to one thread at a time; any number of them, in any threads, may refer to one object.
template <typename T>
class sp {
  public:
    sp() = default;
    sp(T* other) : mPtr(other) {
        if (mPtr) mPtr->incStrong(this);
    }
    sp(const sp& other) : sp(other.mPtr) {}
    sp(sp&& other) noexcept : mPtr(std::exchange(other.mPtr, nullptr)) {}
    template <typename U>
    sp(const sp<U>& other) : sp(other.mPtr) {}
    template <typename U>
    sp(sp<U>&& other) noexcept : mPtr(other.mPtr) {
        other.mPtr = nullptr;
    }
    ~sp() {
        if (mPtr) mPtr->decStrong(this);
    }

    // The old reference is given up last: the object's destructor may come back to this very sp.
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp): a copy and a swap, which handle it
    sp& operator=(const sp& other) {
        sp(other).swap(*this);
        return *this;
    }
    sp& operator=(sp&& other) noexcept {
        sp(std::move(other)).swap(*this);
        return *this;
    }
    sp& operator=(T* other) {
        sp(other).swap(*this);
        return *this;
    }
    template <typename U>
    sp& operator=(const sp<U>& other) {
        sp(other).swap(*this);
        return *this;
    }
    template <typename U>
    sp& operator=(sp<U>&& other) noexcept {
        sp(std::move(other)).swap(*this);
        return *this;
    }

    void clear() { sp().swap(*this); }
    void swap(sp& other) noexcept { std::swap(mPtr, other.mPtr); }

    T* get() const { return mPtr; }
    T& operator*() const { return *mPtr; }
    T* operator->() const { return mPtr; }

  private:
    template <typename U>
    friend class sp;
    friend class wp<T>;

    T* mPtr = nullptr;
};

template <typename T, typename U>
bool operator==(const sp<T>& a, const sp<U>& b) {
    return a.get() == b.get();
}
template <typename T, typename U>
bool operator==(const sp<T>& a, U* b) {
    return a.get() == b;
}
template <typename T>
bool operator==(const sp<T>& a, std::nullptr_t) {
    return a.get() == nullptr;
}
/// An order for sorted containers: that of the addresses.
template <typename T>
bool operator<(const sp<T>& a, const sp<T>& b) {
    return std::less<T*>()(a.get(), b.get());
}

}  // namespace android

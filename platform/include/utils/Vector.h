#pragma once

#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <type_traits>
#include <vector>

#include "android/log.h"

namespace android {

/// An array that grows at its end. An index beyond the end ends the process. clear() and removeAt() keep the storage;
/// the phone may give it back, so that code which must not allocate has to keep an array of its own.
template <typename T>
class Vector {
    static_assert(!std::is_same_v<T, bool>, "items have to have addresses");

  public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    size_t size() const { return mItems.size(); }
    bool isEmpty() const { return mItems.empty(); }
    bool empty() const { return mItems.empty(); }

    const T* array() const { return mItems.data(); }
    const T& operator[](size_t index) const { return mItems[checked(index)]; }
    const T& itemAt(size_t index) const { return mItems[checked(index)]; }
    T& editItemAt(size_t index) { return mItems[checked(index)]; }

    /// @return index of the new item
    ssize_t add(const T& item) {
        mItems.push_back(item);
        return static_cast<ssize_t>(mItems.size() - 1);
    }
    void push(const T& item) { mItems.push_back(item); }
    void push_back(const T& item) { mItems.push_back(item); }

    /// @return `index`, or -EINVAL and nothing removed when it is beyond the end
    ssize_t removeAt(size_t index) {
        if (index >= mItems.size()) return -EINVAL;
        mItems.erase(mItems.begin() + static_cast<ssize_t>(index));
        return static_cast<ssize_t>(index);
    }
    void clear() { mItems.clear(); }

    /// Makes room for `capacity` items at least. @return items there is room for
    ssize_t setCapacity(size_t capacity) {
        mItems.reserve(capacity);
        return static_cast<ssize_t>(mItems.capacity());
    }

    iterator begin() { return mItems.data(); }
    iterator end() { return mItems.data() + mItems.size(); }
    const_iterator begin() const { return mItems.data(); }
    const_iterator end() const { return mItems.data() + mItems.size(); }

  private:
    size_t checked(size_t index) const {
        if (index < mItems.size()) return index;
        __android_log_print(ANDROID_LOG_FATAL, "Vector", "index %zu of %zu items", index, mItems.size());
        std::abort();
    }

    std::vector<T> mItems;
};

}  // namespace android

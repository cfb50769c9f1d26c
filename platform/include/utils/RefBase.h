#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

#include "aftplatform/export.h"
#include "utils/StrongPointer.h"

namespace android {

/// Base, plain or virtual, of every reference-counted object. The object is deleted when its last strong reference
/// goes; weak references outlive it and then promote() to null. An object that never had a strong reference goes with
/// its last weak one, or by plain delete. The counts stand in a block of their own, which goes when neither the object
/// nor any reference is left. `id` parameters name the holder of a reference and are not kept. Counting is safe from
/// any thread. Giving up a reference that nobody holds, reviving a dead object or deleting one that is strongly held
/// ends the process.
class AFTPLATFORM_API RefBase {
  public:
    /// The counts of one object. Every strong reference is also counted as a weak one.
    class AFTPLATFORM_API weakref_type {
      public:
        /// The object; dangling once it is gone.
        RefBase* refBase() const;

        void incWeak(const void* id);
        void decWeak(const void* id);

        /// Takes a strong reference if the object still lives. False, and nothing taken, when it is gone.
        /// The caller holds a weak reference.
        bool attemptIncStrong(const void* id);

        /// References of both kinds. Good for tests and messages: other threads may have changed it already.
        int32_t getWeakCount() const;

      private:
        friend class RefBase;
        explicit weakref_type(RefBase* object);
        ~weakref_type() = default;
        weakref_type(const weakref_type&) = delete;
        weakref_type& operator=(const weakref_type&) = delete;

        bool claimStrong();
        void objectGone();

        std::atomic<int32_t> mStrong;
        std::atomic<int32_t> mWeak;
        RefBase* const mObject;
    };

    void incStrong(const void* id) const;
    void decStrong(const void* id) const;

    /// Strong references now, 0 before the first and after the last. Good for tests and messages only.
    int32_t getStrongCount() const;

    /// The counts, with a weak reference taken for the caller.
    weakref_type* createWeak(const void* id) const;
    /// The counts, with nothing taken.
    weakref_type* getWeakRefs() const;

  protected:
    RefBase();
    virtual ~RefBase();

    /// Called once, by the thread that takes the first strong reference, after it is counted.
    virtual void onFirstRef();
    /// Called by the thread that gave up the last strong reference, just before the object is deleted.
    virtual void onLastStrongRef(const void* id);

  private:
    RefBase(const RefBase&) = delete;
    RefBase& operator=(const RefBase&) = delete;

    weakref_type* const mRefs;
};

static_assert(sizeof(RefBase) == 2 * sizeof(void*), "a vtable pointer and the counts, as on the phone");

/// A weak reference to a T that derives from RefBase. Null only when made so: it does not become null when the object
/// goes, promote() tells. Two wp are equal when they were made of the same object, dead or alive, even if another
/// object now stands at its address.
template <typename T>
class wp {
  public:
    wp() = default;
    wp(T* other) : mPtr(other), mRefs(other ? other->createWeak(this) : nullptr) {}
    wp(const sp<T>& other) : wp(other.get()) {}
    template <typename U>
    wp(const sp<U>& other) : wp(other.get()) {}
    wp(const wp& other) : mPtr(other.mPtr), mRefs(other.mRefs) {
        if (mRefs) mRefs->incWeak(this);
    }
    wp(wp&& other) noexcept : mPtr(std::exchange(other.mPtr, nullptr)), mRefs(std::exchange(other.mRefs, nullptr)) {}
    ~wp() {
        if (mRefs) mRefs->decWeak(this);
    }

    // Also takes a T* or an sp, by way of the constructors.
    wp& operator=(wp other) noexcept {
        std::swap(mPtr, other.mPtr);
        std::swap(mRefs, other.mRefs);
        return *this;
    }
    void clear() { *this = wp(); }

    /// A strong reference, or null when the object is gone. Safe against the last strong reference going meanwhile.
    sp<T> promote() const {
        sp<T> strong;
        if (mRefs && mRefs->attemptIncStrong(&strong)) strong.mPtr = mPtr;
        return strong;
    }

    /// The address, dangling once the object is gone: to compare or print, never to follow.
    T* unsafe_get() const { return mPtr; }

    friend bool operator==(const wp& a, const wp& b) { return a.mRefs == b.mRefs; }
    friend bool operator==(const wp& a, const sp<T>& b) { return a.mRefs == (b.get() ? b->getWeakRefs() : nullptr); }
    friend bool operator==(const wp& a, std::nullptr_t) { return a.mRefs == nullptr; }
    friend bool operator<(const wp& a, const wp& b) { return std::less<RefBase::weakref_type*>()(a.mRefs, b.mRefs); }

  private:
    T* mPtr = nullptr;
    RefBase::weakref_type* mRefs = nullptr;
};

}  // namespace android

#pragma once

#include <pthread.h>

#include <cstdint>

namespace android {

using status_t = int32_t;

/// A lock for many readers or one writer; not recursive. Without a destructor for the same reason as Mutex.
/// The results are 0 or a negative errno value; the try forms answer -EBUSY when they would have to wait.
class RWLock {
  public:
    constexpr RWLock() = default;
    RWLock(const RWLock&) = delete;
    RWLock& operator=(const RWLock&) = delete;

    status_t readLock() { return -pthread_rwlock_rdlock(&mRWLock); }
    status_t tryReadLock() { return -pthread_rwlock_tryrdlock(&mRWLock); }
    status_t writeLock() { return -pthread_rwlock_wrlock(&mRWLock); }
    status_t tryWriteLock() { return -pthread_rwlock_trywrlock(&mRWLock); }
    void unlock() { pthread_rwlock_unlock(&mRWLock); }

    /// Holds an RWLock as a reader for the length of a block.
    class AutoRLock {
      public:
        explicit AutoRLock(RWLock& lock) : mLock(lock) { mLock.readLock(); }
        ~AutoRLock() { mLock.unlock(); }
        AutoRLock(const AutoRLock&) = delete;
        AutoRLock& operator=(const AutoRLock&) = delete;

      private:
        RWLock& mLock;
    };

    /// Holds an RWLock as the writer for the length of a block.
    class AutoWLock {
      public:
        explicit AutoWLock(RWLock& lock) : mLock(lock) { mLock.writeLock(); }
        ~AutoWLock() { mLock.unlock(); }
        AutoWLock(const AutoWLock&) = delete;
        AutoWLock& operator=(const AutoWLock&) = delete;

      private:
        RWLock& mLock;
    };

  private:
    pthread_rwlock_t mRWLock = PTHREAD_RWLOCK_INITIALIZER;
};

}  // namespace android

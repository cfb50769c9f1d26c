#pragma once

#include <pthread.h>

#include <cstdint>

namespace android {

using status_t = int32_t;

/// A lock for one thread at a time; not recursive.
/// Made at compile time and without a destructor, so that one that is a static serves from before the first constructor
/// until after the last destructor. A default lock holds nothing that would have to be given back.
class Mutex {
  public:
    constexpr Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    /// @return 0, or the negative errno value of a misuse that was found out
    status_t lock() { return -pthread_mutex_lock(&mMutex); }
    void unlock() { pthread_mutex_unlock(&mMutex); }
    /// @return 0, or -EBUSY when any thread holds the lock
    status_t tryLock() { return -pthread_mutex_trylock(&mMutex); }

    /// Holds a Mutex for the length of a block.
    class Autolock {
      public:
        explicit Autolock(Mutex& mutex) : mLock(mutex) { mLock.lock(); }
        explicit Autolock(Mutex* mutex) : Autolock(*mutex) {}
        ~Autolock() { mLock.unlock(); }
        Autolock(const Autolock&) = delete;
        Autolock& operator=(const Autolock&) = delete;

      private:
        Mutex& mLock;
    };

  private:
    pthread_mutex_t mMutex = PTHREAD_MUTEX_INITIALIZER;
};

}  // namespace android

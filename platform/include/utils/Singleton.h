#pragma once

#include "aftplatform/never_destroyed.h"
#include "utils/Mutex.h"

namespace android {

// The two statics are defined by ANDROID_SINGLETON_STATIC_INSTANCE in one source alone; clang warns in all the others.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wundefined-var-template"
#endif

/// The one T of the process, made by the first getInstance() and never destroyed.
/// T derives from Singleton<T>, befriends it if its constructor is private, and one source file says
/// ANDROID_SINGLETON_STATIC_INSTANCE(T). T's constructor must not call getInstance() itself. Any thread.
template <typename T>
class Singleton {
  public:
    static T& getInstance() {
        Mutex::Autolock lock(sLock);
        if (!sInstance) {
            sInstance = new T();
            aftplatform::neverDestroyed(sInstance);
        }
        return *sInstance;
    }

    static bool hasInstance() {
        Mutex::Autolock lock(sLock);
        return sInstance != nullptr;
    }

  protected:
    Singleton() = default;
    ~Singleton() = default;

  private:
    Singleton(const Singleton&) = delete;
    Singleton& operator=(const Singleton&) = delete;

    static Mutex sLock;
    static T* sInstance;
};

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

}  // namespace android

/// To be said once for each T, in a source file, at the outermost level or directly in namespace android.
// NOLINTBEGIN(bugprone-macro-parentheses): T is a type
#define ANDROID_SINGLETON_STATIC_INSTANCE(T)       \
    template <>                                    \
    android::Mutex android::Singleton<T>::sLock{}; \
    template <>                                    \
    T* android::Singleton<T>::sInstance = nullptr; \
    template class android::Singleton<T>;
// NOLINTEND(bugprone-macro-parentheses)

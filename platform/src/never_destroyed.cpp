#include "aftplatform/never_destroyed.h"

#include <mutex>
#include <vector>

void aftplatform::neverDestroyed(const void* object) {
    static std::mutex lock;
    static std::vector<const void*>& objects = *new std::vector<const void*>;
    std::lock_guard held(lock);
    objects.push_back(object);
}

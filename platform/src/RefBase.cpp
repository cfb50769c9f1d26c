#include "utils/RefBase.h"

#include <cstdlib>

#include "android/log.h"

namespace android {
namespace {

// mStrong is one of these or a number of references above 0. The first reference leaves kNeverHeld for good, and
// nothing leaves kGone.
constexpr int32_t kNeverHeld = -1;
constexpr int32_t kGone = 0;

// mWeak holds this while the object exists, beside the number of references. Being one word, it tells whoever gives up
// the last reference whether the object is left behind, without another look at a block that may be gone by then.
constexpr int32_t kObjectExists = 0x40000000;

// How the counts are ordered. Taking a reference needs no order: the taker has one already, or got the object handed
// over in a way that ordered it. Giving one up publishes what was done to the object (release), and the one who finds
// it was the last sees all of that before destroying (acquire).

[[noreturn]] void misuse(const void* object, const char* what) {
    __android_log_print(ANDROID_LOG_FATAL, "RefBase", "object %p: %s", object, what);
    std::abort();
}

}  // namespace

RefBase::weakref_type::weakref_type(RefBase* object) : mStrong(kNeverHeld), mWeak(kObjectExists), mObject(object) {}

RefBase* RefBase::weakref_type::refBase() const { return mObject; }

void RefBase::weakref_type::incWeak(const void*) { mWeak.fetch_add(1, std::memory_order_relaxed); }

void RefBase::weakref_type::decWeak(const void*) {
    const int32_t before = mWeak.fetch_sub(1, std::memory_order_acq_rel);
    if (before == kObjectExists || before <= 0) misuse(mObject, "a weak reference is given up that nobody holds");

    // A strong reference gives up its weak share after it has deleted the object. So an object that still exists here
    // never had one, and nobody is left who could reach it.
    if (before == kObjectExists + 1) delete mObject;
    if (before == 1) delete this;
}

// Counts one more strong reference; false when the object is gone.
bool RefBase::weakref_type::claimStrong() {
    int32_t count = mStrong.load(std::memory_order_relaxed);
    do {
        if (count == kGone) return false;
    } while (!mStrong.compare_exchange_weak(count, count == kNeverHeld ? 1 : count + 1, std::memory_order_relaxed));
    if (count == kNeverHeld) mObject->onFirstRef();
    return true;
}

bool RefBase::weakref_type::attemptIncStrong(const void* id) {
    incWeak(id);
    if (claimStrong()) return true;
    decWeak(id);
    return false;
}

int32_t RefBase::weakref_type::getWeakCount() const { return mWeak.load(std::memory_order_relaxed) & ~kObjectExists; }

void RefBase::weakref_type::objectGone() {
    if (mStrong.exchange(kGone, std::memory_order_relaxed) > 0) misuse(mObject, "deleted while strongly held");
    if (mWeak.fetch_sub(kObjectExists, std::memory_order_acq_rel) == kObjectExists) delete this;
}

RefBase::RefBase() : mRefs(new weakref_type(this)) {}

RefBase::~RefBase() { mRefs->objectGone(); }

void RefBase::incStrong(const void* id) const {
    mRefs->incWeak(id);
    if (!mRefs->claimStrong()) misuse(this, "a strong reference is taken to an object that is gone");
}

void RefBase::decStrong(const void* id) const {
    weakref_type* const refs = mRefs;  // once the count is down, another thread may delete this object
    const int32_t before = refs->mStrong.fetch_sub(1, std::memory_order_acq_rel);
    if (before < 1) misuse(this, "a strong reference is given up that nobody holds");
    if (before == 1) {
        refs->mObject->onLastStrongRef(id);
        delete this;
    }
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the reference given up here has kept the counts until now
    refs->decWeak(id);
}

int32_t RefBase::getStrongCount() const {
    const int32_t count = mRefs->mStrong.load(std::memory_order_relaxed);
    return count == kNeverHeld ? 0 : count;
}

RefBase::weakref_type* RefBase::createWeak(const void* id) const {
    mRefs->incWeak(id);
    return mRefs;
}

RefBase::weakref_type* RefBase::getWeakRefs() const { return mRefs; }

void RefBase::onFirstRef() {}

void RefBase::onLastStrongRef(const void*) {}

}  // namespace android

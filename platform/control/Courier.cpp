#include "platform/control/Courier.h"

#include <cstdlib>
#include <utility>

#include "android/log.h"

namespace aftplatform {

void Courier::take(Errand errand) {
    std::lock_guard lock(mLock);
    Line& line = mIsDirect ? mDirect[std::this_thread::get_id()] : mErrands;
    line.push_back(std::move(errand));
    ++mUnderWay;  // not before: where there is no memory for it, nothing is under way
    if (mIsDirect) return;
    if (mOwnThread == std::thread::id()) {
        std::thread own(&Courier::work, this);
        mOwnThread = own.get_id();
        own.detach();
    }
    mChanged.notify_all();
}

void Courier::carryOut() {
    std::unique_lock lock(mLock);
    const auto own = mDirect.find(std::this_thread::get_id());
    if (own == mDirect.end()) return;
    if (!own->second.empty() && own->second.front() == nullptr) return;
    while (!own->second.empty()) carryOutFirst(own->second, lock);
    mDirect.erase(own);
}

void Courier::work() {
    for (std::unique_lock lock(mLock);;) {
        mChanged.wait(lock, [this] { return !mErrands.empty(); });
        carryOutFirst(mErrands, lock);
    }
}

void Courier::carryOutFirst(Line& line, std::unique_lock<std::mutex>& lock) noexcept {
    Errand errand = std::exchange(line.front(), nullptr);
    lock.unlock();
    errand();
    errand = nullptr;  // what it held is let go before it counts as done, and without the lock
    lock.lock();
    line.pop_front();
    --mUnderWay;
    mChanged.notify_all();
}

void Courier::waitUntilQuiet(std::unique_lock<std::mutex>& lock) {
    const std::thread::id caller = std::this_thread::get_id();
    if (caller == mOwnThread || mDirect.contains(caller)) {
        __android_log_print(ANDROID_LOG_FATAL, "Courier", "an errand waits for its own end");
        std::abort();
    }
    mChanged.wait(lock, [this] { return mUnderWay == 0; });
}

void Courier::wait() {
    carryOut();  // what is left where memory ran out between the handing over of two errands
    std::unique_lock lock(mLock);
    waitUntilQuiet(lock);
}

void Courier::setDirect(bool direct) {
    carryOut();
    std::unique_lock lock(mLock);
    waitUntilQuiet(lock);
    mIsDirect = direct;
}

}  // namespace aftplatform

#include "platform/control/Courier.h"

#include <thread>
#include <utility>

namespace aftplatform {

void Courier::send(Errand errand) {
    {
        std::lock_guard lock(mLock);
        if (!mDirect) {
            mErrands.push_back(std::move(errand));
            if (!mStarted) std::thread(&Courier::work, this).detach();
            mStarted = true;
            mChanged.notify_all();
            return;
        }
    }
    errand();
}

void Courier::wait() {
    std::unique_lock lock(mLock);
    mChanged.wait(lock, [this] { return mErrands.empty(); });
}

void Courier::setDirect(bool direct) {
    std::unique_lock lock(mLock);
    mChanged.wait(lock, [this] { return mErrands.empty(); });
    mDirect = direct;
}

void Courier::work() {
    for (std::unique_lock lock(mLock);;) {
        mChanged.wait(lock, [this] { return !mErrands.empty(); });
        Errand errand = std::move(mErrands.front());
        lock.unlock();
        errand();
        errand = nullptr;  // what it held is let go before it counts as done, and without the lock
        lock.lock();
        mErrands.pop_front();
        mChanged.notify_all();
    }
}

}  // namespace aftplatform

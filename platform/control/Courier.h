#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace aftplatform {

/// Carries out what it is handed, in order: on a thread of its own that starts with the first errand, or directly, on
/// the thread that hands it over. An errand may hand over another, which comes after all that were there before it. One
/// that throws ends the process. Lives until the process ends. Any thread.
class Courier {
  public:
    using Errand = std::function<void()>;

    /// Takes an errand over. Runs none, so it may be called under a lock, and errands then stand in that lock's order.
    /// carryOut() follows, without the lock.
    void take(Errand errand);
    /// Directly: carries out what this thread has handed over; from within an errand, that is left to whoever runs it.
    void carryOut();

    /// Returns when nothing is under way, on any thread. From within an errand it would never: that ends the process.
    void wait();
    /// Whether errands are carried out directly from now on. Waits as wait() does.
    void setDirect(bool direct);

  private:
    /// In order. The first is empty while it is being carried out.
    using Line = std::deque<Errand>;

    void work();
    void carryOutFirst(Line& line, std::unique_lock<std::mutex>& lock) noexcept;
    void waitUntilQuiet(std::unique_lock<std::mutex>& lock);

    std::mutex mLock;
    std::condition_variable mChanged;
    size_t mUnderWay = 0;                     ///< errands in all lines
    Line mErrands;                            ///< of the courier's own thread
    std::map<std::thread::id, Line> mDirect;  ///< of the threads that carry theirs out directly
    std::thread::id mOwnThread;               ///< none before the first errand
    bool mIsDirect = false;                   ///< changes only while nothing is under way
};

}  // namespace aftplatform

#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace aftplatform {

/// Carries out what it is handed, in order: on a thread of its own that starts with the first errand, or directly, on
/// the caller's. Lives until the process ends. Any thread.
class Courier {
  public:
    using Errand = std::function<void()>;

    /// Holds no lock while the errand runs, so it may send another.
    void send(Errand errand);
    /// Returns when all that was sent before has been carried out. Not from within an errand on the courier's thread.
    void wait();
    /// Whether errands are carried out directly from now on; what is under way is waited for.
    void setDirect(bool direct);

  private:
    void work();

    std::mutex mLock;
    std::condition_variable mChanged;
    std::deque<Errand> mErrands;  ///< the first is the one being carried out
    bool mDirect = false;
    bool mStarted = false;
};

}  // namespace aftplatform

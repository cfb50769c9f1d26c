#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "refhost/play/HostDevice.h"
#include "refhost/play/Plugin.h"

namespace soak {

/// What the plug-in has done so far.
struct Tally {
    uint64_t frames = 0;
    uint64_t removed = 0;    ///< pointers that left a frame
    uint64_t cancelled = 0;  ///< gestures
    uint64_t consumed = 0;   ///< key-downs
    uint64_t sent = 0;       ///< keys handed back, down and up together
    uint64_t reports = 0;
};

/// A phone with everything that the plug-in has a filter for, around the built plug-in, and a service for its sensors.
/// Its panel is 1080 x 2340, held upright; its sensor lies in 400,2100,680,2340; the notch is 80 high. It makes windows
/// and key records as a host does, and gives them back. The same story each time. One per process, one thread.
class Phone {
  public:
    static constexpr uint32_t kAbnormal = android::RawPointerData::Pointer::kAbnormal;

    explicit Phone(const std::string& plugin);
    ~Phone();
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    /// One of least .. most.
    int32_t any(int32_t least, int32_t most);
    /// Lets time pass.
    void pass(int64_t ms);

    /// Puts one more finger on the glass of the next frame. An id beyond 31, or that is there already, is none.
    void put(uint32_t id, int32_t x, int32_t y, uint32_t flags = 0);
    /// Hands that frame in, `ms` after the last call. The next has no finger. Ends the process where what comes back is
    /// not consistent.
    void frame(int64_t ms = 8);
    void lift() { frame(); }
    /// Where the finger of this id is in the frame that came back; null: it was taken out, or never there.
    const android::RawPointerData::Pointer* back(uint32_t id) const;

    /// A key of the sensor goes down, or up. True: consumed.
    bool key(int32_t code, bool down = true);
    /// It goes down, and up.
    bool press(int32_t code);

    void rotate(int32_t orientation);
    /// The navigation bar, a window that this notch-area flag is for, and a focused one of this name.
    void show(const char* focused, bool barVisible, bool overNotch, bool keyguard);

    void start() { mPlugin.notifyInputStart(); }
    void exit() { mPlugin.notifyInputExit(); }
    void coverMoves(int32_t state);
    void foldsTo(float angle);
    /// A registration of the sensor service is announced, after its death or without one.
    void serviceRegisters(bool diesFirst);

    const Tally& tally() const { return mTally; }

  private:
    void sense(int32_t handle, float second, float third);

    std::minstd_rand mRandom;
    int64_t mNow = 60'000'000'000;
    Tally mTally;
    android::RawPointerData mData{};
    android::BitSet32 mIds{};
    android::Vector<void*> mKeys;
    refhost::Requests mRequests;
    refhost::HostDevice mPanel;
    refhost::HostDevice mSensor;
    refhost::Plugin mPlugin;
};

}  // namespace soak

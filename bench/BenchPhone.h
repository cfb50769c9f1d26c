#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "refhost/play/HostDevice.h"
#include "refhost/play/Plugin.h"

namespace bench {

/// While it lives, the host listens to the decisions, and does nothing with them.
class Listening {
  public:
    Listening();
    ~Listening();
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
};

/// A phone of 1080 x 2340 with the built plug-in loaded, and the system properties given. It loads a copy of the
/// library of its own: one process can so hold phones with different properties, though each library reads them once.
/// The platform logs nothing below ERROR.
class BenchPhone {
  public:
    using Properties = std::vector<std::pair<std::string, std::string>>;

    /// Everything on: the front fingerprint filter and its cancellation of abnormal touches, the slide cover's filter
    /// with its sensor enabled, the notch filter, held in landscape.
    static BenchPhone& withEverything();
    /// No property set.
    static BenchPhone& withNothing();

    ~BenchPhone();
    BenchPhone(const BenchPhone&) = delete;
    BenchPhone& operator=(const BenchPhone&) = delete;

    const refhost::Plugin& plugin() const { return mPlugin; }
    android::InputMapper* panel() { return mPanel.mapper(); }
    android::InputMapper* sensor() { return mSensor.mapper(); }
    const refhost::Requests& requests() const { return mRequests; }

    /// Hands a frame in, 8 ms after the last.
    void frame(android::RawPointerData& data, android::BitSet32& ids) {
        mPlugin.processRawTouches(panel(), mWhen += 8'000'000, data, ids, mKeys);
    }
    /// Ends the touch sequence.
    void lift() {
        android::RawPointerData none{};
        android::BitSet32 ids{};
        frame(none, ids);
    }
    /// Half a second after the last frame or key. Nonzero: consumed.
    int32_t key(int32_t keyCode, bool down) {
        return mPlugin.processKey(sensor(), mWhen += 500'000'000, keyCode, 0, down, 0, 0);
    }

  private:
    BenchPhone(const std::string& name, const Properties& properties);

    void moveCover(int state);
    int gesture(int32_t y);
    void proveAllOn();

    std::filesystem::path mLibrary;
    refhost::Requests mRequests;
    refhost::HostDevice mPanel;
    refhost::HostDevice mSensor;
    android::Vector<void*> mKeys;
    int64_t mWhen = 60'000'000'000;
    refhost::Plugin mPlugin;
};

/// A frame of `fingers` fingers, ids from 0 up, side by side. Raw panel units.
android::RawPointerData fingersAt(uint32_t fingers, int32_t y);

constexpr int32_t kMiddle = 1200;      ///< a y outside every band
constexpr int32_t kNearSensor = 2200;  ///< a y inside the filter area

}  // namespace bench

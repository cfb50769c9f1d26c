#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <ostream>
#include <string>
#include <vector>

#include "refhost/play/Player.h"

namespace test {

using namespace std::chrono_literals;

/// A finger as a hand puts it on the glass. What a test does not name is boring: touching, no flags, all axes 0.
struct Finger {
    uint32_t id = 0;
    int32_t x = 0;
    int32_t y = 0;
    int32_t axis0 = 0;
    uint32_t flags = 0;
    bool hovers = false;

    Finger at(int32_t toX, int32_t toY) const {
        Finger moved = *this;
        moved.x = toX;
        moved.y = toY;
        return moved;
    }
    Finger pressing(int32_t pressure) const {
        Finger pressed = *this;
        pressed.axis0 = pressure;
        return pressed;
    }
    Finger flagged(uint32_t extraData) const {
        Finger with = *this;
        with.flags = extraData;
        return with;
    }
    Finger hovering() const {
        Finger above = *this;
        above.hovers = true;
        return above;
    }

    bool operator==(const Finger&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Finger& finger) {
        return out << "finger(" << finger.id << ").at(" << finger.x << ", " << finger.y << ").pressing(" << finger.axis0
                   << ").flagged(" << finger.flags << ")";
    }
};

inline Finger finger(uint32_t id) { return {.id = id}; }

using Fingers = std::vector<Finger>;

/// Nobody touches, or nobody is seen.
inline const Fingers kNone;

inline constexpr uint32_t kOnEdge = android::RawPointerData::Pointer::kOnEdge;
inline constexpr uint32_t kAbnormal = android::RawPointerData::Pointer::kAbnormal;
inline constexpr uint32_t kStylusDirty = android::RawPointerData::Pointer::kStylusDirty;

/// A phone in the hand: the shipping plug-in behind the reference host, with a panel of 1080 x 2340 in portrait whose
/// sensor lies in 400,2100,680,2340. Its sensor service offers the slide cover's sensor and the fold angle's. Its clock
/// starts at 60 s. Every frame that comes back is checked for consistency.
class Phone {
  public:
    static constexpr int32_t kPanel = 3;
    static constexpr int32_t kSensor = 5;
    static constexpr int32_t kCover = 7;      ///< handle of the slide cover's sensor
    static constexpr int32_t kFoldAngle = 9;  ///< and of the fold angle's

    using Properties = std::vector<std::pair<std::string, std::string>>;

    static inline const Properties kSensorArea = {{"ro.zqaft.tpfp.filter_area", "400,2100,680,2340"}};

    using Devices = std::vector<refhost::DeviceDescription>;

    /// `more` are devices beside the panel and the sensor.
    explicit Phone(const Properties& properties = kSensorArea, const Devices& more = {});

    Phone& after(std::chrono::nanoseconds time) {
        mNow += time.count();
        return *this;
    }
    Phone& at(std::chrono::nanoseconds time) {
        mNow = time.count();
        return *this;
    }

    /// Puts these fingers, and no others, on the glass. Answers what apps see of them.
    Fingers touch(const Fingers& fingers);
    Fingers touch(const Finger& one) { return touch(Fingers{one}); }
    Fingers lift() { return touch(kNone); }
    /// The same on a frame without a mapper.
    Fingers touchWithoutMapper(const Finger& one);
    /// From now on fingers are on this panel, and it is the one that is turned.
    Phone& on(int32_t panel) {
        mPanel = panel;
        return *this;
    }

    /// A key of the sensor, or of another device. True: consumed.
    bool key(int32_t keyCode, bool down = true, int32_t device = kSensor);

    void surface(int32_t width, int32_t height, int32_t orientation);
    void surface(const refhost::ConfigureSurface& call) { play(call); }
    void rotate(int32_t orientation) { surface(1080, 2340, orientation); }
    void show(const std::vector<refhost::WindowDescription>& windows, bool keyguard = false);

    /// The host's input starts, and ends.
    void start() { play(refhost::NotifyInputStart{}); }
    void exit() { play(refhost::NotifyInputExit{}); }
    /// What the sensors tell.
    void coverMoves(float state) { sense(65557, kCover, {1, state}); }
    void foldsTo(float angle) { sense(3, kFoldAngle, {0, 0, angle}); }
    void sense(int32_t type, int32_t handle, const std::vector<float>& values);
    /// What becomes of the sensor service.
    void service(refhost::SensorService::State state) { play(refhost::SensorService{{}, state}); }
    void fails(const std::map<aftplatform::sensors::Call, aftplatform::sensors::Fault>& calls) {
        play(refhost::SensorService{calls, {}});
    }

    /// What the last call brought.
    size_t cancels() const { return mResult->requests.cancelled.size(); }
    const std::vector<android::NotifyKeyArgs>& sentKeys() const { return mResult->frame.keys; }
    const std::vector<refhost::Report>& reports() const { return mResult->requests.reports; }
    /// The calls that reached the sensor service: "enableSensor 7 0 0".
    std::vector<std::string> calls() const;
    /// What the front fingerprint filter logged.
    std::vector<std::string> said() const;
    bool said(const std::string& text) const;
    /// What a filter logged, each line with its priority: "INFO text".
    std::vector<std::string> log(const std::string& tag = "ZqFrontFPAftProcessor") const;
    /// What all have logged: "INFO ZqSCAftProcessor: text".
    std::vector<std::string> wholeLog() const;

  private:
    const refhost::CallResult& play(refhost::TraceEvent event);
    Fingers seen() const;

    refhost::Player mPlayer;
    int64_t mNow = 60'000'000'000;
    int32_t mPanel = kPanel;
    bool mHasMapper = true;
    const refhost::CallResult* mResult = nullptr;
};

/// A navigation bar, visible, its frame at the bottom of the portrait screen.
refhost::WindowDescription navigationBar();

}  // namespace test

#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "refhost/play/Player.h"
#include "tests/support/Finger.h"

namespace test {

using namespace std::chrono_literals;

using Lines = std::vector<std::string>;

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

    Phone& after(std::chrono::nanoseconds time) { return at(std::chrono::nanoseconds(mNow) + time); }
    Phone& at(std::chrono::nanoseconds time) {
        mNow = time.count();
        return *this;
    }

    /// Puts these fingers, and no others, on the glass. Answers what apps see of them.
    Fingers touch(const Fingers& fingers, bool withMapper = true);
    Fingers touch(const Finger& one) { return touch(Fingers{one}); }
    Fingers touchWithoutMapper(const Finger& one) { return touch({one}, false); }
    Fingers lift() { return touch(kNone); }
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
    Lines calls() const;
    /// What a filter logged, each line with its priority: "INFO text".
    Lines log(const std::string& tag = "ZqFrontFPAftProcessor") const;
    /// Whether the front fingerprint filter logged this line among others.
    bool logged(const std::string& line) const;
    /// What all have logged: "INFO ZqSCAftProcessor: text".
    Lines wholeLog() const;

  private:
    const refhost::CallResult& play(refhost::TraceEvent event);

    refhost::Player mPlayer;
    int64_t mNow = 60'000'000'000;
    int32_t mPanel = kPanel;
    const refhost::CallResult* mResult = nullptr;
};

/// A navigation bar, its frame at the bottom of the portrait screen.
refhost::WindowDescription navigationBar(bool visible = true);

}  // namespace test

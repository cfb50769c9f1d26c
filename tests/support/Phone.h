#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <tuple>
#include <vector>

#include "platform/control/LogSink.h"
#include "refhost/play/Player.h"
#include "refhost/trace/SensorNames.h"
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
    explicit Phone(const Properties& properties = kSensorArea, const Devices& more = {})
        : mPlayer(headerOf(properties, more), ZQAFT_PLUGIN_UNDER_TEST) {
        rotate(0);
    }

    Phone& after(std::chrono::nanoseconds time) { return at(std::chrono::nanoseconds(mNow) + time); }
    Phone& at(std::chrono::nanoseconds time) {
        mNow = time.count();
        return *this;
    }

    /// Puts these fingers, and no others, on the glass. Answers what apps see of them.
    Fingers touch(const Fingers& fingers, bool withMapper = true) {
        const android::RawPointerData frame = frameOf(fingers);
        const refhost::DeviceRef device = withMapper ? refhost::DeviceRef(mPanel) : std::nullopt;
        const auto& back = play(refhost::ProcessRawTouches{device, mNow, frame, frame.touchingIdBits}).frame;
        EXPECT_EQ(back.ids, back.frame.touchingIdBits) << "the host's ids are not those of the frame";
        return fingersIn(back.frame);
    }
    Fingers touch(const Finger& one) { return touch(Fingers{one}); }
    Fingers touchWithoutMapper(const Finger& one) { return touch({one}, false); }
    Fingers lift() { return touch(kNone); }
    /// From now on fingers are on this panel, and it is the one that is turned.
    Phone& on(int32_t panel) {
        mPanel = panel;
        return *this;
    }

    /// A key of the sensor, or of another device. True: consumed.
    bool key(int32_t keyCode, bool down = true, int32_t device = kSensor) {
        return play(refhost::ProcessKey{device, mNow, keyCode, 7, down, 3, 0x80000002}).keyResult != 0;
    }

    void surface(int32_t width, int32_t height, int32_t orientation) {
        surface({.device = mPanel,
                 .width = width,
                 .height = height,
                 .orientation = orientation,
                 .rawX = {0, width - 1},
                 .rawY = {0, height - 1}});
    }
    void surface(const refhost::ConfigureSurface& call) { play(call); }
    void rotate(int32_t orientation) { surface(1080, 2340, orientation); }
    void show(const std::vector<refhost::WindowDescription>& windows, bool keyguard = false) {
        play(refhost::ProcessInputWindow{windows, windows.empty() ? std::nullopt : std::optional(0u), keyguard});
    }

    /// The host's input starts, and ends.
    void start() { play(refhost::NotifyInputStart{}); }
    void exit() { play(refhost::NotifyInputExit{}); }
    /// What the sensors tell.
    void coverMoves(float state) { sense(65557, kCover, {1, state}); }
    void foldsTo(float angle) { sense(3, kFoldAngle, {0, 0, angle}); }
    void sense(int32_t type, int32_t handle, const std::vector<float>& values) {
        play(refhost::SensorEvent{.type = type, .handle = handle, .timestamp = mNow, .values = values});
    }
    /// What becomes of the sensor service.
    void service(refhost::SensorService::State state) { play(refhost::SensorService{{}, state}); }
    void fails(const std::map<aftplatform::sensors::Call, aftplatform::sensors::Fault>& calls) {
        play(refhost::SensorService{calls, {}});
    }

    /// What the last call brought.
    size_t cancels() const { return mResult->requests.cancelled.size(); }
    const std::vector<android::NotifyKeyArgs>& sentKeys() const { return mResult->frame.keys; }
    const std::vector<refhost::Report>& reports() const { return mResult->requests.reports; }
    /// The calls that reached the sensor service.
    const auto& calls() const { return mResult->requests.service; }
    /// What a filter logged, each line with its priority: "INFO text"; of "", what all have: "INFO ZqSCAftProcessor:
    /// text".
    Lines log(const std::string& tag = "ZqFrontFPAftProcessor") const {
        Lines lines;
        for (const auto& [priority, from, text] : mResult->log) {
            const std::string line = (tag.empty() ? from + ": " : "") + text;
            if (tag.empty() || from == tag)
                lines.push_back(std::string(aftplatform::priorityName(priority)) + " " + line);
        }
        return lines;
    }
    /// Whether the front fingerprint filter logged this line among others.
    bool logged(const std::string& line) const {
        const Lines lines = log();
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

  private:
    static refhost::TraceHeader headerOf(const Properties& properties, const Devices& more) {
        refhost::TraceHeader header;
        header.properties = properties;
        header.devices = {
            {kPanel, "touchpanel"}, {kSensor, "fingerprint", false, 257}, {6, "fingerprint2", false, 257}};
        header.devices.insert(header.devices.end(), more.begin(), more.end());
        header.sensors = {{65557, kCover}, {3, kFoldAngle}};
        return header;
    }
    const refhost::CallResult& play(refhost::TraceEvent event) {
        return *(mResult = &mPlayer.play({0, mNow, std::move(event)}));
    }

    refhost::Player mPlayer;
    int64_t mNow = 60'000'000'000;
    int32_t mPanel = kPanel;
    const refhost::CallResult* mResult = nullptr;
};

/// A navigation bar, its frame at the bottom of the portrait screen.
inline refhost::WindowDescription navigationBar(bool visible = true) {
    return {
        .name = "Window{1f3a0c2 u0 NavigationBar}", .type = 2019, .frame = {0, 2214, 1080, 2340}, .visible = visible};
}

}  // namespace test

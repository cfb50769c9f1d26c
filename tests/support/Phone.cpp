#include "tests/support/Phone.h"

#include <algorithm>

#include "platform/control/LogSink.h"
#include "refhost/trace/SensorNames.h"

namespace test {

namespace {

refhost::TraceHeader headerOf(const Phone::Properties& properties, const Phone::Devices& more) {
    refhost::TraceHeader header;
    header.properties = properties;
    header.devices = {{.id = Phone::kPanel, .name = "touchpanel"},
                      {.id = Phone::kSensor, .name = "fingerprint", .sources = 257},
                      {.id = 6, .name = "fingerprint2", .sources = 257}};
    header.devices.insert(header.devices.end(), more.begin(), more.end());
    header.sensors = {{.type = 65557, .handle = Phone::kCover}, {.type = 3, .handle = Phone::kFoldAngle}};
    return header;
}

}  // namespace

Phone::Phone(const Properties& properties, const Devices& more)
    : mPlayer(headerOf(properties, more), ZQAFT_PLUGIN_UNDER_TEST) {
    rotate(0);
}

const refhost::CallResult& Phone::play(refhost::TraceEvent event) {
    mResult = &mPlayer.play({0, mNow, std::move(event)});
    return *mResult;
}

Fingers Phone::touch(const Fingers& fingers, bool withMapper) {
    const android::RawPointerData frame = frameOf(fingers);
    const refhost::DeviceRef device = withMapper ? refhost::DeviceRef(mPanel) : std::nullopt;
    const auto& back = play(refhost::ProcessRawTouches{device, mNow, frame, frame.touchingIdBits}).frame;
    EXPECT_EQ(back.ids, back.frame.touchingIdBits) << "the host's ids are not those of the frame";
    return fingersIn(back.frame);
}

bool Phone::key(int32_t keyCode, bool down, int32_t device) {
    return play(refhost::ProcessKey{device, mNow, keyCode, 7, down, 3, 0x80000002}).keyResult != 0;
}

void Phone::surface(int32_t width, int32_t height, int32_t orientation) {
    surface({.device = mPanel,
             .width = width,
             .height = height,
             .orientation = orientation,
             .rawX = {0, width - 1},
             .rawY = {0, height - 1}});
}

void Phone::show(const std::vector<refhost::WindowDescription>& windows, bool keyguard) {
    refhost::ProcessInputWindow call{windows, {}, keyguard};
    if (!windows.empty()) call.focused = 0;
    play(call);
}

void Phone::sense(int32_t type, int32_t handle, const std::vector<float>& values) {
    play(refhost::SensorEvent{.type = type, .handle = handle, .timestamp = mNow, .values = values});
}

Lines Phone::calls() const {
    Lines reached;
    for (const auto& [call, arguments] : mResult->requests.service) {
        reached.emplace_back(refhost::nameOf(refhost::kServiceCalls, call));
        for (int64_t argument : arguments) reached.back() += " " + std::to_string(argument);
    }
    return reached;
}

Lines Phone::wholeLog() const {
    Lines lines;
    for (const auto& [priority, tag, text] : mResult->log) {
        lines.push_back(std::string(aftplatform::priorityName(priority)) + " " + tag + ": " + text);
    }
    return lines;
}

Lines Phone::log(const std::string& tag) const {
    Lines lines;
    for (const auto& [priority, from, text] : mResult->log) {
        if (from == tag) lines.push_back(std::string(aftplatform::priorityName(priority)) + " " + text);
    }
    return lines;
}

bool Phone::logged(const std::string& line) const {
    const Lines lines = log();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

refhost::WindowDescription navigationBar(bool visible) {
    return {
        .name = "Window{1f3a0c2 u0 NavigationBar}", .type = 2019, .frame = {0, 2214, 1080, 2340}, .visible = visible};
}

}  // namespace test

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

Fingers Phone::touch(const Fingers& fingers) {
    refhost::ProcessRawTouches call;
    if (mHasMapper) call.device = mPanel;
    call.when = mNow;
    for (const Finger& finger : fingers) {
        auto& pointer = call.frame.pointers[call.frame.pointerCount];
        pointer.id = finger.id;
        pointer.x = finger.x;
        pointer.y = finger.y;
        pointer.axes[0] = finger.axis0;
        pointer.isHovering = finger.hovers ? 1 : 0;
        pointer.extraData = finger.flags;
        // A hovering pointer is in the touching set here, too: the filters must look at its own byte.
        call.frame.touchingIdBits.markBit(finger.id);
        call.frame.idToIndex[finger.id] = call.frame.pointerCount++;
    }
    call.ids = call.frame.touchingIdBits;
    play(call);
    return seen();
}

Fingers Phone::touchWithoutMapper(const Finger& one) {
    mHasMapper = false;
    const Fingers fingers = touch(one);
    mHasMapper = true;
    return fingers;
}

Fingers Phone::seen() const {
    const android::RawPointerData& frame = mResult->frame.frame;
    Fingers fingers;
    android::BitSet32 present{};
    for (uint32_t i = 0; i < frame.pointerCount; ++i) {
        const auto& pointer = frame.pointers[i];
        EXPECT_EQ(frame.idToIndex[pointer.id], i) << "the index of pointer " << pointer.id << " is stale";
        present.markBit(pointer.id);
        fingers.push_back(
            {pointer.id, pointer.x, pointer.y, pointer.axes[0], pointer.extraData, pointer.isHovering != 0});
    }
    EXPECT_EQ(frame.touchingIdBits, present) << "the touching ids are not those of the records";
    EXPECT_EQ(mResult->frame.ids, present) << "the host's ids are not those of the records";
    return fingers;
}

bool Phone::key(int32_t keyCode, bool down, int32_t device) {
    refhost::ProcessKey call;
    call.device = device;
    call.when = mNow;
    call.keyCode = keyCode;
    call.scanCode = 7;
    call.down = down;
    call.metaState = 3;
    call.policyFlags = 0x80000002;
    return play(call).keyResult != 0;
}

void Phone::surface(int32_t width, int32_t height, int32_t orientation) {
    refhost::ConfigureSurface call;
    call.device = mPanel;
    call.width = width;
    call.height = height;
    call.orientation = orientation;
    call.rawX = {0, width - 1};
    call.rawY = {0, height - 1};
    play(call);
}

void Phone::show(const std::vector<refhost::WindowDescription>& windows, bool keyguard) {
    refhost::ProcessInputWindow call;
    call.windows = windows;
    if (!windows.empty()) call.focused = 0;
    call.keyguard = keyguard;
    play(call);
}

void Phone::sense(int32_t type, int32_t handle, const std::vector<float>& values) {
    play(refhost::SensorEvent{.type = type, .handle = handle, .timestamp = mNow, .values = values});
}

std::vector<std::string> Phone::calls() const {
    std::vector<std::string> reached;
    for (const auto& [call, arguments] : mResult->requests.service) {
        reached.emplace_back(refhost::nameOf(refhost::kServiceCalls, call));
        for (int64_t argument : arguments) reached.back() += " " + std::to_string(argument);
    }
    return reached;
}

std::vector<std::string> Phone::said() const {
    std::vector<std::string> texts;
    for (const std::string& line : log()) texts.push_back(line.substr(line.find(' ') + 1));
    return texts;
}

std::vector<std::string> Phone::log(const std::string& tag) const {
    std::vector<std::string> lines;
    for (const refhost::LogEntry& entry : mResult->log) {
        if (entry.tag != tag) continue;
        lines.push_back(std::string(aftplatform::priorityName(entry.priority)) + " " + entry.text);
    }
    return lines;
}

std::vector<std::string> Phone::wholeLog() const {
    std::vector<std::string> lines;
    for (const refhost::LogEntry& entry : mResult->log) {
        lines.push_back(std::string(aftplatform::priorityName(entry.priority)) + " " + entry.tag + ": " + entry.text);
    }
    return lines;
}

bool Phone::said(const std::string& text) const {
    const std::vector<std::string> texts = said();
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

refhost::WindowDescription navigationBar() {
    return {.name = "Window{1f3a0c2 u0 NavigationBar}", .type = 2019, .frame = {0, 2214, 1080, 2340}};
}

}  // namespace test

#include "refhost/profile/ImportedTrace.h"

#include <fmt/format.h>
#include <libevdev/libevdev.h>

#include <algorithm>

#include "refhost/profile/ImportNotes.h"
#include "refhost/recording/DeviceChoice.h"

namespace refhost {

namespace {

using android::RawPointerData;

/// What a device of the profile goes by in the recording: as the user says, else as the profile says, else by its name.
std::optional<std::string> wantedTouchDevice(const Profile& profile, const std::string& device) {
    if (!device.empty()) return device;
    if (!profile.touch.recorded.empty()) return profile.touch.recorded;
    return std::nullopt;
}

bool goesBy(const RecordedDevice& device, const std::string& wanted) {
    return device.name == wanted || device.path == wanted || device.path == "/dev/input/" + wanted;
}

/// Keys that say how a panel is touched, and that no app hears of.
constexpr bool isTouchButton(uint16_t code) { return code >= BTN_DIGI && code <= BTN_TOOL_QUADTAP; }

}  // namespace

ImportedTrace::ImportedTrace(Recording recording, Profile profile, const std::string& device)
    : mRecording(std::move(recording)),
      mProfile(std::move(profile)),
      mTouchDevice(chooseTouchDevice(mRecording, wantedTouchDevice(mProfile, device))),
      mClock(mRecording),
      mFrames(touchProtocolOf(mRecording, mTouchDevice)) {
    mHeader.properties = mProfile.properties;
    mHeader.devices.push_back(mProfile.touch.device);
    if (mProfile.keys) mHeader.devices.push_back(mProfile.keys->device);
    mHeader.sensors = mProfile.sensors;
    mHeader.note = mProfile.note;
    mNotes = mProfile.notes;
    for (std::string& note : notesOnReading(mRecording)) mNotes.push_back(std::move(note));
    for (std::string& note : notesOnPanel(mRecording, mTouchDevice, mProfile)) mNotes.push_back(std::move(note));
    findKeyDevice();

    openWith(mProfile.surface);
    if (mProfile.windows) openWith(*mProfile.windows);
    if (mProfile.sensorService) openWith(*mProfile.sensorService);
    openWith(NotifyInputStart{});
}

void ImportedTrace::findKeyDevice() {
    if (!mProfile.keys) return;
    const ProfileKeys& keys = *mProfile.keys;
    const std::string& wanted = keys.recorded.empty() ? keys.device.name : keys.recorded;
    for (uint32_t i = 0; i < mRecording.devices.size(); ++i) {
        if (goesBy(mRecording.devices[i], wanted)) mKeyDevice = i;
    }
    if (mKeyDevice || keys.recorded.empty()) return;
    mNotes.push_back(fmt::format("{}: no device \"{}\"; keys are taken from every device that sends a scan code of {}",
                                 mRecording.file, wanted, mProfile.file));
}

bool ImportedTrace::next(TraceLine& line) {
    while (mReady.empty() && mNextEvent < mRecording.events.size()) take(mRecording.events[mNextEvent++]);
    if (mReady.empty() && !mFinished) {
        mFinished = true;
        mFrames.finish();
        catchUpWithTimeline(INT64_MAX);
    }
    if (mReady.empty()) return false;
    line = std::move(mReady.front());
    mReady.pop_front();
    line.line = ++mLine;
    return true;
}

std::optional<double> ImportedTrace::progress() {
    return static_cast<double>(mNextEvent) / static_cast<double>(std::max<size_t>(mRecording.events.size(), 1));
}

void ImportedTrace::take(const KernelEvent& event) {
    const int64_t when = mClock.at(event);
    catchUpWithTimeline(when);
    if (event.type == EV_KEY && !isTouchButton(event.code)) takeKey(event, when);
    if (event.device != mTouchDevice) return;
    const uint32_t foreign = mFrames.counts().foreignPackets;
    if (const std::optional<TouchFrame> frame = mFrames.feed(event)) takeFrame(*frame, when);
    if (mKeyInPacket && mFrames.counts().foreignPackets > foreign) ++mKeyPackets;  // not left out: its keys were taken
    if (event.type == EV_SYN && event.code == SYN_REPORT) mKeyInPacket = false;
}

void ImportedTrace::takeKey(const KernelEvent& event, int64_t when) {
    if (!mProfile.keys || (mKeyDevice && event.device != *mKeyDevice)) {
        ++mForeignKeys;
        return;
    }
    const ProfileKeys& keys = *mProfile.keys;
    const auto mapped = keys.keyCodes.find(event.code);
    if (mapped == keys.keyCodes.end()) {
        if (mUnmappedKeys++ == 0) mUnmappedCode = event.code;
        return;
    }
    mKeyInPacket = mKeyInPacket || event.device == mTouchDevice;
    if (event.value != 0 && event.value != 1) {  // the kernel's own repeat is no new press
        ++mKeyRepeats;
        return;
    }
    ProcessKey key;
    key.device = keys.device.id;
    key.when = when;
    key.keyCode = mapped->second;
    key.scanCode = event.code;
    key.down = event.value != 0;
    key.policyFlags = keys.policyFlags;
    mReady.push_back({0, when, key});
}

void ImportedTrace::takeFrame(const TouchFrame& frame, int64_t when) {
    ProcessRawTouches call;
    call.device = mProfile.touch.device.id;
    call.when = when;
    RawPointerData& raw = call.frame;
    for (const Contact& contact : frame.contacts) {
        RawPointerData::Pointer& pointer = raw.pointers[raw.pointerCount];
        pointer.id = contact.id;
        pointer.x = contact.x;
        pointer.y = contact.y;
        pointer.axes = contact.axes;
        pointer.isHovering = contact.hovering ? 1 : 0;
        pointer.extraData = contact.palm ? RawPointerData::Pointer::kAbnormal : 0;
        (contact.hovering ? raw.hoveringIdBits : raw.touchingIdBits).markBit(contact.id);
        raw.idToIndex[contact.id] = raw.pointerCount++;
    }
    call.ids = raw.touchingIdBits;
    mReady.push_back({0, when, call});
}

void ImportedTrace::catchUpWithTimeline(int64_t until) {
    while (mNextHappening < mProfile.timeline.size()) {
        TimelineEntry& happening = mProfile.timeline[mNextHappening];
        const int64_t due = TraceClock::kStartNs + happening.atNs;
        if (due > until) return;
        const int64_t now = std::max(due, mReady.empty() ? TraceClock::kStartNs : *mReady.back().t);
        if (auto* sample = std::get_if<SensorEvent>(&happening.event)) sample->timestamp = now;
        mReady.push_back({0, now, std::move(happening.event)});
        ++mNextHappening;
    }
}

std::vector<std::string> ImportedTrace::leftOut() const {
    std::vector<std::string> said;
    const auto say = [&](uint64_t count, std::string_view one, std::string_view many, std::string_view what) {
        if (count > 0) said.push_back(fmt::format("{}: {} {}", mRecording.file, counted(count, one, many), what));
    };
    const FrameMaker::Counts& frames = mFrames.counts();
    say(frames.foreignPackets - mKeyPackets, "report", "reports", "without a touch left out (another device's)");
    say(frames.unpositionedContacts, "contact", "contacts", "left out of a frame: x or y not known yet");
    say(frames.surplusContacts, "contact", "contacts", "left out of a frame: more than 16 in it");
    say(frames.badSlotEvents, "event", "events", "of slots outside 0..255 left out");
    say(frames.resyncs, "loss", "losses",
        "of events (SYN_DROPPED, or the device was removed); fingers taken to have lifted");
    say(frames.lostEvents, "event", "events", "left out between a loss and the next report");
    say(frames.unfinishedEvents, "event", "events", "left out at the end: no report closes them");
    say(mClock.jumps(), "jump", "jumps", "of the recording's clock; the trace's clock goes on without it");
    say(mClock.stepsBack(), "event", "events", "earlier than the one before; the trace's clock waits");
    say(mKeyRepeats, "key repeat", "key repeats", "left out");
    say(mForeignKeys, "key event", "key events",
        mProfile.keys ? fmt::format("of other devices than the key device of {} left out", mProfile.file)
                      : fmt::format("left out: {} has no keys", mProfile.file));
    if (mUnmappedKeys > 0) {
        const char* name = libevdev_event_code_get_name(EV_KEY, mUnmappedCode);
        say(mUnmappedKeys, "key event", "key events",
            fmt::format("without a key code in {} left out; the first is scan code {} ({})", mProfile.file,
                        mUnmappedCode, name != nullptr ? name : "no name"));
    }
    return said;
}

}  // namespace refhost

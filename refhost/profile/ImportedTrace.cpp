#include "refhost/profile/ImportedTrace.h"

#include <fmt/format.h>
#include <libevdev/libevdev.h>

#include <algorithm>

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

/// Devices that record together are out of order by less than this; a greater step back is a clock that was set.
constexpr int64_t kDisorderUs = 1'000'000;

/// A longer step forward is a clock that was set, too: a year.
constexpr int64_t kLongestPauseUs = int64_t{366} * 24 * 3600 * 1'000'000;

/// Where the trace's clock stops: 64 bits of nanoseconds hold no more.
constexpr int64_t kLongestTraceUs = (INT64_MAX - ImportedTrace::kStartNs) / 1000;

std::string counted(uint64_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

}  // namespace

ImportedTrace::ImportedTrace(Recording recording, Profile profile, const std::string& device)
    : mRecording(std::move(recording)),
      mProfile(std::move(profile)),
      mTouchDevice(chooseTouchDevice(mRecording, wantedTouchDevice(mProfile, device))),
      mFrames(touchProtocolOf(mRecording, mTouchDevice)) {
    mHeader.properties = mProfile.properties;
    mHeader.devices.push_back(mProfile.touch.device);
    if (mProfile.keys) mHeader.devices.push_back(mProfile.keys->device);
    mHeader.note = mProfile.note;
    noteRecording();
    notePanel();
    findKeyDevice();

    openWith(mProfile.surface);
    if (mProfile.windows) openWith(*mProfile.windows);
    openWith(NotifyInputStart{});
    if (!mRecording.events.empty()) mZeroUs = static_cast<uint64_t>(mRecording.events.front().timeUs);
}

void ImportedTrace::noteRecording() {
    const std::string& file = mRecording.file;
    if (!mRecording.skipped.empty()) {
        const SkippedLine& first = mRecording.skipped.front();
        mNotes.push_back(fmt::format("{}: {} skipped; the first is line {}: {}", file,
                                     counted(mRecording.skipped.size(), "line", "lines"), first.line, first.text));
    }
    if (mRecording.quotedLines > 0) {
        mNotes.push_back(fmt::format("{}: {} read without the mail's quotation mark", file,
                                     counted(mRecording.quotedLines, "line", "lines")));
    }
    if (!mRecording.hasTimes) {
        mNotes.push_back(
            fmt::format("{}: no times; reports are taken to be {} ms apart", file, kReportWithoutTimeNs / 1'000'000));
    }
}

void ImportedTrace::notePanel() {
    const RecordedDevice& device = mRecording.devices[mTouchDevice];
    const auto size = [&](uint16_t position, const std::array<int32_t, 2>& raw) {
        const auto axis = device.axes.find(position);
        if (axis == device.axes.end()) return std::string();
        if (axis->second.minimum == raw[0] && axis->second.maximum == raw[1]) return std::string();
        return fmt::format("{} {}..{} in the recording, {}..{} in the profile",
                           position == ABS_MT_POSITION_X ? "x" : "y", axis->second.minimum, axis->second.maximum,
                           raw[0], raw[1]);
    };
    const std::string x = size(ABS_MT_POSITION_X, mProfile.surface.rawX);
    const std::string y = size(ABS_MT_POSITION_Y, mProfile.surface.rawY);
    if (!x.empty() || !y.empty()) {
        mNotes.push_back(fmt::format("{}: another panel than {}: {}{}{}", mRecording.file, mProfile.file, x,
                                     x.empty() || y.empty() ? "" : "; ", y));
        return;
    }
    if (device.axes.contains(ABS_MT_POSITION_X) && device.axes.contains(ABS_MT_POSITION_Y)) return;

    // No description of the axes: positions beyond the surface say as much.
    const auto beyond = std::find_if(mRecording.events.begin(), mRecording.events.end(), [&](const KernelEvent& event) {
        if (event.device != mTouchDevice || event.type != EV_ABS) return false;
        const auto outside = [&](const std::array<int32_t, 2>& raw) {
            return event.value < raw[0] || event.value > raw[1];
        };
        return (event.code == ABS_MT_POSITION_X && outside(mProfile.surface.rawX)) ||
               (event.code == ABS_MT_POSITION_Y && outside(mProfile.surface.rawY));
    });
    if (beyond == mRecording.events.end()) return;
    mNotes.push_back(fmt::format("{}: another panel than {}: {} {} on line {} lies outside the profile's surface",
                                 mRecording.file, mProfile.file, beyond->code == ABS_MT_POSITION_X ? "x" : "y",
                                 beyond->value, beyond->line));
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

/// The time of an event on the trace's clock, which never goes back.
int64_t ImportedTrace::timeOf(const KernelEvent& event) {
    if (!mRecording.hasTimes) {
        const int64_t now = mClock;
        if (event.type == EV_SYN && event.code == SYN_REPORT) mClock += kReportWithoutTimeNs;
        return now;
    }
    const int64_t clockUs = (mClock - kStartNs) / 1000;
    auto elapsedUs = static_cast<int64_t>(static_cast<uint64_t>(event.timeUs) - mZeroUs);
    if (elapsedUs < clockUs - kDisorderUs || elapsedUs > clockUs + kLongestPauseUs) {
        ++mClockJumps;
        mZeroUs = static_cast<uint64_t>(event.timeUs) - static_cast<uint64_t>(clockUs);
        elapsedUs = clockUs;
    }
    if (elapsedUs < clockUs) {
        ++mStepsBack;
    } else {
        mClock = kStartNs + std::min(elapsedUs, kLongestTraceUs) * 1000;
    }
    return mClock;
}

void ImportedTrace::take(const KernelEvent& event) {
    const int64_t when = timeOf(event);
    catchUpWithTimeline(when);
    if (event.type == EV_KEY) takeKey(event, when);
    if (event.device != mTouchDevice) return;
    if (const std::optional<TouchFrame> frame = mFrames.feed(event)) takeFrame(*frame, when);
}

void ImportedTrace::takeKey(const KernelEvent& event, int64_t when) {
    if (!mProfile.keys || (mKeyDevice && event.device != *mKeyDevice)) return;
    const ProfileKeys& keys = *mProfile.keys;
    const auto mapped = keys.keyCodes.find(event.code);
    if (mapped == keys.keyCodes.end()) {
        if (mKeyDevice && mUnmappedKeys++ == 0) mUnmappedCode = event.code;
        return;
    }
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
        const TimelineEntry& happening = mProfile.timeline[mNextHappening];
        if (kStartNs + happening.atNs > until) return;
        mReady.push_back(
            {0, std::max(kStartNs + happening.atNs, mReady.empty() ? kStartNs : *mReady.back().t), happening.event});
        ++mNextHappening;
    }
}

std::vector<std::string> ImportedTrace::leftOut() const {
    std::vector<std::string> said;
    const auto say = [&](uint64_t count, std::string_view one, std::string_view many, std::string_view what) {
        if (count > 0) said.push_back(fmt::format("{}: {} {}", mRecording.file, counted(count, one, many), what));
    };
    const FrameMaker::Counts& frames = mFrames.counts();
    say(frames.foreignPackets, "report", "reports", "of no touch panel left out");
    say(frames.unpositionedContacts, "contact", "contacts", "left out of a frame: x or y not known yet");
    say(frames.surplusContacts, "contact", "contacts", "left out of a frame: more than 16 in it");
    say(frames.badSlotEvents, "event", "events", "of slots outside 0..255 left out");
    say(frames.resyncs, "loss", "losses", "of events in the kernel (SYN_DROPPED); fingers taken to have lifted");
    say(frames.lostEvents, "event", "events", "left out between a loss and the next report");
    say(frames.unfinishedEvents, "event", "events", "left out at the end: no report closes them");
    say(mClockJumps, "jump", "jumps", "of the recording's clock; the trace's clock goes on without it");
    say(mStepsBack, "event", "events", "earlier than the one before; the trace's clock waits");
    say(mKeyRepeats, "key repeat", "key repeats", "left out");
    if (mUnmappedKeys > 0) {
        const char* name = libevdev_event_code_get_name(EV_KEY, mUnmappedCode);
        say(mUnmappedKeys, "key event", "key events",
            fmt::format("without a key code in {} left out; the first is scan code {} ({})", mProfile.file,
                        mUnmappedCode, name != nullptr ? name : "no name"));
    }
    return said;
}

}  // namespace refhost

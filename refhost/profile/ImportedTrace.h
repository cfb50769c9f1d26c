#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "refhost/profile/Profile.h"
#include "refhost/profile/TraceClock.h"
#include "refhost/recording/FrameMaker.h"
#include "refhost/recording/Recording.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// A recording and a profile as a trace: the header, what the phone looks like at the start, and then frames, keys and
/// the profile's timeline in the order of their times. The trace's clock starts at 60 s with the first event: times
/// near zero mean "just booted" to the filters, and a recording's own clock means nothing. One thread.
class ImportedTrace : public TraceSource {
  public:
    /// @param device the touch device's name or path, before the profile's
    /// Throws InputError where the touch device cannot be told.
    ImportedTrace(Recording recording, Profile profile, const std::string& device);

    const TraceHeader& header() const override { return mHeader; }
    bool next(TraceLine& line) override;
    std::optional<double> progress() override;

    /// What the user should know before the first line: one sentence each. How the recording was understood, and where
    /// it does not fit the profile.
    const std::vector<std::string>& notes() const { return mNotes; }

    /// What was left out on the way, one sentence each; complete once next() has answered false.
    std::vector<std::string> leftOut() const override;

  private:
    void findKeyDevice();
    void openWith(TraceEvent event) { mReady.push_back({0, TraceClock::kStartNs, std::move(event)}); }

    void take(const KernelEvent& event);
    void takeKey(const KernelEvent& event, int64_t when);
    void takeFrame(const TouchFrame& frame, int64_t when);
    void catchUpWithTimeline(int64_t until);

    Recording mRecording;
    Profile mProfile;
    TraceHeader mHeader;
    uint32_t mTouchDevice;
    std::optional<uint32_t> mKeyDevice;  ///< absent: any device that sends a scan code of the profile's
    TraceClock mClock;
    FrameMaker mFrames;

    std::deque<TraceLine> mReady;  ///< lines made and not yet handed out
    size_t mNextEvent = 0;
    size_t mNextHappening = 0;
    uint32_t mLine = 1;
    bool mFinished = false;

    bool mKeyInPacket = false;   ///< a key of the touch device's packet in hand has been taken
    uint32_t mKeyPackets = 0;    ///< packets of the touch device that held such keys and no touch
    uint32_t mForeignKeys = 0;   ///< key events of other devices than the key device, or without one in the profile
    uint32_t mUnmappedKeys = 0;  ///< key events without a key code
    uint16_t mUnmappedCode = 0;  ///< the first of them
    uint32_t mKeyRepeats = 0;

    std::vector<std::string> mNotes;
};

}  // namespace refhost

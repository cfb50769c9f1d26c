#pragma once

#include <cstdint>
#include <map>

#include "refhost/export/ChromeEvents.h"
#include "refhost/play/Decision.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// The tracks of each panel: one for its gestures, with cancels and reports as instants, and one for each finger from
/// landing to lift, with a slice for each outcome. One thread.
class PanelTracks {
  public:
    /// @param events must outlive this object
    PanelTracks(const TraceHeader& header, ChromeEvents& events) : mHeader(header), mEvents(events) {}

    /// @param decisions of this frame
    void onFrame(const ProcessRawTouches& call, const Decisions& decisions);

    /// Ends the slices of the fingers that are still down.
    /// @param when ns: the end of the trace
    void end(int64_t when);

  private:
    struct Finger {
        ChromeEvents::Track track;
        Decision state;  ///< what the open slice shows
    };
    struct Panel {
        size_t process = 0;
        ChromeEvents::Track gestures;
        size_t landings = 0;
        std::map<uint32_t, Finger> down;  ///< by pointer id
    };

    Panel& panelOf(const DeviceRef& device);
    void onFingerDecision(Panel& panel, uint32_t id, const Decision& decision);
    void onLift(uint32_t id, const Finger& finger, int64_t when, const Decisions& decisions);
    void endSlice(const Finger& finger, int64_t when, bool lifted = true);

    const TraceHeader& mHeader;
    ChromeEvents& mEvents;
    std::map<DeviceRef, Panel> mPanels;
};

}  // namespace refhost

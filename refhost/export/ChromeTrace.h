#pragma once

#include <cstdint>
#include <string>

#include "refhost/export/ChromeEvents.h"
#include "refhost/export/ContextTracks.h"
#include "refhost/export/KeyTracks.h"
#include "refhost/export/PanelTracks.h"
#include "refhost/play/DecisionLog.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// The decisions of a trace in the Chrome JSON trace event format, as docs/export.md describes. The text of the events
/// is in memory: it grows with the decisions and the log, not with the frames. One thread.
class ChromeTrace {
  public:
    explicit ChromeTrace(const TraceHeader& header) : mHeader(header) {}
    ChromeTrace(const ChromeTrace&) = delete;
    ChromeTrace& operator=(const ChromeTrace&) = delete;

    void onLine(const TraceLine& line, const CallResult& result);

    /// Ends what is still open at the latest time of the trace, and appends the file. Call it once, after the last
    /// line.
    void write(TextBuffer& out);

    Summary summary() const { return mDecisions.summary(); }

  private:
    const TraceHeader mHeader;
    DecisionLog mDecisions;
    ChromeEvents mEvents;
    PanelTracks mPanels{mHeader, mEvents};
    KeyTracks mKeys{mHeader, mEvents};
    ContextTracks mContext{mEvents};
    int64_t mClock = 0;  ///< ns, the trace's
    int64_t mLast = 0;   ///< ns, the latest time
};

}  // namespace refhost

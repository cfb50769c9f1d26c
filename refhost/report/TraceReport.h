#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "refhost/explain/Explainer.h"
#include "refhost/play/DurationHistogram.h"
#include "refhost/report/JsonList.h"
#include "refhost/report/KeyBars.h"
#include "refhost/report/Scene.h"
#include "refhost/report/SensorCurves.h"
#include "refhost/report/Strokes.h"

namespace refhost {

/// What a report shows of a trace: the decisions, each with its reason, the paths of the fingers, what they moved over,
/// keys and sensors. It grows with what happened, not with how often that was sampled. One thread.
class TraceReport {
  public:
    explicit TraceReport(const TraceHeader& header) : mHeader(header) {}

    void hear(const TraceLine& line, const CallResult& result);

    /// Appends the report as one HTML page that needs nothing else. docs/report.md says what it holds.
    /// @param name of the trace, as a reader knows it
    void writePage(TextBuffer& out, std::string_view name) const;

    Summary summary() const { return mExplainer.summary(); }

  private:
    void hearFrame(const ProcessRawTouches& call, const std::vector<Explained>& decisions);
    void writeData(TextBuffer& out, std::string_view name) const;
    void writeSummary(TextBuffer& out) const;
    void writeRules(TextBuffer& out) const;

    TraceHeader mHeader;
    Explainer mExplainer;
    Scene mScene;
    Strokes mStrokes;
    KeyBars mKeys;
    SensorCurves mSensors;
    JsonList mDecisions;
    std::set<std::string_view> mRules;  ///< of mDecisions, without those of another build
    DurationHistogram mBetweenFrames;   ///< ns, of frames with a finger
    std::optional<int64_t> mLastFrame;
    std::optional<int64_t> mClock;  ///< ns, the trace's; nothing before the first line that says
    std::optional<int64_t> mFirst;  ///< ns, of all that happened at a time
    int64_t mLast = 0;
};

}  // namespace refhost

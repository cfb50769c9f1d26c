#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/export/ChromeEvents.h"
#include "refhost/play/CallResult.h"
#include "refhost/play/Decision.h"

namespace refhost {

/// What explains the decisions: changes of context as instants, a track for each filter that notes them; the state of
/// the slide cover and the spread of the fold angle as counters; the log as instants, a track for each tag. One thread.
class ContextTracks {
  public:
    /// @param events must outlive this object
    explicit ContextTracks(ChromeEvents& events) : mEvents(events) {}

    /// @param when ns: the time of the line, which its log has
    void onLine(int64_t when, const CallResult& result, const Decisions& decisions);

  private:
    void onSample(const Record& record);
    size_t contextProcess();
    const ChromeEvents::Track& contextTrack(std::string_view filter);
    const ChromeEvents::Track& logTrack(const std::string& tag);

    ChromeEvents& mEvents;
    std::optional<size_t> mContext;                             ///< process
    std::optional<size_t> mLog;                                 ///< likewise
    std::map<std::string, ChromeEvents::Track> mContextTracks;  ///< by filter
    std::map<std::string, ChromeEvents::Track> mLogTracks;      ///< by tag
    std::map<std::string_view, double> mCounters;               ///< last value, by name
};

}  // namespace refhost

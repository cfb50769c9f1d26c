#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include "refhost/export/ChromeEvents.h"
#include "refhost/play/Decision.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// A track for each key: a slice from key-down to key-up, or until a held-back key is re-sent or dropped. A press that
/// begins while the key is still held back goes to a second track. One thread.
class KeyTracks {
  public:
    /// @param events must outlive this object
    KeyTracks(const TraceHeader& header, ChromeEvents& events) : mHeader(header), mEvents(events) {}

    /// @param decisions of this key
    void onKey(const ProcessKey& call, const Decisions& decisions);

    /// @param decisions of a frame: they may end the wait of a held-back key
    void onFrame(const Decisions& decisions);

    /// Shows the presses without a key-up as instants, and ends the slice of a key that is still held back.
    /// @param when ns: the end of the trace
    void end(int64_t when);

  private:
    using KeyId = std::pair<DeviceRef, int32_t>;  ///< device and key code

    /// A key-down whose slice is open.
    struct Press {
        ChromeEvents::Track track;
        Decision decision;
    };
    struct Waiting {
        KeyId key;
        Press press;
    };

    const ChromeEvents::Track& trackOf(const KeyId& key);
    void onKeyDown(const KeyId& key, const Decision& decision);
    void onKeyUp(const KeyId& key, int64_t when);
    void endWait(int64_t when, bool ended);

    const TraceHeader& mHeader;
    ChromeEvents& mEvents;
    std::optional<size_t> mProcess;
    std::map<std::pair<KeyId, bool>, ChromeEvents::Track> mTracks;  ///< by key, and whether it is the key's second
    std::map<KeyId, Press> mPressed;                                ///< those that are not held back
    std::optional<Waiting> mWaiting;                                ///< the library holds back one key at a time
};

}  // namespace refhost

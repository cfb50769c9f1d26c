#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "refhost/JsonText.h"
#include "refhost/report/JsonList.h"

namespace refhost {

/// Writes events of the Chrome JSON trace event format, in its object form. A track is a thread of a process, both by
/// number. The numbers start above 4194304, the largest process id of Linux, so that no track merges with a process of
/// the phone when a viewer shows a system trace as well. Times are ns; the file has us with three decimals. One thread.
class ChromeEvents {
  public:
    struct Track {
        size_t process = 0;
        size_t thread = 0;  ///< from 1; unique in the file
    };

    /// Adds a process, a group of tracks.
    /// @param sortIndex viewers show lower ones first; equal ones in the order added
    /// @return what track() and counter() accept
    size_t addProcess(std::string_view name, int sortIndex);

    /// Adds a track below those that the process has.
    Track addTrack(size_t process, std::string_view name);

    // `arguments` is a JSON object.

    /// Adds a complete event. Slices of one track never overlap: a time before the end of the previous slice is moved
    /// to that end, and an `end` before `begin` to `begin`.
    void addSlice(const Track& track, int64_t begin, int64_t end, std::string_view name, std::string_view arguments);

    /// Adds an instant of thread scope.
    void addInstant(const Track& track, int64_t when, std::string_view name, std::string_view arguments);

    /// Adds one value of the counter that has this name in this process. Skips a value that is not finite: no viewer
    /// can draw it.
    void addCounter(size_t process, int64_t when, std::string_view name, double value);

    /// Appends the whole file: `{"displayTimeUnit":"ms","traceEvents":[...]}`.
    void write(TextBuffer& out) const;

  private:
    /// Begins an event up to its name, and returns where the rest goes.
    TextBuffer& begin(std::string_view phase, std::string_view name, size_t process);
    void addMetadata(std::string_view name, const Track& track, std::string_view key, std::string_view value);

    JsonList mEvents;
    size_t mProcesses = 0;
    std::vector<int64_t> mSlicesEnd;  ///< ns, by thread: the end of its last slice
};

}  // namespace refhost

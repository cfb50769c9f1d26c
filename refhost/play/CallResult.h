#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "aft/host/NotifyKeyArgs.h"
#include "aft/host/RawPointerData.h"
#include "refhost/play/HostDevice.h"
#include "refhost/play/Record.h"

namespace refhost {

/// A line that the plug-in logged, uncut.
struct LogEntry {
    int priority = 0;  ///< android_LogPriority
    std::string tag;
    std::string text;
};

/// What came back from a frame.
struct FrameResult {
    android::RawPointerData frame{};
    android::BitSet32 ids{};
    android::BitSet32 removed{};               ///< in `ids` when the call was made, and not when it returned
    std::vector<android::NotifyKeyArgs> keys;  ///< to dispatch; copies, in order
};

/// All that came back from one line of a trace. Used again for the next line.
struct CallResult {
    uint32_t line = 0;
    std::optional<int32_t> keyResult;  ///< of processKey
    bool hasFrame = false;             ///< whether `frame` is this line's, a processRawTouches
    FrameResult frame;
    Requests requests;
    std::vector<LogEntry> log;
    std::vector<Record> records;        ///< decisions that the library recorded, in order
    std::optional<int64_t> durationNs;  ///< of a call into the plug-in, on the real clock; platform lines have none
};

}  // namespace refhost

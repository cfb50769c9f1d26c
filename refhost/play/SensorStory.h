#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "refhost/play/CallResult.h"
#include "refhost/play/Decision.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What became of the sensors: switched on and off, or not to be had; the sensor service, which dies and returns; and
/// from when on a filter lets everything pass because it knows nothing. Each is told when it changes, not with each
/// frame.
class SensorStory {
  public:
    SensorStory();

    /// Takes a line in, and adds what it brings.
    void hear(int64_t when, const TraceLine& line, const CallResult& result, Decisions& decisions);

  private:
    /// A filter's sensor, as the story has told of it last.
    struct Sensor {
        std::string_view tag;     ///< under which its lines are logged
        std::string_view name;    ///< in the story
        std::string_view filter;  ///< whose sensor it is, likewise
        std::string_view state;   ///< on, off or fails; empty: nothing has been told
        std::string words;        ///< what was said of that
        std::string idle;         ///< what the filter says on why it does nothing since then; empty: not told
    };

    static void hear(int64_t when, Sensor& sensor, const CallResult& result, Decisions& decisions);
    static void hearOfIdling(int64_t when, Sensor& sensor, const CallResult& result, Decisions& decisions);
    void hear(int64_t when, const SensorService& happening, Decisions& decisions);
    void hearOfFoldAngle(int64_t when, const SensorEvent& event, Decisions& decisions);

    Sensor mCover;
    Sensor mFold;
    bool mNoFoldFilter = false;  ///< the input has started without a word of it
    bool mToldOfFoldAngle = false;
};

}  // namespace refhost

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "aft/host/RawPointerData.h"
#include "refhost/play/CallResult.h"
#include "refhost/play/Decision.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// The notch filter's part of the story. It logs its band's height and nothing more, so its decisions are worked out:
/// it alone takes out a finger of which no other filter speaks, where the phone is held in landscape and the finger is
/// in the band. What it depends on is told where it changes: how the phone is held, which windows are marked.
class NotchStory {
  public:
    /// Takes a line in before anything is told of it, and adds what it brings.
    void hear(int64_t when, const TraceLine& line, const CallResult& result, Decisions& decisions);

    /// Whether the filter takes out a finger that is here, unless it has let it through before.
    bool covers(const DeviceRef& device, const android::RawPointerData::Pointer& finger) const;
    /// On a finger that it takes out.
    std::string wordsOnTaking() const;
    /// On a finger that it had taken out, and that now passes.
    std::string wordsOnPassing(const DeviceRef& device, const android::RawPointerData::Pointer& finger) const;

  private:
    bool landscape(const DeviceRef& device) const;
    void hear(int64_t when, const ConfigureSurface& call, Decisions& decisions);
    void hear(int64_t when, const ProcessInputWindow& call, Decisions& decisions);

    std::optional<int32_t> mHeight;      ///< of the band, raw panel units; absent: the filter is off
    std::map<int32_t, int32_t> mTurned;  ///< orientation of each panel, by its device's id
    int32_t mToldTurned = 0;             ///< the orientation that the story has told last
    std::string mMarked;                 ///< the marked windows that are visible, as the story tells them
};

}  // namespace refhost

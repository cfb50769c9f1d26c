#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "aft/host/AftArea.h"
#include "refhost/play/CallResult.h"
#include "refhost/report/JsonList.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What the fingers move over, from its changes on: how each panel is held, where the filters act, and the windows that
/// matter to them. One thread.
class Scene {
  public:
    /// @param now ns, the trace's clock
    void hear(int64_t now, const TraceLine& line, const CallResult& result);

    /// Appends
    /// - `"surfaces":[...]`, the trace's configureSurface lines;
    /// - `"windows":[...]`, its processInputWindow lines, reduced to the visible navigation bar, the visible marked
    ///   windows, and the focused one, where these change;
    /// - `"places":[{"time","area","central","notch","navigationBar"},...]`: edges in raw units or null; the notch
    ///   band's lower edge by device; whether touches on the navigation bar are preferred. Times in us.
    void write(TextBuffer& out) const;

  private:
    void addSurface(int64_t now, const TraceLine& line);
    void addWindows(int64_t now, const ProcessInputWindow& call);
    void addPlaces(int64_t now);
    void place(const Record& record);

    // As the library recorded them last; nothing where a filter is off.
    std::optional<android::AftArea> mArea;
    std::optional<android::AftArea> mCentralArea;
    std::map<DeviceRef, int32_t> mNotchBottom;  ///< of the panels that are held in landscape
    bool mPrefersNavigationBar = false;

    std::map<DeviceRef, std::string> mSurfaceOf;  ///< as written last
    std::string mWindowsNow;
    std::string mPlacesNow;
    JsonList mSurfaces;
    JsonList mWindows;
    JsonList mPlaces;
};

}  // namespace refhost

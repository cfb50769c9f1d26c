#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>

#include "aft/host/AftArea.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// What is known of the phone: where the filter area and the notch band lie, how it is held, what is in front. Worked
/// out from the trace as the plug-in reads it. One thread.
class Phone {
  public:
    explicit Phone(const TraceHeader& header);

    void hear(const TraceLine& line, const CallResult& result);

    /// The filter area, raw panel units, edges inside; nothing where the front fingerprint filter is off.
    const std::optional<android::AftArea>& area() const { return mArea; }
    bool inArea(int32_t x, int32_t y) const { return mArea && mArea->contains(x, y); }
    /// The surface without its border, likewise: in landscape a finger there makes no key of the sensor.
    const std::optional<android::AftArea>& centralArea() const { return mCentralArea; }
    /// How the panel with the filter area is held.
    bool landscape() const { return mLandscape; }
    /// The notch band's lower edge where the filter acts on this panel; nothing where it does not.
    std::optional<int32_t> notchOn(const DeviceRef& device) const;
    bool isSensor(const DeviceRef& device) const { return nameOf(device) == "fingerprint"; }
    /// Whether touches near the sensor go to the navigation bar.
    bool prefersNavigationBar() const { return mPrefersNavigationBar; }
    /// Whether flagged touches cancel in front of every window.
    bool inEveryWindow() const { return mInEveryWindow; }

  private:
    std::string nameOf(const DeviceRef& device) const;
    bool carriesNotch(const DeviceRef& device) const;
    void hearOfNavigationBar(const CallResult& result);
    void readProperties();
    void place(const ConfigureSurface& surface);

    std::map<std::string, std::string> mProperties;
    std::map<int32_t, DeviceDescription> mDevices;
    bool mRead = false;
    std::array<int32_t, 4> mValues{};  ///< of the area's property
    size_t mValueCount = 0;
    std::optional<android::AftArea> mArea;
    std::optional<android::AftArea> mCentralArea;
    bool mLandscape = false;
    bool mPrefersNavigationBar = false;
    std::optional<int32_t> mNotchHeight;
    bool mNotchByName = false;                 ///< panels of one name alone carry it
    std::map<int32_t, bool> mHeldInLandscape;  ///< by device id
    bool mInEveryWindow = false;
};

}  // namespace refhost

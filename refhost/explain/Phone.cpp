#include "refhost/explain/Phone.h"

#include <sstream>

#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

bool isLandscape(int32_t orientation) { return orientation == 1 || orientation == 3; }

/// Numbers between commas, as many as there are, 4 at most.
size_t scan(const std::string& text, std::array<int32_t, 4>& values) {
    std::istringstream in(text);
    size_t count = 0;
    char comma = ',';
    while (count < values.size() && comma == ',' && in >> values[count]) {
        ++count;
        if (!in.get(comma)) break;
    }
    return count;
}

bool readsProperties(const TraceEvent& event) {
    return std::holds_alternative<ProcessKey>(event) || std::holds_alternative<ProcessRawTouches>(event) ||
           std::holds_alternative<ProcessInputWindow>(event) || std::holds_alternative<ConfigureSurface>(event);
}

}  // namespace

Phone::Phone(const TraceHeader& header) {
    for (const auto& [key, value] : header.properties) mProperties[key] = value;
    for (const DeviceDescription& device : header.devices) mDevices[device.id] = device.name;
}

void Phone::hear(const TraceLine& line, const CallResult& result) {
    constexpr std::string_view kHeight = "notch height:";
    if (const auto* property = std::get_if<SetProperty>(&line.event)) mProperties[property->key] = property->value;
    if (!mRead && readsProperties(line.event)) readProperties();
    if (const LogEntry* told = lineOf(result, kNotchTag, kHeight)) mNotchHeight = numberAfter(told->text, kHeight);
    if (const auto* surface = std::get_if<ConfigureSurface>(&line.event)) place(*surface);
    if (!wordsOnNoArea(result).empty()) mArea.reset();
}

/// Until a surface is configured, the area is the panel's corner.
void Phone::readProperties() {
    mRead = true;
    mValueCount = scan(mProperties["ro.zqaft.tpfp.filter_area"], mValues);
    mArea = android::AftArea{};
    mInEveryWindow = !mProperties["ro.config.zq_fold_disp"].empty();
}

void Phone::place(const ConfigureSurface& surface) {
    if (surface.device) mHeldInLandscape[*surface.device] = isLandscape(surface.orientation);
    if (!mArea) return;
    mLandscape = isLandscape(surface.orientation);
    const auto& [first, second, third, fourth] = mValues;
    if (mValueCount == 4) {
        mArea = {first, second, third, fourth};
    } else {  // centred on the bottom edge; odd sizes lose their halves
        const int32_t middle = surface.width / 2;
        mArea = {middle - first / 2, surface.height - second, middle + first / 2, surface.height};
    }
}

std::string Phone::nameOf(const DeviceRef& device) const {
    const auto known = device ? mDevices.find(*device) : mDevices.end();
    return known == mDevices.end() ? "" : known->second;
}

std::optional<int32_t> Phone::notchOn(const DeviceRef& device) const {
    const auto held = device ? mHeldInLandscape.find(*device) : mHeldInLandscape.end();
    return held != mHeldInLandscape.end() && held->second ? mNotchHeight : std::nullopt;
}

}  // namespace refhost

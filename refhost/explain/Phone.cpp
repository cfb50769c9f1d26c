#include "refhost/explain/Phone.h"

#include <sstream>

#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

/// What a hand that holds the phone touches. Raw panel units.
constexpr int32_t kBorder = 100;

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
    for (const DeviceDescription& device : header.devices) mDevices[device.id] = device;
}

void Phone::hear(const TraceLine& line, const CallResult& result) {
    constexpr std::string_view kHeight = "notch height:";
    constexpr std::string_view kFoldWidth = "fold part width:";
    if (const auto* property = std::get_if<SetProperty>(&line.event)) mProperties[property->key] = property->value;
    if (!mRead && readsProperties(line.event)) readProperties();
    if (const LogEntry* told = lineOf(result, kNotchTag, kHeight)) mNotchHeight = numberAfter(told->text, kHeight);
    if (const LogEntry* told = lineOf(result, kNotchTag, kFoldWidth)) {
        mNotchByName = numberAfter(told->text, kFoldWidth) == 0;
    }
    if (!wordsOnNoArea(result).empty()) mArea.reset();
    hearOfNavigationBar(result);
    if (const auto* surface = std::get_if<ConfigureSurface>(&line.event)) place(*surface);
}

void Phone::hearOfNavigationBar(const CallResult& result) {
    for (const LogEntry& entry : result.log) {
        if (entry.tag != kFrontFpTag || !entry.text.ends_with("prefer touch navigationbar")) continue;
        mPrefersNavigationBar = !entry.text.ends_with("not prefer touch navigationbar");
    }
}

/// Until a surface is configured, the area is the panel's corner.
void Phone::readProperties() {
    mRead = true;
    mValueCount = scan(mProperties["ro.zqaft.tpfp.filter_area"], mValues);
    mArea = android::AftArea{};
    mInEveryWindow = !mProperties["ro.config.zq_fold_disp"].empty();
}

void Phone::place(const ConfigureSurface& surface) {
    if (carriesNotch(surface.device)) mHeldInLandscape[*surface.device] = isLandscape(surface.orientation);
    if (!mArea) return;
    mLandscape = isLandscape(surface.orientation);
    mCentralArea = {kBorder, kBorder, surface.width - kBorder, surface.height - kBorder};
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
    return known == mDevices.end() ? "" : known->second.name;
}

bool Phone::carriesNotch(const DeviceRef& device) const {
    const auto known = device ? mDevices.find(*device) : mDevices.end();
    if (known == mDevices.end() || known->second.external || known->first < 0) return false;
    return !mNotchByName || says(known->second.name, "zorvia,ts_kit");
}

std::optional<int32_t> Phone::notchOn(const DeviceRef& device) const {
    const auto held = device ? mHeldInLandscape.find(*device) : mHeldInLandscape.end();
    return held != mHeldInLandscape.end() && held->second ? mNotchHeight : std::nullopt;
}

}  // namespace refhost

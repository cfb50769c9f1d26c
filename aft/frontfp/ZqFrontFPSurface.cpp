// Where the sensor's filter area lies on the touch surface, and whether the navigation bar is shown next to it.

#include <algorithm>
#include <array>
#include <string_view>

#include "aft/frontfp/FrontFPLog.h"
#include "aft/frontfp/FrontFPProperties.h"
#include "aft/frontfp/ZqFrontFPAftProcessor.h"

namespace android {

namespace {

/// A finger this close to the panel's edge may be the hand that holds the phone.
constexpr int32_t kCentralBorder = 100;

bool isLandscape(int32_t orientation) { return orientation == 1 || orientation == 3; }

void recordAreas(const AftArea& filter, const AftArea& central, int32_t orientation) {
    const DecisionRecorder recorder(kFrontFP);
    if (!recorder.listening()) return;
    Decision decision(recorder);
    decision.fact({.name = "area left", .setting = kFilterAreaProperty}, filter.left);
    decision.fact({.name = "area top", .setting = kFilterAreaProperty}, filter.top);
    decision.fact({.name = "area right", .setting = kFilterAreaProperty}, filter.right);
    decision.fact({.name = "area bottom", .setting = kFilterAreaProperty}, filter.bottom);
    decision.fact({.name = "central left"}, central.left);
    decision.fact({.name = "central top"}, central.top);
    decision.fact({.name = "central right"}, central.right);
    decision.fact({.name = "central bottom"}, central.bottom);
    decision.fact({.name = "orientation"}, orientation);
    decision.record(DecisionRecord::Outcome::Noted, "area-placed"_rule);
}

void recordNavigationBar(bool isPreferred) {
    const DecisionRecorder recorder(kFrontFP);
    const Rule rule = isPreferred ? "navigation-bar-preferred"_rule : "navigation-bar-not-preferred"_rule;
    Decision(recorder).record(DecisionRecord::Outcome::Noted, rule, true);
}

constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::string_view kHexLetters = "abcdef";

/// What longer runs of hexadecimal digits are cut to. No fixed word of the pattern holds a run of this length, so no
/// name gains or loses one; and a run keeps a letter if it has one, since the second number of a name is decimal.
constexpr std::string_view kShortRun = "00000000";
constexpr std::string_view kShortRunWithLetter = "aaaaaaaa";

}  // namespace

const std::regex ZqFrontFPAftProcessor::sNavigationBarPattern(R"(Window\{[0-9a-f]+\su[0-9]+\sNavigationBar\})");

void ZqFrontFPAftProcessor::configureSurface(int width, int height, int orientation) {
    {
        Mutex::Autolock lock(mLock);
        mSurfaceWidth = width;
        mSurfaceHeight = height;
        mSurfaceOrientation = orientation;
    }

    AftArea filterArea;
    {
        Mutex::Autolock lock(sFrontFPLock);
        if (!sAftConfig.areaOn(width, height, filterArea)) {
            LOGE("the filter area configure exceeds the limits!");
            const DecisionRecorder recorder(kFrontFP);
            Decision(recorder).record(DecisionRecord::Outcome::Noted, "area-off"_rule, true);
            sAftConfig.enabled = false;
            return;
        }
    }

    Mutex::Autolock lock(mLock);
    mLandscape = isLandscape(orientation);
    mFilterArea = filterArea;
    mCentralArea = {kCentralBorder, kCentralBorder, width - kCentralBorder, height - kCentralBorder};
    recordAreas(mFilterArea, mCentralArea, orientation);
}

void ZqFrontFPAftProcessor::processInputWindow(const std::vector<sp<InputWindowHandle>>& windows) {
    for (const sp<InputWindowHandle>& window : windows) {
        if (window == nullptr || !isNavigationBar(*window)) continue;

        Mutex::Autolock lock(mLock);
        const bool preferred = mPreferNavigationBar;
        if (!window->visible) {
            mPreferNavigationBar = false;
            if (preferred) {
                LOGI("processInputWindow navigationbar invisible, not prefer touch navigationbar");
                recordNavigationBar(false);
            }
            continue;
        }
        mPreferNavigationBar = barIsNextToSensor(*window);
        if (mPreferNavigationBar != preferred) {
            LOGI("processInputWindow %sprefer touch navigationbar", mPreferNavigationBar ? "" : "not ");
            recordNavigationBar(mPreferNavigationBar);
        }
    }
}

/// The pattern must cover the whole name. It is shown every long run of digits cut short: the library's matcher
/// recurses once per character, and a host may name a window at any length.
bool ZqFrontFPAftProcessor::isNavigationBar(const InputWindowHandle& window) {
    if (window.layoutParamsType != InputWindowHandle::kTypeNavigationBar) return false;

    std::array<char, 64> shortened{};
    size_t length = 0;
    std::string_view rest = window.name;
    while (!rest.empty()) {
        const size_t run = std::min(rest.find_first_not_of(kHexDigits), rest.size());
        const size_t taken = std::max<size_t>(run, 1);
        std::string_view kept = rest.substr(0, taken);
        if (kept.size() > kShortRun.size()) {
            kept = kept.find_first_of(kHexLetters) == std::string_view::npos ? kShortRun : kShortRunWithLetter;
        }
        if (length + kept.size() > shortened.size()) return false;  // the longest that can match takes 40
        kept.copy(&shortened[length], kept.size());
        length += kept.size();
        rest.remove_prefix(taken);
    }
    return std::regex_match(shortened.data(), shortened.data() + length, sNavigationBarPattern);
}

/// Whether a visible navigation bar lies on the sensor's side of the screen. The caller holds mLock.
bool ZqFrontFPAftProcessor::barIsNextToSensor(const InputWindowHandle& bar) const {
    switch (mSurfaceOrientation) {
        case 0: return bar.frameTop < mSurfaceHeight;
        case 1: return bar.frameLeft < mSurfaceHeight;  // the display's width is the surface's height here
        case 2: return bar.frameTop == 0 && bar.frameBottom < mSurfaceHeight;
        default: return false;
    }
}

ZqFrontFPAftProcessor::Surface ZqFrontFPAftProcessor::surface() {
    Mutex::Autolock lock(mLock);
    return {mFilterArea, mCentralArea, mLandscape, mPreferNavigationBar};
}

}  // namespace android

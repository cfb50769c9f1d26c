#include "refhost/play/NotchStory.h"

#include <fmt/format.h>

#include "refhost/play/StoryWords.h"

namespace refhost {

namespace {

bool isLandscape(int32_t orientation) { return orientation == 1 || orientation == 3; }

}  // namespace

using Pointer = android::RawPointerData::Pointer;

void NotchStory::hear(int64_t when, const TraceLine& line, const CallResult& result, Decisions& decisions) {
    constexpr std::string_view kHeight = "notch height:";
    if (const LogEntry* told = lineOf(result, kNotchTag, kHeight)) mHeight = numberAfter(told->text, kHeight);
    if (const auto* surface = std::get_if<ConfigureSurface>(&line.event)) hear(when, *surface, decisions);
    if (const auto* windows = std::get_if<ProcessInputWindow>(&line.event)) hear(when, *windows, decisions);
}

/// Several panels turn together: one of them tells.
void NotchStory::hear(int64_t when, const ConfigureSurface& call, Decisions& decisions) {
    if (call.device) mTurned[*call.device] = call.orientation;
    if (call.orientation == mToldTurned) return;
    mToldTurned = call.orientation;
    decisions.push_back(
        {when, Fate::Noted,
         fmt::format("{}, orientation {}", isLandscape(call.orientation) ? "landscape" : "portrait", call.orientation),
         ""});
}

void NotchStory::hear(int64_t when, const ProcessInputWindow& call, Decisions& decisions) {
    if (!mHeight) return;
    std::string marked;
    for (const WindowDescription& window : call.windows) {
        if (!window.notchArea || !window.visible) continue;
        const auto& [left, top, right, bottom] = window.frame;
        marked += fmt::format("{}{}: {}, {} to {}, {} of the display", marked.empty() ? "" : "; ", window.name, left,
                              top, right, bottom);
    }
    if (marked == mMarked) return;
    mMarked = marked;
    decisions.push_back({when, Fate::Noted, marked.empty() ? "notch-area window gone" : "notch-area window shown",
                         marked.empty() ? "" : fmt::format("({})", marked)});
}

bool NotchStory::landscape(const DeviceRef& device) const {
    const auto turned = device ? mTurned.find(*device) : mTurned.end();
    return turned != mTurned.end() && isLandscape(turned->second);
}

bool NotchStory::covers(const DeviceRef& device, const Pointer& finger) const {
    return mHeight && landscape(device) && 0 <= finger.y && finger.y <= *mHeight;
}

std::string NotchStory::wordsOnTaking() const {
    return fmt::format("(in the notch band, raw y 0 to {}; the notch filter logs nothing)", mHeight.value_or(0));
}

std::string NotchStory::wordsOnPassing(const DeviceRef& device, const Pointer& finger) const {
    if (covers(device, finger)) return "(in the notch band, but in a notch-area window)";
    if (!landscape(device)) return "(no longer held in landscape: the notch filter does not act)";
    return fmt::format("(out of the notch band, raw y 0 to {})", mHeight.value_or(0));
}

}  // namespace refhost

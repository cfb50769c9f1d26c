#include "refhost/report/Scene.h"

#include "refhost/trace/TraceWriter.h"

namespace refhost {

namespace {

constexpr int32_t kNavigationBar = 2019;  ///< layout type

void appendArea(TextBuffer& out, const std::optional<android::AftArea>& area) {
    if (!area) return append(out, "null");
    append(out, FMT_COMPILE("[{},{},{},{}]"), area->left, area->top, area->right, area->bottom);
}

/// The line as a trace has it, without its end.
std::string lineAt(int64_t now, TraceLine line) {
    TextBuffer text;
    line.t = now;
    writeTrace(text, line);
    return {text.data(), text.size() - 1};
}

/// The windows that a filter asks for, and the one in front.
ProcessInputWindow thoseThatMatter(const ProcessInputWindow& call) {
    ProcessInputWindow few;
    few.keyguard = call.keyguard;
    for (uint32_t i = 0; i < call.windows.size(); ++i) {
        const WindowDescription& window = call.windows[i];
        const bool inFront = call.focused == i;
        if (inFront) few.focused = static_cast<uint32_t>(few.windows.size());
        if (inFront || (window.visible && (window.notchArea || window.type == kNavigationBar))) {
            few.windows.push_back(window);
        }
    }
    return few;
}

}  // namespace

void Scene::hear(int64_t now, const TraceLine& line, const CallResult& result) {
    for (const Record& record : result.records) {
        if (record.outcome == RecordOutcome::Noted) place(record);
    }
    if (std::holds_alternative<ConfigureSurface>(line.event)) addSurface(now, line);
    if (const auto* windows = std::get_if<ProcessInputWindow>(&line.event)) addWindows(now, *windows);
    const bool quiet = std::holds_alternative<ProcessRawTouches>(line.event) && !mPlacesNow.empty();
    if (!quiet || !result.log.empty()) addPlaces(now);
}

void Scene::place(const Record& record) {
    const auto value = [&](std::string_view name) {
        const Measurement* measured = find(record.measurements, name);
        return measured != nullptr ? static_cast<int32_t>(measured->value) : 0;
    };
    if (record.rule == "area-placed") {
        mArea = {value("area left"), value("area top"), value("area right"), value("area bottom")};
        mCentralArea = {value("central left"), value("central top"), value("central right"), value("central bottom")};
    } else if (record.rule == "area-off") {
        mArea.reset();
        mCentralArea.reset();
    } else if (record.rule == "navigation-bar-preferred" || record.rule == "navigation-bar-not-preferred") {
        mPrefersNavigationBar = record.rule == "navigation-bar-preferred";
    } else if (record.rule == "notch-surface" && value("landscape") != 0) {
        mNotchBottom[record.device] = value("notch band bottom");
    } else if (record.rule == "notch-surface") {
        mNotchBottom.erase(record.device);
    }
}

void Scene::addSurface(int64_t now, const TraceLine& line) {
    std::string asBefore = lineAt(0, line);
    std::string& known = mSurfaceOf[std::get<ConfigureSurface>(line.event).device];
    if (known == asBefore) return;
    known = std::move(asBefore);
    append(mSurfaces.next(), lineAt(now, line));
}

void Scene::addWindows(int64_t now, const ProcessInputWindow& call) {
    const TraceLine few{0, now, thoseThatMatter(call)};
    std::string asBefore = lineAt(0, few);
    if (mWindowsNow == asBefore) return;
    mWindowsNow = std::move(asBefore);
    append(mWindows.next(), lineAt(now, few));
}

void Scene::addPlaces(int64_t now) {
    TextBuffer places;
    append(places, R"("area":)");
    appendArea(places, mArea);
    append(places, R"(,"central":)");
    appendArea(places, mCentralArea);
    append(places, R"(,"notch":{)");
    char separator = ' ';
    for (const auto& [device, bottom] : mNotchBottom) {
        append(places, FMT_COMPILE(R"({}"{}":{})"), separator, device.value_or(0), bottom);
        separator = ',';
    }
    append(places, FMT_COMPILE(R"(}},"navigationBar":{})"), mPrefersNavigationBar);
    std::string asBefore(places.data(), places.size());
    if (mPlacesNow == asBefore) return;
    mPlacesNow = std::move(asBefore);
    append(mPlaces.next(), FMT_COMPILE(R"({{"time":{},{}}})"), toUs(now), mPlacesNow);
}

void Scene::write(TextBuffer& out) const {
    mSurfaces.write(out, "surfaces");
    out.push_back(',');
    mWindows.write(out, "windows");
    out.push_back(',');
    mPlaces.write(out, "places");
}

}  // namespace refhost

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
    mPhone.hear(line, result);
    if (std::holds_alternative<ConfigureSurface>(line.event)) addSurface(now, line);
    if (const auto* windows = std::get_if<ProcessInputWindow>(&line.event)) addWindows(now, *windows);
    const bool quiet = std::holds_alternative<ProcessRawTouches>(line.event) && !mPlacesNow.empty();
    if (!quiet || !result.log.empty()) addPlaces(now);
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
    appendArea(places, mPhone.area());
    append(places, R"(,"central":)");
    appendArea(places, mPhone.area() ? mPhone.centralArea() : std::nullopt);
    append(places, R"(,"notch":{)");
    char separator = ' ';
    for (const auto& [device, surface] : mSurfaceOf) {
        const auto height = mPhone.notchOn(device);
        if (!height) continue;
        append(places, FMT_COMPILE(R"({}"{}":{})"), separator, *device, *height);
        separator = ',';
    }
    append(places, FMT_COMPILE(R"(}},"navigationBar":{})"), mPhone.prefersNavigationBar());
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

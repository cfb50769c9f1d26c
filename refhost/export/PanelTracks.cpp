#include "refhost/export/PanelTracks.h"

#include <iterator>

#include "refhost/export/DecisionArguments.h"
#include "refhost/export/TrackGroups.h"

namespace refhost {

PanelTracks::Panel& PanelTracks::panelOf(const DeviceRef& device) {
    const auto [known, isNew] = mPanels.try_emplace(device);
    Panel& panel = known->second;
    if (isNew) {
        panel.process = mEvents.addProcess("panel: " + nameOf(mHeader, device), static_cast<int>(TrackGroup::Panel));
        panel.gestures = mEvents.addTrack(panel.process, "gestures");
    }
    return panel;
}

void PanelTracks::onFrame(const ProcessRawTouches& call, const Decisions& decisions) {
    Panel& panel = panelOf(call.device);
    for (auto each = panel.down.begin(); each != panel.down.end();) {
        const bool lifted = !call.ids.hasBit(each->first);
        if (lifted) onLift(each->first, each->second, call.when, decisions);
        each = lifted ? panel.down.erase(each) : std::next(each);
    }
    for (const Decision& decision : decisions) {
        if (decision.outcome == Outcome::Cancelled || decision.outcome == Outcome::Reported) {
            mEvents.addInstant(panel.gestures, decision.when, wordOf(decision.outcome), argumentsOf(decision));
        }
        if (decision.outcome == Outcome::Lost) continue;
        for (const uint32_t id : decision.target.pointers) onFingerDecision(panel, id, decision);
    }
}

/// The first decision about a finger is that of its landing.
void PanelTracks::onFingerDecision(Panel& panel, uint32_t id, const Decision& decision) {
    const auto [known, landed] = panel.down.try_emplace(id);
    Finger& finger = known->second;
    if (landed) {
        finger.track = mEvents.addTrack(panel.process, fmt::format("finger {} (id {})", ++panel.landings, id));
    } else {
        endSlice(finger, decision.when);
    }
    finger.state = decision;
}

void PanelTracks::onLift(uint32_t id, const Finger& finger, int64_t when, const Decisions& decisions) {
    endSlice(finger, when);
    for (const Decision& decision : decisions) {
        if (decision.outcome != Outcome::Lost || !decision.target.pointers.hasBit(id)) continue;
        mEvents.addInstant(finger.track, when, wordOf(decision.outcome), argumentsOf(decision));
    }
}

void PanelTracks::endSlice(const Finger& finger, int64_t when, bool lifted) {
    mEvents.addSlice(finger.track, finger.state.when, when, wordOf(finger.state.outcome),
                     argumentsOf(finger.state, lifted));
}

void PanelTracks::end(int64_t when) {
    for (auto& [device, panel] : mPanels) {
        for (const auto& [id, finger] : panel.down) endSlice(finger, when, false);
        panel.down.clear();
    }
}

}  // namespace refhost

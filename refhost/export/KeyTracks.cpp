#include "refhost/export/KeyTracks.h"

#include "refhost/export/DecisionArguments.h"
#include "refhost/export/TrackGroups.h"

namespace refhost {

/// The key's track, or its second while the key is held back.
const ChromeEvents::Track& KeyTracks::trackOf(const KeyId& key) {
    const bool second = mWaiting && mWaiting->key == key;
    const auto [known, isNew] = mTracks.try_emplace({key, second});
    if (isNew) {
        if (!mProcess) mProcess = mEvents.addProcess("keys", static_cast<int>(TrackGroup::Keys));
        known->second = mEvents.addTrack(
            *mProcess,
            fmt::format("key {} of {}{}", key.second, nameOf(mHeader, key.first), second ? ", while it waits" : ""));
    }
    return known->second;
}

void KeyTracks::onKey(const ProcessKey& call, const Decisions& decisions) {
    const KeyId key{call.device, call.keyCode};
    if (!call.down) onKeyUp(key, call.when);
    for (const Decision& decision : decisions) {
        if (decision.target.key != call.keyCode) continue;
        if (call.down) {
            onKeyDown(key, decision);
        } else {
            mEvents.addInstant(trackOf(key), call.when, wordOf(decision.outcome), argumentsOf(decision));
        }
    }
}

void KeyTracks::onKeyDown(const KeyId& key, const Decision& decision) {
    if (const auto pressed = mPressed.extract(key)) {
        const auto& [track, last] = pressed.mapped();
        mEvents.addInstant(track, last.when, wordOf(last.outcome), argumentsOf(last));
    }
    if (decision.outcome == Outcome::HeldBack) {
        endWait(decision.when, false);
        const ChromeEvents::Track track = trackOf(key);
        mWaiting = {key, {track, decision}};
    } else {
        mPressed[key] = {trackOf(key), decision};
    }
}

void KeyTracks::onKeyUp(const KeyId& key, int64_t when) {
    if (const auto pressed = mPressed.extract(key)) {
        const auto& [track, decision] = pressed.mapped();
        mEvents.addSlice(track, decision.when, when, wordOf(decision.outcome), argumentsOf(decision));
    } else if (mWaiting && mWaiting->key == key) {
        mEvents.addInstant(mWaiting->press.track, when, "key-up", "{}");
    }
}

void KeyTracks::onFrame(const Decisions& decisions) {
    for (const Decision& decision : decisions) {
        const bool endsWait = decision.outcome == Outcome::ReSent || decision.outcome == Outcome::Dropped;
        if (!endsWait || !mWaiting || decision.target.key != mWaiting->key.second) continue;
        mEvents.addInstant(mWaiting->press.track, decision.when, wordOf(decision.outcome), argumentsOf(decision));
        endWait(decision.when, true);
    }
}

void KeyTracks::endWait(int64_t when, bool ended) {
    if (!mWaiting) return;
    const auto& [track, decision] = mWaiting->press;
    mEvents.addSlice(track, decision.when, when, wordOf(decision.outcome), argumentsOf(decision, ended));
    mWaiting.reset();
}

void KeyTracks::end(int64_t when) {
    for (const auto& [key, press] : mPressed) {
        mEvents.addInstant(press.track, press.decision.when, wordOf(press.decision.outcome),
                           argumentsOf(press.decision));
    }
    mPressed.clear();
    endWait(when, false);
}

}  // namespace refhost

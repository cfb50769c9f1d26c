#include "refhost/report/KeyBars.h"

#include <string>

namespace refhost {

void KeyBars::hear(const ProcessKey& call, const std::vector<Explained>& decisions) {
    const Whose whose{call.device, call.keyCode};
    if (!call.down) {
        const auto pressed = mDown.find(whose);
        if (pressed == mDown.end()) return;
        mKeys[pressed->second].up = call.when;
        mDown.erase(pressed);
        return;
    }
    for (const Explained& explained : decisions) {
        if (explained.decision.target.key != call.keyCode) continue;
        mDown.insert_or_assign(whose, mKeys.size());
        if (explained.decision.outcome == Outcome::HeldBack) mWaiting = mKeys.size();
        mKeys.push_back({call.device, call.keyCode, call.when, {}, explained.decision.outcome, {}});
    }
}

void KeyBars::hear(const std::vector<Explained>& decisions) {
    for (const Explained& explained : decisions) {
        const Outcome fate = explained.decision.outcome;
        if (!mWaiting || (fate != Outcome::ReSent && fate != Outcome::Dropped)) continue;
        mKeys[*mWaiting].end = {explained.decision.when, fate};
        mWaiting.reset();
    }
}

void KeyBars::write(TextBuffer& out) const {
    const auto orNull = [](const auto& value) { return value ? std::to_string(*value) : std::string("null"); };
    JsonList all;
    for (const Key& key : mKeys) {
        const std::optional<int64_t> up = key.up ? std::optional(toUs(*key.up)) : std::nullopt;
        TextBuffer& text = all.next();
        append(text, FMT_COMPILE(R"([{},{},{},{},"{}",)"), orNull(key.device), key.code, toUs(key.down), orNull(up),
               wordOf(key.fate));
        if (key.end) {
            append(text, FMT_COMPILE(R"({},"{}"])"), toUs(key.end->first), wordOf(key.end->second));
        } else {
            append(text, "null,null]");
        }
    }
    all.write(out, "keys");
}

}  // namespace refhost

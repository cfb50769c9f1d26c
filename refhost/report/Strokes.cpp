#include "refhost/report/Strokes.h"

#include <algorithm>
#include <cmath>

namespace refhost {

namespace {

/// A path may miss less than half a unit: rounded, its place at a frame is the frame's. On a panel of finer units it
/// may miss a part of the longer side that is an eighth of a pixel on a desk's screen.
constexpr double kLessThanHalf = 0.49;
constexpr double kUnseenPart = 1.0 / 8192;

/// Whether a finger's state is another from this decision on; others speak of how it stays.
bool changes(const Decision& decision, bool landed) {
    switch (decision.outcome) {
        case Outcome::Kept: return landed;
        case Outcome::HeldBack:
        case Outcome::Restored:
        case Outcome::LetThrough:
        case Outcome::Cancelled: return true;
        default: return false;
    }
}

}  // namespace

void Strokes::hear(const ConfigureSurface& call) {
    const double longer = std::max(std::abs(double{1} * call.width), std::abs(double{1} * call.height));
    mTolerances[call.device] = std::max(kLessThanHalf, longer * kUnseenPart);
}

void Strokes::hear(const ProcessRawTouches& call, const std::vector<Explained>& decisions) {
    endLifted(call);
    for (uint32_t id : call.ids) {
        const auto* came = call.frame.find(id);
        if (came == nullptr) continue;
        const auto tolerance = mTolerances.try_emplace(call.device, kLessThanHalf).first->second;
        const auto [known, landed] = mDown.try_emplace({call.device, id}, tolerance);
        Stroke& stroke = known->second;
        const int64_t when = landed ? call.when : std::max(call.when, stroke.last.time);
        stroke.follow({when, static_cast<double>(came->x), static_cast<double>(came->y)});
    }
    for (const Explained& explained : decisions) {
        for (uint32_t id : explained.decision.target.pointers) {
            const auto whose = mDown.find({call.device, id});
            if (whose != mDown.end()) whose->second.turn(explained.decision);
        }
    }
}

void Strokes::Stroke::follow(const PathPoint& point) {
    keep(thinner.add(point));
    last = point;
}

void Strokes::Stroke::turn(const Decision& decision) {
    if (!changes(decision, states.empty())) return;
    keep(thinner.end());  // where a state begins, the path has a point
    if (!states.empty() && states.back().first == last.time) {
        states.back().second = decision.outcome;
    } else {
        states.emplace_back(last.time, decision.outcome);
    }
}

void Strokes::endLifted(const ProcessRawTouches& call) {
    for (auto each = mDown.begin(); each != mDown.end();) {
        const bool lifted = each->first.first == call.device && !call.ids.hasBit(each->first.second);
        if (!lifted) {
            ++each;
            continue;
        }
        each->second.keep(each->second.thinner.end());
        write(mEnded.next(), each->first, each->second, std::max(call.when, each->second.last.time));
        each = mDown.erase(each);
    }
}

void Strokes::write(TextBuffer& out, const Whose& whose, const Stroke& stroke, std::optional<int64_t> lift) {
    append(out, whose.first ? fmt::format("[{}", *whose.first) : "[null");
    append(out, FMT_COMPILE(",{},{},["), whose.second, lift ? std::to_string(toUs(*lift)) : "null");
    PathPoint before;
    for (const PathPoint& point : stroke.points) {
        append(out, FMT_COMPILE("{}{},{},{}"), &point == stroke.points.data() ? "" : ",",
               toUs(point.time) - toUs(before.time), point.x - before.x, point.y - before.y);
        before = point;
    }
    append(out, "],[");
    for (const auto& state : stroke.states) {
        append(out, FMT_COMPILE(R"({}{},"{}")"), &state == stroke.states.data() ? "" : ",", toUs(state.first),
               wordOf(state.second));
    }
    append(out, "]]");
}

void Strokes::write(TextBuffer& out) const {
    JsonList all;
    if (!mEnded.elements().empty()) append(all.next(), mEnded.elements());
    for (const auto& [whose, stroke] : mDown) {
        Stroke soFar = stroke;
        soFar.keep(soFar.thinner.end());
        write(all.next(), whose, soFar, std::nullopt);
    }
    all.write(out, "strokes");
}

}  // namespace refhost

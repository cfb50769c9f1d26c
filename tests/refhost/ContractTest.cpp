#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "refhost/check/Contract.h"
#include "refhost/play/Player.h"
#include "tests/support/Finger.h"

namespace refhost {
namespace {

using android::NotifyKeyArgs;
using test::finger;
using test::Fingers;
using test::frameOf;
using test::kStylusDirty;

constexpr int64_t kMs = 1'000'000;
constexpr int32_t kPanel = 3;
constexpr int32_t kSensor = 5;

ProcessRawTouches touch(int64_t ms, const Fingers& fingers) {
    const android::RawPointerData frame = frameOf(fingers);
    return {kPanel, ms * kMs, frame, frame.touchingIdBits};
}
TraceEvent key(int64_t ms, int32_t code, bool down = true) { return ProcessKey{kSensor, ms * kMs, code, 7, down}; }
TraceEvent cover(int64_t ms, float state) { return SensorEvent{65557, 7, ms * kMs, {1, state}}; }

/// What a finger of a result has become: as if the plug-in had let it out so.
android::RawPointerData::Pointer& first(CallResult& result) { return result.frame.frame.pointers[0]; }
/// Changes a result as if the front fingerprint filter had logged this line.
auto logged(const char* text) {
    return [text](CallResult& result) { result.log.push_back({4, "ZqFrontFPAftProcessor", text}); };
}
/// Changes a result as if the plug-in had reported these events and no others.
auto reported(const std::vector<Report>& reports) {
    return [reports](CallResult& result) { result.requests.reports = reports; };
}

struct Doctored {
    const char* rule;
    std::vector<TraceEvent> lines;          ///< played as they are
    std::function<void(CallResult&)> turn;  ///< makes a breach of what came back from the last one
};

const auto kNear = finger(0).at(540, 2200);
// What is allowed comes as late, as soon and as far sideways as it just may.
const std::vector<TraceEvent> kTwoKept = {touch(100, {finger(3).at(1, 2), finger(1).at(5, 6)})};
const std::vector<TraceEvent> kHeldBack = {key(1, 516), touch(100, {kNear}), touch(120, {kNear.at(540, 2170)})};
const std::vector<TraceEvent> kRestored = {key(1, 516), touch(100, {kNear}), touch(1100, {kNear.at(740, 2150)})};
const std::vector<TraceEvent> kKeyHeld = {touch(100, {kNear}), key(150, 601)};
const std::vector<TraceEvent> kKeySent = {touch(100, {kNear}), key(150, 601), touch(151, {})};
const std::vector<TraceEvent> kDirty = {touch(100, {finger(0).at(5, 6).flagged(kStylusDirty)})};
const std::vector<TraceEvent> kCoverMoved = {NotifyInputStart{}, cover(10, 0), touch(100, {finger(0)}), cover(110, 2),
                                             touch(120, {finger(0)})};

std::vector<TraceEvent> then(std::vector<TraceEvent> lines, const TraceEvent& last) {
    lines.push_back(last);
    return lines;
}

const Doctored kDoctored[] = {
    {"frame-adds", kHeldBack, [](CallResult& result) { result.frame.ids.markBit(4); }},
    {"frame-adds", kTwoKept, [](CallResult& result) { result.frame.frame.hoveringIdBits.markBit(1); }},
    {"frame-adds", kTwoKept, [](CallResult& result) { ++result.frame.frame.pointerCount; }},
    {"frame-order", kTwoKept, [](CallResult& result) { std::swap(first(result), result.frame.frame.pointers[1]); }},
    {"frame-order", kRestored, [](CallResult& result) { first(result).axes[1] = 9; }},
    {"frame-index", kTwoKept, [](CallResult& result) { result.frame.frame.idToIndex[3] = 1; }},
    {"frame-sets", kTwoKept, [](CallResult& result) { result.frame.ids.clearBit(1); }},
    {"frame-sets", kTwoKept, [](CallResult& result) { result.frame.frame.touchingIdBits.clearBit(1); }},
    {"frame-altered", kTwoKept, [](CallResult& result) { ++first(result).x; }},
    {"frame-altered", kRestored, [](CallResult& result) { ++first(result).y; }},
    {"frame-altered", kRestored, [](CallResult& result) { first(result).extraData = 1; }},
    {"frame-altered", then(kRestored, touch(1120, {kNear.at(540, 2140)})),
     [](CallResult& result) { first(result).y = 2200; }},
    {"key-answer", {key(100, 518)}, [](CallResult& result) { result.keyResult = 0; }},
    {"key-answer", {key(100, 520)}, [](CallResult& result) { result.keyResult = 1; }},
    {"key-answer", {key(100, 501), key(110, 501, false)}, [](CallResult& result) { result.keyResult = 1; }},
    {"key-answer", then(kKeyHeld, key(160, 601, false)), [](CallResult& result) { result.keyResult = 0; }},
    {"key-held", kKeyHeld, [](CallResult& result) { result.keyResult = 0; }},
    {"key-held", then(kKeyHeld, key(155, 513)), logged("delayDispatchKey delay dispatch the key:513")},
    {"key-sent", kKeySent, [](CallResult& result) { result.frame.keys.clear(); }},
    {"key-sent", kKeySent, [](CallResult& result) { result.frame.keys[1].scanCode = 8; }},
    {"key-sent", kKeySent, [](CallResult& result) { std::swap(result.frame.keys[0], result.frame.keys[1]); }},
    {"key-sent", kTwoKept, [](CallResult& result) { result.frame.keys.resize(2); }},
    {"cancel-told", kDirty, [](CallResult& result) { result.requests.cancelled.clear(); }},
    {"cancel-told", kDirty, [](CallResult& result) { result.requests.cancelled[0] = 0; }},
    {"cancel-told", {key(100, 518)}, [](CallResult& result) { result.requests.cancelled = {100 * kMs}; }},
    {"cancel-again", then(kDirty, touch(120, {finger(0).at(5, 6).flagged(kStylusDirty)})),
     logged("Cancel abnormal touch seq for pointerCount=1")},
    {"report", then(kCoverMoved, touch(140, {finger(0)})),
     [](CallResult& result) {
         result.frame.frame.touchingIdBits.clear();
         result.requests.reports.resize(2, {651, ""});
     }},
    {"report", then(kCoverMoved, touch(140, {})), reported({{650, ""}})},
    {"report", {touch(100, {})}, reported({{651, ""}})},
};

// A plug-in that loses a key, moves a finger or cancels twice would pass the check; or a good one would fail it.
TEST(Contract, KnowsABreachFromWhatIsAllowed) {
    TraceHeader header;
    header.properties = {{"ro.zqaft.tpfp.filter_area", "400,2100,680,2340"}, {"ro.config.zq_hall_prop", "1"}};
    header.devices = {{kPanel, "panel"}, {kSensor, "fingerprint"}};
    header.sensors = {{65557, 7}};
    Player player(header, ZQAFT_PLUGIN_UNDER_TEST);
    Contract contract(header);
    TraceLine line;
    const auto play = [&](int64_t now, const TraceEvent& event) -> const CallResult& {
        line = {line.line + 1, now, event};
        if (auto* frame = std::get_if<ProcessRawTouches>(&line.event)) line.t = frame->when += now;
        if (auto* pressed = std::get_if<ProcessKey>(&line.event)) line.t = pressed->when += now;
        if (auto* moved = std::get_if<SensorEvent>(&line.event)) line.t = moved->timestamp += now;
        return player.play(line);
    };
    contract.hear(line, play(0, ConfigureSurface{kPanel, 1080, 2340}));
    int64_t now = 0;
    for (const Doctored& doctored : kDoctored) {
        SCOPED_TRACE(fmt::format("{}, row {}", doctored.rule, &doctored - kDoctored));
        now += 10'000 * kMs;
        CallResult result;
        Contract strict = contract;
        for (const TraceEvent& event : doctored.lines) {
            result = play(now, event);
            strict = contract;
            contract.hear(line, result);
        }
        ASSERT_TRUE(contract.breaches().empty()) << contract.breaches().front().text;
        doctored.turn(result);
        strict.hear(line, result);
        EXPECT_TRUE(std::any_of(strict.breaches().begin(), strict.breaches().end(), [&](const Breach& breach) {
            return breach.rule == doctored.rule && breach.line == line.line;
        }));
        const CallResult& lifted = play(now, touch(9'000, {}));
        contract.hear(line, lifted);
    }
}

}  // namespace
}  // namespace refhost

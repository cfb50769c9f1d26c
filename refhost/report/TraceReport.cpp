#include "refhost/report/TraceReport.h"

#include <algorithm>

#include "refhost/explain/ExplainedWriter.h"
#include "refhost/explain/RuleMeaning.h"
#include "refhost/report/Page.h"

namespace refhost {

namespace {

/// Text inside a script element must not end it, nor open a comment.
void appendForScript(TextBuffer& out, std::string_view json) {
    for (size_t from = 0; from < json.size();) {
        const size_t sign = std::min(json.find('<', from), json.size());
        append(out, json.substr(from, sign - from));
        if (sign < json.size()) append(out, "\\u003c");
        from = sign + 1;
    }
}

/// A browser lets nothing into the page, or out of it, whatever a trace may hold.
constexpr std::string_view kReachesForNothing =
    R"(<meta http-equiv="Content-Security-Policy" content="default-src 'none'; )"
    R"(script-src 'unsafe-inline'; style-src 'unsafe-inline'">)"
    "\n";

/// ns. A trace may hold any times: a difference that does not fit wraps around, and tells nothing.
int64_t since(int64_t then, int64_t now) {
    return static_cast<int64_t>(static_cast<uint64_t>(now) - static_cast<uint64_t>(then));
}

void appendForHtml(TextBuffer& out, std::string_view text) {
    for (const char sign : text) {
        switch (sign) {
            case '<': append(out, "&lt;"); break;
            case '&': append(out, "&amp;"); break;
            default: out.push_back(sign);
        }
    }
}

}  // namespace

void TraceReport::hear(const TraceLine& line, const CallResult& result) {
    if (line.t) mClock = line.t;
    const int64_t now = mClock.value_or(0);
    const std::vector<Explained>& decisions = mExplainer.onLine(line, result);
    mScene.hear(now, line, result);
    std::optional<int64_t> when = mClock;
    if (const auto* frame = std::get_if<ProcessRawTouches>(&line.event)) {
        when = frame->when;
        hearFrame(*frame, decisions);
    } else if (const auto* key = std::get_if<ProcessKey>(&line.event)) {
        when = key->when;
        mKeys.hear(*key, decisions);
    } else if (const auto* sample = std::get_if<SensorEvent>(&line.event)) {
        mSensors.hear(now, *sample);
    } else if (const auto* surface = std::get_if<ConfigureSurface>(&line.event)) {
        mStrokes.hear(*surface);
    }
    if (when) mFirst = std::min(mFirst.value_or(*when), *when);
    mLast = std::max(mLast, when.value_or(0));
    for (const Explained& explained : decisions) {
        writeExplained(mDecisions.next(), "decision", explained);
        if (!meaningOf(explained.decision.rule).empty()) mRules.insert(explained.decision.rule);
    }
}

void TraceReport::hearFrame(const ProcessRawTouches& call, const std::vector<Explained>& decisions) {
    mStrokes.hear(call, decisions);
    mKeys.hear(decisions);
    if (mLastFrame) mBetweenFrames.add(since(*mLastFrame, call.when));
    mLastFrame = call.ids.isEmpty() ? std::nullopt : std::optional(call.when);
}

void TraceReport::writeSummary(TextBuffer& out) const {
    const Summary all = summary();
    append(out, FMT_COMPILE(R"("summary":{{"frames":{},"fingers":)"), all.frames);
    appendJson(out, all.fingers.text());
    append(out, FMT_COMPILE(R"(,"pointersJudged":{},"pointersRemoved":{},)"), all.pointersJudged, all.pointersRemoved);
    append(out, FMT_COMPILE(R"("gesturesCancelled":{},"reports":{},"keysConsumed":{},)"), all.gesturesCancelled,
           all.reports, all.keysConsumed);
    append(out, FMT_COMPILE(R"("keysHeldBack":{},"keysReSent":{},"keysDropped":{},"keysDispatched":{},)"),
           all.keysHeldBack, all.keysReSent, all.keysDropped, all.keysDispatched);
    append(out, R"("filterOff":)");
    appendJson(out, all.filterOff);
    out.push_back('}');
}

/// Whoever reads the page has no other document at hand.
void TraceReport::writeRules(TextBuffer& out) const {
    append(out, R"("rules":)");
    appendJsonArray(out, mRules, [&](std::string_view rule) {
        out.push_back('[');
        appendJson(out, rule);
        out.push_back(',');
        appendJson(out, meaningOf(rule));
        out.push_back(']');
    });
}

void TraceReport::writeData(TextBuffer& out, std::string_view name) const {
    append(out, R"({"name":)");
    appendJson(out, name);
    append(out, FMT_COMPILE(R"(,"span":[{},{}],"frameInterval":{},)"), toUs(mFirst.value_or(0)),
           toUs(std::max(mLast, mFirst.value_or(0))), toUs(mBetweenFrames.percentile(0.5)));
    append(out, R"("note":)");
    appendJson(out, mHeader.note);
    append(out, R"(,"properties":)");
    appendJsonArray(out, mHeader.properties, [&](const auto& property) {
        out.push_back('[');
        appendJson(out, property.first);
        out.push_back(',');
        appendJson(out, property.second);
        out.push_back(']');
    });
    append(out, R"(,"devices":)");
    appendJsonArray(out, mHeader.devices, [&](const DeviceDescription& device) {
        append(out, FMT_COMPILE(R"({{"id":{},"name":)"), device.id);
        appendJson(out, device.name);
        out.push_back('}');
    });
    out.push_back(',');
    writeSummary(out);
    out.push_back(',');
    mScene.write(out);
    out.push_back(',');
    mStrokes.write(out);
    out.push_back(',');
    mKeys.write(out);
    out.push_back(',');
    mSensors.write(out);
    out.push_back(',');
    writeRules(out);
    out.push_back(',');
    mDecisions.write(out, "decisions");
    out.push_back('}');
}

void TraceReport::writePage(TextBuffer& out, std::string_view name) const {
    TextBuffer data;
    writeData(data, name);
    append(out, "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>");
    appendForHtml(out, name);
    append(out, "</title>\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n");
    append(out, kReachesForNothing);
    append(out, "<style>\n");
    append(out, kPageStyle);
    append(out, "</style>\n</head>\n");
    append(out, kPageBody);
    append(out, "<script type=\"application/json\" id=\"data\">");
    appendForScript(out, {data.data(), data.size()});
    append(out, "</script>\n<script type=\"module\">\n");
    append(out, kPageScript);
    append(out, "</script>\n</html>\n");
}

}  // namespace refhost

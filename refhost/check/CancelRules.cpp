#include "refhost/check/CancelRules.h"

#include <fmt/format.h>

#include <algorithm>

#include "refhost/play/LogLines.h"

namespace refhost {

namespace {

constexpr int32_t kReportEvent = 651;

}  // namespace

void CancelRules::check(const Switches& on, const ProcessRawTouches& call, const CallResult& result,
                        Breaches& breaches) {
    const size_t abnormal = countLines(result, kFrontFpTag, "Cancel abnormal touch seq for ");
    const size_t front = abnormal + countLines(result, kFrontFpTag, "this touch may caused by ", ", cancel it");
    const size_t cover = countLines(result, kCoverTag, "mCurState.state=", "need to cancel touch.");
    const size_t foldLines = countLines(result, kFoldTag, "cancel touch during folding the device.");
    const size_t fold = foldLines - std::min<size_t>(foldLines, 1);  // each frame that it empties has one of its own
    const bool cameEmpty = call.frame.touchingIdBits.isEmpty();
    const bool wentEmpty = result.frame.frame.touchingIdBits.isEmpty();
    const auto breach = [&](std::string_view rule, std::string text) {
        breaches.push_back({result.line, rule, std::move(text)});
    };

    const auto& cancelled = result.requests.cancelled;
    const size_t told = call.device ? front + cover + fold : 0;
    if (cancelled.size() != told) {
        breach("cancel-told", fmt::format("{} cancels; expected {}, as the log tells", cancelled.size(), told));
    }
    if (std::any_of(cancelled.begin(), cancelled.end(), [&](int64_t when) { return when != call.when; })) {
        breach("cancel-told", fmt::format("a cancel at {}; expected the frame's time", cancelled.front()));
    }

    const auto checkAgain = [&](std::string_view filter, size_t now, bool& before) {
        if (now > (before ? 0U : 1U)) breach("cancel-again", fmt::format("{} cancels a gesture again", filter));
        before = before || now > 0;
    };
    // The touch side, where it is on, has seen a lift-off before the same frame is looked at for abnormal touches.
    if (cameEmpty && (on.area || front == 0)) mFront = false;
    checkAgain("the front fingerprint filter", front, mFront);
    checkAgain("the slide cover's filter", cover, mCover);
    checkAgain("the fold angle's filter", fold, mFold);
    checkReports(result, mReportable && wentEmpty && cover == 0, breaches);
    mReportable = cover > 0 || (mReportable && result.requests.reports.empty() && !cameEmpty);

    // Who has seen a lift-off in what the filters before it left, or may have. The frames that a filter empties itself
    // are none to it; of those before the slide cover's, the touch side alone takes fingers out.
    if (wentEmpty && on.abnormal && abnormal == 0) mFront = false;
    if (cameEmpty || (wentEmpty && on.area && cover == 0)) mCover = false;
    if (wentEmpty && foldLines == 0) mFold = false;
}

void CancelRules::checkReports(const CallResult& result, bool mayReport, Breaches& breaches) {
    const auto& reports = result.requests.reports;
    if (reports.size() > (mayReport ? 1U : 0U)) {
        breaches.push_back(
            {result.line, "report",
             fmt::format("{} reports; expected {}", reports.size(), mayReport ? "at most one" : "none")});
    }
    for (const Report& report : reports) {
        if (report.event == kReportEvent) continue;
        breaches.push_back({result.line, "report", fmt::format("event {}; expected {}", report.event, kReportEvent)});
    }
}

void CancelRules::checkNone(const CallResult& result, Breaches& breaches) {
    if (!result.requests.cancelled.empty()) {
        breaches.push_back({result.line, "cancel-told", "a cancel outside of a frame"});
    }
    checkReports(result, false, breaches);
}

}  // namespace refhost

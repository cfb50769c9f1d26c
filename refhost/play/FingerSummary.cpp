#include "refhost/play/FingerSummary.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace refhost {

namespace {

int64_t toMs(int64_t ns) { return ns / 1'000'000; }

std::string lateText(const std::vector<int64_t>& late) {
    const auto [least, most] = std::minmax_element(late.begin(), late.end());
    if (toMs(*least) == toMs(*most)) return fmt::format("{} ms late", toMs(*most));
    return fmt::format("{} to {} ms late", toMs(*least), toMs(*most));
}

}  // namespace

void FingerSummary::add(FingerFate fate, int64_t late) {
    switch (fate) {
        case FingerFate::Kept: ++kept; break;
        case FingerFate::Restored: restoredLate.push_back(late); break;
        case FingerFate::LetThrough: letThroughLate.push_back(late); break;
        case FingerFate::Lost: ++lost; break;
        case FingerFate::Cancelled: ++cancelled; break;
        case FingerFate::Interrupted: ++interrupted; break;
    }
}

std::string FingerSummary::text() const {
    std::string text = fmt::format("{}", total());
    char separator = ':';
    const auto add = [&](uint64_t count, std::string_view what, const std::string& detail) {
        if (count == 0) return;
        text += fmt::format("{} {} {}{}", separator, count, what, detail);
        separator = ',';
    };
    const auto addLate = [&](const std::vector<int64_t>& late, std::string_view what) {
        if (!late.empty()) add(late.size(), what, fmt::format(" ({})", lateText(late)));
    };
    add(kept, "kept", "");
    addLate(restoredLate, "restored");
    addLate(letThroughLate, "let through");
    add(lost, "lost", "");
    add(cancelled, "cancelled", "");
    add(interrupted, "interrupted", "");
    return text;
}

}  // namespace refhost

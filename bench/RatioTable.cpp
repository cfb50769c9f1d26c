#include "bench/RatioTable.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace bench {

namespace {

constexpr int kFingers[] = {1, 2, 5, 10};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

RatioTable::RatioTable() : ConsoleReporter(isatty(STDOUT_FILENO) != 0 ? OO_ColorTabular : OO_Tabular) {}

void RatioTable::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
        mTimes[run.run_name.function_name + "/" + run.run_name.args].push_back(run.GetAdjustedCPUTime());
    }
    ConsoleReporter::ReportRuns(runs);
}

void RatioTable::Finalize() {
    const auto timeOf = [this](const std::string& measure, int fingers) -> std::optional<double> {
        const auto found = mTimes.find(measure + "/" + std::to_string(fingers));
        if (found == mTimes.end()) return std::nullopt;
        return median(found->second);
    };
    const auto slopeOf = [&](const std::string& measure) { return *timeOf(measure, 10) - *timeOf(measure, 1); };
    for (const char* measure : {"floor", "frame_all", "frame_near", "frame_off"}) {
        for (const int fingers : kFingers) {
            if (!timeOf(measure, fingers)) return;  // not all of them were asked for
        }
    }
    std::printf("\nagainst the floor %7d %7d %7d %7d fingers   slope\n", kFingers[0], kFingers[1], kFingers[2],
                kFingers[3]);
    for (const char* measure : {"frame_all", "frame_near", "frame_off"}) {
        std::printf("%-17s", measure);
        for (const int fingers : kFingers) std::printf(" %7.2f", *timeOf(measure, fingers) / *timeOf("floor", fingers));
        std::printf("         %7.2f\n", slopeOf(measure) / slopeOf("floor"));
    }
}

}  // namespace bench

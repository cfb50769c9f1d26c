#include "bench/Table.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace bench {

namespace {

constexpr int kFingers[] = {1, 2, 5, 10};

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double fastest(const std::vector<double>& times) { return *std::min_element(times.begin(), times.end()); }
double slowest(const std::vector<double>& times) { return *std::max_element(times.begin(), times.end()); }

}  // namespace

bool Table::ReportContext(const Context& context) {
    mShowsProgress = isatty(STDERR_FILENO) != 0;
    fmt::print("{} processors of {} MHz\n\n{:<28}{:>12}{:>11}  counters\n", context.cpu_info.num_cpus,
               context.cpu_info.cycles_per_second / 1e6, "measure", "fastest", "slowest");
    std::fflush(stdout);
    return true;
}

void Table::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration) continue;
        Measure& measure = mMeasures[{run.family_index, run.per_family_instance_index}];
        measure.name = run.run_name.function_name;
        if (!run.run_name.args.empty()) measure.name += "/" + run.run_name.args;
        measure.unit = benchmark::GetTimeUnitString(run.time_unit);
        if (run.error_occurred) {
            measure.error = run.error_message;
            continue;
        }
        measure.onTheClock = !run.run_name.time_type.empty();
        measure.times.push_back(measure.onTheClock ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime());
        for (const auto& [name, counter] : run.counters) measure.counters[name].push_back(counter.value);
        if (mShowsProgress)
            fmt::print(stderr, "\r\x1b[K{} ({} of {})", measure.name, run.repetition_index + 1, run.repetitions);
    }
}

void Table::Finalize() {
    if (mShowsProgress) fmt::print(stderr, "\r\x1b[K");
    for (const auto& [place, measure] : mMeasures) print(measure);
    printRatios();
}

void Table::print(const Measure& measure) {
    if (!measure.error.empty()) {
        fmt::print("{:<28}failed: {}\n", measure.name, measure.error);
        return;
    }
    fmt::print("{:<28}{:>9.1f} {:<2}{:>+9.1f} %{}", measure.name, fastest(measure.times), measure.unit,
               100 * (slowest(measure.times) / fastest(measure.times) - 1), measure.onTheClock ? "  on the clock" : "");
    for (const auto& [name, values] : measure.counters) fmt::print("  {} {:.6g}", name, median(values));
    fmt::print("\n");
}

const Table::Measure* Table::find(const std::string& name) const {
    const auto same = [&](const auto& entry) { return entry.second.name == name && !entry.second.times.empty(); };
    const auto found = std::find_if(mMeasures.begin(), mMeasures.end(), same);
    return found != mMeasures.end() ? &found->second : nullptr;
}

void Table::printRatios() const {
    const auto timeOf = [this](const std::string& measure, int fingers) {
        return fastest(find(measure + "/" + std::to_string(fingers))->times);
    };
    const auto slopeOf = [&](const std::string& measure) { return timeOf(measure, 10) - timeOf(measure, 1); };
    const char* const frames[] = {"frame_all", "frame_near", "frame_off"};
    for (const std::string measure : {"floor", "frame_all", "frame_near", "frame_off"}) {
        for (const int fingers : kFingers) {
            if (find(measure + "/" + std::to_string(fingers)) == nullptr) return;  // not all of them were asked for
        }
    }
    fmt::print("\n{:<20}", "against the floor");
    for (const int fingers : kFingers) fmt::print("{:>8}", fingers);
    fmt::print(" fingers{:>8}\n", "slope");
    for (const char* measure : frames) {
        fmt::print("{:<20}", measure);
        for (const int fingers : kFingers) fmt::print("{:>8.2f}", timeOf(measure, fingers) / timeOf("floor", fingers));
        fmt::print("        {:>8.2f}\n", slopeOf(measure) / slopeOf("floor"));
    }
}

}  // namespace bench

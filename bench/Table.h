#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// A line for each measure: the fastest of its repetitions, how much longer the slowest took, and its counters. At the
/// end, how the frames compare with the floor of the same run, fastest with fastest, and how steeply each grows from
/// one finger to ten. On a shared machine the fastest is what the others have disturbed least.
/// Times are those of the processor, but where a measure is of another process or of the disk: those are on the clock.
class Table : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

  private:
    struct Measure {
        std::string name;  ///< with its argument: "floor/10"
        std::string unit;
        bool onTheClock = false;
        std::vector<double> times;  ///< one of each repetition, in `unit`
        std::map<std::string, std::vector<double>> counters;
        std::string error;
    };
    using Place = std::pair<int64_t, int64_t>;  ///< in the order in which the measures were registered

    static void print(const Measure& measure);
    void printRatios() const;
    const Measure* find(const std::string& name) const;

    std::map<Place, Measure> mMeasures;
    bool mShowsProgress = false;
};

}  // namespace bench

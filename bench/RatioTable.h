#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

/// Prints the usual table and, at the end, how the frames compare with the floor of the same run: the median of each
/// measure's CPU times over that of the floor, and how steeply each grows from one finger to ten.
class RatioTable : public benchmark::ConsoleReporter {
  public:
    /// Colours where standard output is a terminal.
    RatioTable();

    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

  private:
    std::map<std::string, std::vector<double>> mTimes;  ///< ns, by the measure's name with its argument
};

}  // namespace bench

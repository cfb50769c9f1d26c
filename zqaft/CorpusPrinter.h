#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "zqaft/CorpusRow.h"
#include "zqaft/Output.h"

namespace zqaft {

/// Writes what came of a corpus for people: a table as it comes, then totals, then what has changed or is broken.
class CorpusPrinter {
  public:
    /// @param traces all that will be printed: their names make the first column
    CorpusPrinter(Output& out, const std::vector<refhost::FoundTrace>& traces, bool colours);

    /// A row of the table; the first one goes below the table's head.
    void print(const CorpusRow& row);
    /// @param ns how long the whole run took
    void printTotals(int64_t ns);
    /// How many of the traces have no verdicts beside them.
    size_t unwritten() const { return mNew; }

  private:
    void printCounts(const std::string& name, const refhost::PlayedTrace::Counts& counts, size_t breaches, int64_t ns);
    void keepDetails(const CorpusRow& row);

    Output& mOut;
    size_t mNameWidth;
    bool mColours;
    refhost::PlayedTrace::Counts mCounts;
    size_t mBreaches = 0;
    size_t mChanged = 0;  ///< verdicts
    size_t mTraces = 0;   ///< and of these:
    size_t mNew = 0;
    size_t mUpdated = 0;
    size_t mFailed = 0;
    refhost::TextBuffer mChanges;
    refhost::TextBuffer mFaults;
};

/// Writes the same for programs: a line of JSON for each trace.
void writeJson(refhost::TextBuffer& out, const CorpusRow& row);

}  // namespace zqaft

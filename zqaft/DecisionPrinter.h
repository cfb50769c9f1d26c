#pragma once

#include "refhost/play/DecisionLog.h"
#include "zqaft/Output.h"

namespace zqaft {

/// Writes decisions for people: a line for each, then the summary.
class DecisionPrinter {
  public:
    DecisionPrinter(Output& out, bool colours) : mOut(out), mColours(colours) {}

    void print(const refhost::Decision& decision);
    void print(const refhost::Summary& summary);

  private:
    Output& mOut;
    bool mColours;
};

/// Whether standard output is a terminal whose user has not turned colours off with NO_COLOR.
bool wantsColours();

}  // namespace zqaft

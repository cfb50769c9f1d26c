#pragma once

#include "refhost/play/Story.h"
#include "zqaft/Output.h"

namespace zqaft {

/// Writes a story for people: a line per decision, then the summary.
class StoryPrinter {
  public:
    StoryPrinter(Output& out, bool colours) : mOut(out), mColours(colours) {}

    void print(const refhost::Decision& decision);
    void print(const refhost::Summary& summary);

  private:
    Output& mOut;
    bool mColours;
};

/// Whether standard output is a terminal whose user has not turned colours off with NO_COLOR.
bool wantsColours();

}  // namespace zqaft

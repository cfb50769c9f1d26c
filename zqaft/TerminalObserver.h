#pragma once

#include "refhost/play/Playback.h"
#include "zqaft/Output.h"
#include "zqaft/Progress.h"

namespace zqaft {

/// Shows progress while a trace is played, and what has been written before the next line has to be waited for.
class TerminalObserver : public refhost::PlaybackObserver {
  public:
    /// @param out may be null: nothing is written before the end
    explicit TerminalObserver(Output* out) : mOut(out) {}

    void afterLine(uint64_t lines, refhost::TraceSource& source) override {
        if (mOut != nullptr && source.wouldWait()) mOut->flush();
        if (mProgress.due(lines)) mProgress.at(lines, source.progress());
    }
    /// Before something is written: it may go to the same terminal.
    void makeRoom() {
        if (mOut != nullptr && mOut->isTerminal()) mProgress.clear();
    }
    void end() { mProgress.clear(); }

  private:
    Output* mOut;
    Progress mProgress;
};

}  // namespace zqaft

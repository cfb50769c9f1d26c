#pragma once

#include <string>

#include "refhost/corpus/ChildProcesses.h"
#include "refhost/corpus/FindTraces.h"
#include "refhost/corpus/PlayedTrace.h"
#include "refhost/corpus/VerdictFile.h"

namespace zqaft {

/// How the verdicts of a trace stand to those in the file beside it.
enum class Standing {
    Ok,       ///< they are the same
    New,      ///< there is no file
    Changed,  ///< some differ
    Updated,  ///< the file has been written
    Faulty,   ///< the trace cannot be played to its end, or the file cannot be read
    Crashed,  ///< the process that played the trace has not come to its end
};

/// A trace of a corpus, and what came of it.
struct CorpusRow {
    refhost::FoundTrace trace;
    refhost::PlayedTrace played;  ///< without counts or verdicts where it failed
    Standing standing = Standing::Ok;
    refhost::Changes changes;  ///< also those that have been written
    std::string fault;         ///< where it failed: one sentence that names the file

    bool failed() const { return standing == Standing::Faulty || standing == Standing::Crashed; }
};

/// Judges how a child that played `trace` has ended. Holds its verdicts against those in the file beside the trace, and
/// with `update` writes that file where it differs. Throws refhost::PluginError where there is no plug-in for this
/// trace, and thus for none, and OutputError where the file cannot be written.
CorpusRow judge(const refhost::FoundTrace& trace, const refhost::ChildProcesses::Ended& ended, bool update);

}  // namespace zqaft

#include "refhost/trace/TraceWriter.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"
#include "zqaft/Progress.h"

namespace zqaft {

int import(const ImportOptions& options) {
    const std::unique_ptr<refhost::TraceSource> source = openRecording(options.input, options.profile, options.device);
    Output out;
    Progress progress;
    refhost::writeTrace(out.text(), source->header());
    refhost::TraceLine line;
    for (uint64_t lines = 0; source->next(line); ++lines) {
        refhost::writeTrace(out.text(), line);
        out.offer();
        if (progress.due(lines)) progress.at(lines, source->progress());
    }
    out.flush();
    say(source->leftOut());
    return kDone;
}

}  // namespace zqaft

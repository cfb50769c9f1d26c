#include "refhost/play/Player.h"
#include "refhost/play/ResultWriter.h"
#include "refhost/play/Story.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"
#include "zqaft/Progress.h"
#include "zqaft/StoryPrinter.h"

namespace zqaft {

int replay(const ReplayOptions& options) {
    const std::unique_ptr<refhost::TraceSource> source = openPlayed(options);
    Output out;
    refhost::Player player(source->header(), pluginOr(options.plugin));
    refhost::Story story;
    StoryPrinter printer(out, wantsColours());
    Progress progress;

    refhost::TraceLine line;
    for (uint64_t lines = 0; source->next(line); ++lines) {
        const refhost::CallResult& result = player.play(line);
        if (options.json) {
            refhost::writeResult(out.text(), result);
            out.offer();
        } else {
            for (const refhost::Decision& decision : story.tell(line, result)) {
                if (out.isTerminal()) progress.clear();
                printer.print(decision);
            }
        }
        if (source->wouldWait()) out.flush();
        if (progress.due(lines)) progress.at(lines, source->progress());
    }
    progress.clear();
    if (!options.json) printer.print(story.summary());
    out.flush();
    sayAtEnd(story.summary(), *source);
    return kDone;
}

}  // namespace zqaft

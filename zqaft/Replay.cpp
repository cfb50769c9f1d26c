#include "refhost/play/DecisionLog.h"
#include "refhost/play/ResultWriter.h"
#include "zqaft/Commands.h"
#include "zqaft/DecisionPrinter.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/TerminalObserver.h"

namespace zqaft {

int replay(const ReplayOptions& options) {
    const std::unique_ptr<refhost::TraceSource> source = openPlayed(options);
    Output out;
    refhost::Player player(source->header(), pluginOr(options.plugin));
    refhost::DecisionLog log;
    DecisionPrinter printer(out, wantsColours());
    TerminalObserver observer(&out);
    playLines(*source, player, &observer, [&](const refhost::TraceLine& line, const refhost::CallResult& result) {
        if (options.json) {
            refhost::writeResult(out.text(), result);
            out.offer();
            return;
        }
        for (const refhost::Decision& decision : log.onLine(line, result)) {
            observer.makeRoom();
            printer.print(decision);
        }
    });
    observer.end();
    if (!options.json) printer.print(log.summary());
    out.flush();
    if (!options.json) sayAtEnd(log.summary(), *source);
    if (options.json) say(source->leftOut());
    return kDone;
}

}  // namespace zqaft

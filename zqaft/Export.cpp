#include "refhost/export/ChromeTrace.h"
#include "zqaft/Commands.h"
#include "zqaft/ExitCodes.h"
#include "zqaft/Input.h"
#include "zqaft/Output.h"
#include "zqaft/TerminalObserver.h"

namespace zqaft {

int exportTrace(const ExportOptions& options) {
    const std::unique_ptr<refhost::TraceSource> source = openPlayed(options);
    refhost::Player player(source->header(), pluginOr(options.plugin));
    refhost::ChromeTrace trace(source->header());
    TerminalObserver observer(nullptr);
    playLines(*source, player, &observer,
              [&](const refhost::TraceLine& line, const refhost::CallResult& result) { trace.onLine(line, result); });
    observer.end();
    refhost::TextBuffer text;
    trace.write(text);
    writeResult(options.output, {text.data(), text.size()});
    sayAtEnd(trace.summary(), *source);
    return kDone;
}

}  // namespace zqaft

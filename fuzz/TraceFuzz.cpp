#include "fuzz/Oracles.h"

// A damaged trace would crash the tool or hang it, or writing a trace would change what it says.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace refhost;
    const std::string text(reinterpret_cast<const char*>(data), size);
    TextBuffer out;
    readsOrRefuses(text, [&] {
        std::istringstream in(text);
        TraceReader reader(in, "in");
        writeTrace(out, reader.header());
        for (TraceLine line; reader.next(line);) writeTrace(out, line);
    });
    if (out.size() > 0) requireATrace(fmt::to_string(out));
    return 0;
}

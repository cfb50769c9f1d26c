#include "fuzz/Oracles.h"
#include "refhost/recording/Readers.h"

// A profile with a fault would crash the tool or hang it, or make a trace that no replay takes.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace refhost;
    static const Recording tap = readGetevent(
        "add device 1: /dev/fp\n  name: \"fingerprint\"\n"
        "[1.000000] /dev/panel: 0003 0035 00000001\n/dev/panel: 0003 0036 00000001\n/dev/panel: 0000 0000 00000000\n"
        "[1.400000] /dev/fp: 0001 0161 00000001\n[2.000000] /dev/fp: 0001 0161 00000000\n",
        "tap");
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::optional<ImportedTrace> trace;
    std::optional<Profile> profile;
    if (!readsOrRefuses(text, [&] { profile = parseProfile(text, "in", "/nowhere"); })) return 0;
    profile->touch.recorded.clear();
    trace.emplace(tap, *std::move(profile), "");
    requireATrace(written(*trace));
    return 0;
}

#include "fuzz/Oracles.h"
#include "refhost/recording/Readers.h"

// A damaged or foreign recording would crash the tool, hang it, or be replayed as something that it does not say; or
// one of getevent's, of which nothing is an error, would be refused.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace refhost;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    require(readsARecording(text, readGetevent), "getevent's are never refused");
    readsOrRefuses(text, [&] { readRecordingText(text, "in"); });
    return 0;
}

#include "fuzz/Oracles.h"
#include "refhost/recording/Readers.h"

// A damaged or foreign recording would crash the tool, hang it, or be replayed as something that it does not say. The
// build names the reader.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    refhost::readsARecording({reinterpret_cast<const char*>(data), size}, refhost::ZQAFT_FUZZED_READER);
    return 0;
}

#include "fuzz/Oracles.h"
#include "refhost/recording/Readers.h"

// A damaged or foreign evemu recording would crash the tool, hang it, or be replayed as something that it does not say.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    refhost::readsARecording({reinterpret_cast<const char*>(data), size}, refhost::readEvemu);
    return 0;
}

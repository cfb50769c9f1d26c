// The built tool where it plays traces alone.

#include "tests/cli/CommandLine.h"

namespace test {
namespace {

// A recording would be taken for a faulty trace, with no word of where it can be read.
TEST_F(CommandLine, RecordingsAreForADesk) {
    expectFailures({{"replay --profile p.yaml r", 64, "r: this build of zqaft plays traces alone;"},
                    {"import --profile p.yaml r", 64, "r: this build of zqaft plays traces alone;"}});
}

}  // namespace
}  // namespace test

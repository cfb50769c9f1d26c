// Stands in for Recordings.cpp where the tool is built without what reads recordings and profiles.

#include "zqaft/Input.h"

namespace zqaft {

std::unique_ptr<refhost::TraceSource> openRecording(const std::string& path, const std::string& /*profile*/,
                                                    const std::string& /*device*/) {
    throw UsageError(path +
                     ": this build of zqaft plays traces alone; make one of the recording at a desk: zqaft import");
}

}  // namespace zqaft

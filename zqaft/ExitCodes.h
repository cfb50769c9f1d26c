#pragma once

namespace zqaft {

/// What the program answers to the shell; `--help` lists them.
enum ExitCode {
    kDone = 0,
    kBreach = 1,          ///< the plug-in has broken what a host relies on, or changed a verdict
    kFaultyInput = 2,     ///< a trace, profile, recording or verdict file has a fault; or crashed the plug-in
    kUsage = 64,          ///< the command line
    kNoInput = 66,        ///< a file cannot be opened or read
    kNoPlugin = 69,       ///< the plug-in cannot be loaded
    kInternalError = 70,  ///< a fault of ours
    kNoOutput = 74,       ///< standard output, or a verdict file, cannot be written
};

}  // namespace zqaft

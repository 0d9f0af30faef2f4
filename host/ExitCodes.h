#pragma once

namespace host {

/// Exit codes of every program of the suite.
enum ExitCode : int {
    kExitDone = 0,
    kExitFindings = 1,
    kExitUsage = 2,
    kExitUnreadable = 3,
    kExitRefused = 4,
    kExitInternal = 5,
};

}  // namespace host

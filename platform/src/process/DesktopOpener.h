#pragma once

#include <string>

namespace platform {

/// Starts `program` (found on the search path) with `argument` as its only argument, in a session of its own
/// and without the host's descriptors, and waits until it has ended, at most `patienceMs` milliseconds; one
/// that takes longer is collected by the main run loop when it ends. Returns 0 when it was started, else the
/// errno value of the failure.
int runOpener(const std::string& program, const std::string& argument, int patienceMs);

}  // namespace platform

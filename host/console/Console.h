#pragma once

#include <string>
#include <vector>

namespace host {

struct ConsoleOptions {
    std::vector<std::string> bundles;  ///< paths of the bundles to load at the start
    std::string dataDir;               ///< special folder of settings and marker files; empty for the default
    std::vector<std::string> connects;  ///< "NAME:PORT=ADDRESS:PORT"
    bool json = false;
    bool recordOpened = false;  ///< documents and web pages are shown as events instead of being opened
};

/// Runs a console session on standard input and output. Returns the exit code; start-up problems are one line
/// on standard error.
int runConsole(const ConsoleOptions& options);

}  // namespace host

#pragma once

#include <string>

namespace tools {

struct ServeOptions {
    std::string folder;
    std::string address = "127.0.0.1";  ///< to listen on; a name or an address
    int port = 8080;                    ///< 0: one that is free
};

/// `tessaro serve`: serves the folder over HTTP as the maker's update server does, until the process gets
/// SIGINT or SIGTERM. Prints where it listens, then a line for each request. Returns the exit code of the
/// program; what went wrong is one line on the standard error stream. Other threads must not run yet.
int runServe(const ServeOptions& options);

}  // namespace tools

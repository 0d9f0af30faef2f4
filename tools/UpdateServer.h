#pragma once

#include "tools/ServeCommand.h"

namespace tools {

/// The module that holds the server, and its one function.
constexpr const char* kUpdateServerModule = "libtessaro_serve.so";
constexpr const char* kUpdateServerFunction = "tessaroServe";

/// Does what runServe promises; throws nothing.
using UpdateServerProc = int (*)(const ServeOptions* options);

}  // namespace tools

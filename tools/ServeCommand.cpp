#include "tools/ServeCommand.h"

#include "host/ExitCodes.h"
#include "platform/host/OwnProgram.h"
#include "tools/UpdateServer.h"

#include <dlfcn.h>

#include <filesystem>
#include <iostream>

namespace tools {

namespace {

namespace fs = std::filesystem;

/// Where the module is: beside the installed bundles, or in the build.
std::string modulePath() {
    std::error_code error;
    const fs::path prefix = platform::ownProgram().parent_path().parent_path();
    const fs::path installed = prefix / TESSARO_INSTALLED_BUNDLES / kUpdateServerModule;
    const fs::path built = prefix / "lib" / kUpdateServerModule;
    return (fs::exists(installed, error) ? installed : built).string();
}

}  // namespace

int runServe(const ServeOptions& options) {
    // A module of its own: the other commands do without the server library and what that loads.
    void* const module = dlopen(modulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const function = module != nullptr ? dlsym(module, kUpdateServerFunction) : nullptr;
    if (function == nullptr) {
        std::cerr << "tessaro serve: " << dlerror() << std::endl;
        return host::kExitUnreadable;
    }
    return reinterpret_cast<UpdateServerProc>(function)(&options);
}

}  // namespace tools

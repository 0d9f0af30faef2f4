#include "tools/ServeCommand.h"

#include "host/ExitCodes.h"
#include "platform/host/OwnProgram.h"
#include "tools/Commands.h"
#include "tools/UpdateServer.h"

#include <dlfcn.h>

#include <filesystem>

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
    if (function == nullptr) return fail(host::kExitUnreadable, "serve", dlerror());
    return reinterpret_cast<UpdateServerProc>(function)(&options);
}

}  // namespace tools

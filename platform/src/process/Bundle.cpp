#include "platform/Bundle.h"

#include "platform/host/OwnProgram.h"

#include <dlfcn.h>
#include <climits>
#include <cstdlib>
#include <memory>

struct GSCFXBundle {
    std::string path;
};

namespace {

/// The main program's name is what it was started with, which need not be a path.
std::string imageFile(const char* imageName) {
    char resolved[PATH_MAX];
    if (realpath(imageName, resolved) != nullptr) return resolved;
    return platform::ownProgram().string();
}

}  // namespace

GSCFXBundleRef GSCFXBundleCreateFromMachHeader(const void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) return nullptr;
    const std::string file = imageFile(info.dli_fname);
    const std::size_t slash = file.rfind('/');
    if (slash == std::string::npos || slash == 0) return nullptr;
    return std::make_unique<GSCFXBundle>(GSCFXBundle{file.substr(0, slash)}).release();
}

const std::string& GSCFXBundlePath(GSCFXBundleRef bundle) {
    return bundle->path;
}

void GSCFXBundleRelease(GSCFXBundleRef bundle) {
    delete bundle;
}

bool GSRoot_DelayInitImage(GSInitImageProc) {
    return false;
}

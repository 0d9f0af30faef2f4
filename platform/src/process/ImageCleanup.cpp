#include "platform/host/ImageCleanup.h"

#include <dlfcn.h>
#include <vector>

namespace platform {

namespace {

using Cleanup = std::function<void(const void*)>;

std::vector<Cleanup>& cleanups() {
    static std::vector<Cleanup> list;
    return list;
}

}  // namespace

const void* imageOf(const void* address) {
    Dl_info info{};
    return dladdr(address, &info) != 0 ? info.dli_fbase : nullptr;
}

void addImageCleanup(Cleanup cleanup) {
    cleanups().push_back(std::move(cleanup));
}

void endCallsIntoImage(const void* image) {
    const std::vector<Cleanup> list = cleanups();
    for (auto each = list.rbegin(); each != list.rend(); ++each)
        (*each)(image);
}

}  // namespace platform

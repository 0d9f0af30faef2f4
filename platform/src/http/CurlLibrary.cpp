#include "platform/src/http/CurlLibrary.h"

#include <dlfcn.h>
#include <memory>

namespace platform::http {

CurlLibrary::CurlLibrary()
    : library_(dlopen("libcurl.so.4", RTLD_LAZY | RTLD_LOCAL)), complete_(library_ != nullptr) {
    const auto globalInit = reinterpret_cast<decltype(&::curl_global_init)>(find("curl_global_init"));
    complete_ = complete_ && globalInit(CURL_GLOBAL_DEFAULT) == CURLE_OK;
}

void* CurlLibrary::find(const char* name) {
    void* const function = complete_ ? dlsym(library_, name) : nullptr;
    complete_ = function != nullptr;
    return function;
}

const CurlLibrary* CurlLibrary::get() {
    static const CurlLibrary* library = nullptr;
    if (library == nullptr) {
        auto opened = std::make_unique<CurlLibrary>();
        if (opened->complete_) library = opened.release();
    }
    return library;
}

}  // namespace platform::http

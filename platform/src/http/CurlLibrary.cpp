#include "platform/src/http/CurlLibrary.h"

#include <dlfcn.h>

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
    static const auto* const library = new CurlLibrary;
    return library->complete_ ? library : nullptr;
}

}  // namespace platform::http

#include "platform/src/http/CurlLibrary.h"

#include <dlfcn.h>

#include <optional>

namespace platform::http {

namespace {

constexpr const char* kLibraryName = "libcurl.so.4";

template <typename Function>
bool find(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

std::optional<CurlLibrary> load() {
    void* const library = dlopen(kLibraryName, RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr) return std::nullopt;
    decltype(&::curl_global_init) globalInit = nullptr;
    CurlLibrary curl{};
    const bool complete = find(library, "curl_global_init", globalInit) &&
                          find(library, "curl_easy_init", curl.easyInit) &&
                          find(library, "curl_easy_cleanup", curl.easyCleanup) &&
                          find(library, "curl_easy_setopt", curl.easySetopt) &&
                          find(library, "curl_easy_getinfo", curl.easyGetinfo) &&
                          find(library, "curl_easy_pause", curl.easyPause) &&
                          find(library, "curl_multi_init", curl.multiInit) &&
                          find(library, "curl_multi_setopt", curl.multiSetopt) &&
                          find(library, "curl_multi_add_handle", curl.multiAddHandle) &&
                          find(library, "curl_multi_remove_handle", curl.multiRemoveHandle) &&
                          find(library, "curl_multi_socket_action", curl.multiSocketAction) &&
                          find(library, "curl_multi_info_read", curl.multiInfoRead) &&
                          find(library, "curl_slist_append", curl.slistAppend) &&
                          find(library, "curl_slist_free_all", curl.slistFreeAll);
    if (!complete || globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) return std::nullopt;
    return curl;
}

}  // namespace

const CurlLibrary* CurlLibrary::get() {
    static const std::optional<CurlLibrary> library = load();
    return library ? &*library : nullptr;
}

}  // namespace platform::http

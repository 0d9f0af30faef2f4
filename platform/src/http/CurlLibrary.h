#pragma once

#include <curl/curl.h>

namespace platform::http {

/// The functions of libcurl that the streams use. The library is opened at the first use, never before: most
/// sessions of the host make no request, and opening it takes longer than all the rest of a start.
class CurlLibrary {
    /// Null, and the library not complete, when the function is missing.
    void* find(const char* name);

    void* const library_;
    bool complete_;

public:
    CurlLibrary();
    CurlLibrary(const CurlLibrary&) = delete;
    CurlLibrary& operator=(const CurlLibrary&) = delete;

    /// Null when the library is missing or too old; stays loaded otherwise.
    static const CurlLibrary* get();

#define TESSARO_CURL(member, function) \
    decltype(&::function) const member = reinterpret_cast<decltype(&::function)>(find(#function))
    TESSARO_CURL(easyInit, curl_easy_init);
    TESSARO_CURL(easyCleanup, curl_easy_cleanup);
    TESSARO_CURL(easySetopt, curl_easy_setopt);
    TESSARO_CURL(easyGetinfo, curl_easy_getinfo);
    TESSARO_CURL(easyPause, curl_easy_pause);
    TESSARO_CURL(multiInit, curl_multi_init);
    TESSARO_CURL(multiSetopt, curl_multi_setopt);
    TESSARO_CURL(multiAddHandle, curl_multi_add_handle);
    TESSARO_CURL(multiRemoveHandle, curl_multi_remove_handle);
    TESSARO_CURL(multiSocketAction, curl_multi_socket_action);
    TESSARO_CURL(multiInfoRead, curl_multi_info_read);
    TESSARO_CURL(slistAppend, curl_slist_append);
    TESSARO_CURL(slistFreeAll, curl_slist_free_all);
#undef TESSARO_CURL
};

}  // namespace platform::http

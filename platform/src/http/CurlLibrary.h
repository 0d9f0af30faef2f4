#pragma once

#include <curl/curl.h>

namespace platform::http {

/// The functions of libcurl that the streams use. The library is opened at the first use, never before: most
/// sessions of the host make no request.
struct CurlLibrary {
    decltype(&::curl_easy_init) easyInit;
    decltype(&::curl_easy_cleanup) easyCleanup;
    decltype(&::curl_easy_setopt) easySetopt;
    decltype(&::curl_easy_getinfo) easyGetinfo;
    decltype(&::curl_easy_pause) easyPause;
    decltype(&::curl_multi_init) multiInit;
    decltype(&::curl_multi_setopt) multiSetopt;
    decltype(&::curl_multi_add_handle) multiAddHandle;
    decltype(&::curl_multi_remove_handle) multiRemoveHandle;
    decltype(&::curl_multi_socket_action) multiSocketAction;
    decltype(&::curl_multi_info_read) multiInfoRead;
    decltype(&::curl_slist_append) slistAppend;
    decltype(&::curl_slist_free_all) slistFreeAll;

    /// Null when the library is missing or too old; stays loaded otherwise.
    static const CurlLibrary* get();
};

}  // namespace platform::http

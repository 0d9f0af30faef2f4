#pragma once

/// Addresses of the maker on the web; the build may set others (TESSARO_UPDATE_SERVER, TESSARO_WEB_SITE).
/// Both end with "/".

#ifndef TESSARO_UPDATE_SERVER
#define TESSARO_UPDATE_SERVER "http://update.tessaro.example/"
#endif

#ifndef TESSARO_WEB_SITE
#define TESSARO_WEB_SITE "http://www.tessaro.example/"
#endif

/// The update server, to which a path such as "update_plugins/updates.htm" is appended.
constexpr char kURLUpdateServer[] = TESSARO_UPDATE_SERVER;

/// Home page of the maker's web site.
constexpr char kURLWebSite[] = TESSARO_WEB_SITE;

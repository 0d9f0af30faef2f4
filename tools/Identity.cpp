// The tools read the settings of TessaroLibrary unless asked for others, and have no bundle of their own.

#include "platform/FileSystem.h"
#include "platform/HostInterface.h"
#include "settings/AddonIdentity.h"

char sett_ADDON_NAME[] = "TessaroLibrary";
char sett_ADDON_SETTINGS_FILE_NAME[] = "TessaroLibrary_220";
bool sett_ADDON_HAS_OWN_LANGUAGE = true;
char sett_ADDON_SHOWED_LANGUAGES[] = "ita int";
char sett_ADDON_SUPP_EXTRA_LANGUAGES[] = "";
bool sett_ADDON_ONLY_PLUS_VERSION = false;

GSErrCode ACAPI_GetOwnLocation(IO::Location& location) {
    location.Clear();
    return kAPIErrNoOwnLocation;
}

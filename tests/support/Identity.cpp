// An add-on for tests of rooms that need no host: its identity, and no location.

#include "platform/FileSystem.h"
#include "platform/HostInterface.h"
#include "settings/AddonIdentity.h"

char sett_ADDON_NAME[] = "TestAddon";
char sett_ADDON_SETTINGS_FILE_NAME[] = "TestAddon_220";
bool sett_ADDON_HAS_OWN_LANGUAGE = true;
char sett_ADDON_SHOWED_LANGUAGES[] = "";
char sett_ADDON_SUPP_EXTRA_LANGUAGES[] = "";
bool sett_ADDON_ONLY_PLUS_VERSION = false;

GSErrCode ACAPI_GetOwnLocation(IO::Location& location) {
    location.Clear();
    return kAPIErrNoOwnLocation;
}

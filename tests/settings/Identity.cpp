// The add-on that the tests of this program are, and what its host answers.

#include "platform/FileSystem.h"
#include "platform/HostInterface.h"
#include "settings/AddonIdentity.h"

char sett_ADDON_NAME[] = "SettingsTest";
char sett_ADDON_SETTINGS_FILE_NAME[] = "SettingsTest_220";
bool sett_ADDON_HAS_OWN_LANGUAGE = true;
char sett_ADDON_SHOWED_LANGUAGES[] = "";
char sett_ADDON_SUPP_EXTRA_LANGUAGES[] = "";
bool sett_ADDON_ONLY_PLUS_VERSION = false;

GSErrCode ACAPI_GetOwnLocation(IO::Location& location) {
    location.Clear();
    return kAPIErrNoOwnLocation;
}

// The add-on that the tests of this room are: its identity.

#include "settings/AddonIdentity.h"

char sett_ADDON_NAME[] = "TestAddon";
char sett_ADDON_SETTINGS_FILE_NAME[] = "TestAddon_220";
bool sett_ADDON_ONLY_PLUS_VERSION = false;
#ifdef TEST_ADDON_SHARES_LANGUAGE
bool sett_ADDON_HAS_OWN_LANGUAGE = false;
char sett_ADDON_SHOWED_LANGUAGES[] = "";
char sett_ADDON_SUPP_EXTRA_LANGUAGES[] = "Jap RUS";
#else
bool sett_ADDON_HAS_OWN_LANGUAGE = true;
char sett_ADDON_SHOWED_LANGUAGES[] = "ITA int";
char sett_ADDON_SUPP_EXTRA_LANGUAGES[] = "";
#endif

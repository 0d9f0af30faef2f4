// The add-on TessaroLibrary: who it is, its entry points, its menu commands.

#include "addon/TessaroLibrary.h"

#include "addon/AddonVersion.h"
#include "addon/CDlgAbout.h"
#include "addon/CDlgInfo.h"
#include "addon/EntryPoints.h"
#include "foundation/KW_String.h"
#include "language/KW_Dlg_Language.h"
#include "language/KW_Language.h"
#include "language/KW_Resource.h"
#include "settings/AddonIdentity.h"
#include "update/KW_AddonUpdate.h"

char sett_ADDON_NAME[] = "TessaroLibrary";
char sett_ADDON_SETTINGS_FILE_NAME[] = "TessaroLibrary_220";
bool sett_ADDON_HAS_OWN_LANGUAGE = true;
char sett_ADDON_SHOWED_LANGUAGES[] = "ita int";
char sett_ADDON_SUPP_EXTRA_LANGUAGES[] = "";
bool sett_ADDON_ONLY_PLUS_VERSION = false;

namespace {

constexpr int kMenuPositionCode = 13;

enum MenuItem : short {
    kItemAbout = 1,
    kItemLanguage = 2,
    kItemCheckForUpdates = 3,
    kItemAutoUpdate = 4,
    kItemInfo = 5,
};

/// Carries out a command of the menu of that language.
GSErrCode MenuCommandHandler(const API_MenuParams* params, short language) {
    static bool firstTime = false;  // whether a command has been handled since the module was loaded
    if (params->menuItemRef.menuResID != KW_Resource_Menu + language) return kNoError;
    const KW_String ownVersion = KW_SystemText(kAddonVersionLine);
    const KW_String libraryName = KW_SystemText("Tessaro");
    ACAPI_KeepInMemory(true);
    if (!firstTime) KW_Language_Read(true);

    switch (params->menuItemRef.itemIndex) {
        case kItemAbout:
            CDlgAbout().ShowDialog();
            break;
        case kItemLanguage:
            if (KW_Dlg_Language()) {
                KW_Language_Read(true);
                MenuUpdate();
            }
            break;
        case kItemCheckForUpdates:
            KW_AddonUpdate_CheckForUpdate(true, ownVersion, libraryName);
            break;
        case kItemAutoUpdate:
            KW_AddonUpdate_SwitchAutoUpdateValue(KW_Resource_Menu, kItemAutoUpdate);
            break;
        case kItemInfo:
            CDlgInfo().ShowDialog();
            break;
        default:
            break;
    }

    if (!firstTime && params->menuItemRef.itemIndex != kItemCheckForUpdates)
        KW_AddonUpdate_AutoUpdate(ownVersion, libraryName);
    firstTime = true;
    return kNoError;
}

}  // namespace

extern "C" {

GSErrCode MenuCommandHandler_ITA(const API_MenuParams* params) {
    return MenuCommandHandler(params, 0);
}
GSErrCode MenuCommandHandler_INT(const API_MenuParams* params) {
    return MenuCommandHandler(params, 1);
}
GSErrCode MenuCommandHandler_FRA(const API_MenuParams* params) {
    return MenuCommandHandler(params, 2);
}
GSErrCode MenuCommandHandler_GER(const API_MenuParams* params) {
    return MenuCommandHandler(params, 3);
}
GSErrCode MenuCommandHandler_ESP(const API_MenuParams* params) {
    return MenuCommandHandler(params, 4);
}
GSErrCode MenuCommandHandler_JAP(const API_MenuParams* params) {
    return MenuCommandHandler(params, 5);
}

int CheckEnvironment(API_EnvirParams* params) {
    if (params->serverInfo.serverApplication != 1) return kAPIAddonDontRegister;
    params->addOnInfo.name = GS::UniStringFromUtf8("TessaroLibrary 22.0 (AC220)");
    params->addOnInfo.description = GS::UniStringFromUtf8("TessaroLibrary");
    return kAPIAddonNormal;
}

GSErrCode RegisterInterface() {
    KW_Language_Read(true);
    const GSErrCode error =
        ACAPI_Register_Menu(static_cast<short>(KW_Resource_Menu + gKW_Language), 0, kMenuPositionCode, 0);
    return error != kNoError ? error : ACAPI_Register_BuiltInLibrary();
}

GSErrCode Initialize() {
    KW_Language_Read(true);
    const APIMenuCommandProc handlers[] = {MenuCommandHandler_ITA, MenuCommandHandler_INT,
                                           MenuCommandHandler_FRA, MenuCommandHandler_GER,
                                           MenuCommandHandler_ESP, MenuCommandHandler_JAP};
    GSErrCode combined = kNoError;
    short menuResID = KW_Resource_Menu;
    for (const APIMenuCommandProc handler : handlers)
        combined |= ACAPI_Install_MenuHandler(menuResID++, handler);
    if (combined != kNoError) return combined;
    KW_AddonUpdate_SetMenuUpdateCheck(KW_Resource_Menu, kItemAutoUpdate);
    MenuUpdate();
    return kNoError;
}

GSErrCode FreeData() {
    return kNoError;
}

}  // extern "C"

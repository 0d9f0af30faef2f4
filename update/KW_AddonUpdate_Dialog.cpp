#include "foundation/KW_Units.h"
#include "language/KW_Language.h"
#include "language/KW_Resource.h"
#include "library/KW_General.h"
#include "platform/HostInterface.h"
#include "settings/AddonIdentity.h"
#include "update/Addresses.h"
#include "update/KW_AddonUpdate_Internal.h"

namespace {

enum Item : short {
    kItemWebSite = 1,
    kItemClose = 2,
    kItemHeadline = 3,
    kItemAddon = 4,
    kItemUpdatePage = 5,
    kItemLibrary = 6,
    kItemLibraryPage = 7,
};

enum Text : short {
    kTextClose = 5,
    kTextAvailable = 34,
    kTextUpToDate = 35,
    kTextWebSite = 37,
    kTextUpdatePage = 79,
    kTextAddonUpToDate = 80,
    kTextAddonAvailable = 81,
    kTextLibrary = 82,
    kTextLibraryPage = 84,
};

constexpr short kDialogWidth = 655;
constexpr short kDialogHeight = 172;
constexpr unsigned int kEveryView = 7;  // the window lives in every kind of view
constexpr char kUpdatePagePath[] = "update_plugins/updates.htm";

void setText(short dialogID, short item, const KW_String& text) {
    DGSetItemText(dialogID, item, KW_UniStringOf(text));
}

void setText(short dialogID, short item, short textIndex) {
    setText(dialogID, item, KW_AddonUpdate_GetText(textIndex));
}

KW_String textWithName(short textIndex, const char* placeholder, const KW_String& name) {
    return KW_AddonUpdate_GetText(textIndex).Replace(KW_AddonUpdate_SystemText(placeholder), name);
}

void fillWithLibrary(short dialogID, bool available) {
    DGShowItem(dialogID, kItemLibraryPage);
    setText(dialogID, kItemHeadline, available ? kTextAvailable : kTextUpToDate);
    setText(dialogID, kItemAddon,
            textWithName(available ? kTextAddonAvailable : kTextAddonUpToDate, "ADDONNAME",
                         KW_AddonUpdate_SystemText(sett_ADDON_NAME)));
    setText(dialogID, kItemLibraryPage, kTextLibraryPage);
    setText(dialogID, kItemLibrary, textWithName(kTextLibrary, "ADDONLIBNAME", sUpdateAddonLibName));
}

void fillWithoutLibrary(short dialogID, bool available) {
    for (const short item : {kItemLibraryPage, kItemLibrary, kItemHeadline})
        DGHideItem(dialogID, item);
    setText(dialogID, kItemAddon, available ? kTextAvailable : kTextUpToDate);
}

void fillWithResult(short dialogID) {
    const bool available = sUpdateStatus == kUpdateStatus_Available;
    for (const short item : {kItemWebSite, kItemAddon, kItemLibrary, kItemUpdatePage})
        DGShowItem(dialogID, item);
    if (available) {
        DGEnableItem(dialogID, kItemUpdatePage);
    } else {
        DGDisableItem(dialogID, kItemUpdatePage);
    }
    if (sHasLibrary) {
        fillWithLibrary(dialogID, available);
    } else {
        fillWithoutLibrary(dialogID, available);
    }
}

void hideResult(short dialogID) {
    for (const short item : {kItemWebSite, kItemUpdatePage, kItemLibraryPage, kItemAddon, kItemLibrary}) {
        DGHideItem(dialogID, item);
    }
}

void openUpdatePage(bool ofLibrary) {
    KW_String address = KW_AddonUpdate_SystemText(kURLUpdateServer) + kUpdatePagePath + "?acver=" + "22" +
                        "&lang=" + KW_String::LongToString(gKW_Language, 0) + "&addon=" + sett_ADDON_NAME;
    if (ofLibrary) address += "&lib=Unknown";
    KW_General::LaunchURLByPath(address);
}

short itemClicked(short item) {
    switch (item) {
        case kItemWebSite:
            DGModelessClose(sIDUpdateDialog);
            KW_General::LaunchURLByPath(KW_AddonUpdate_SystemText(kURLWebSite));
            return item;
        case kItemClose:
            sUpdateCancelled = true;
            DGModelessClose(sIDUpdateDialog);
            return item;
        case kItemUpdatePage:
        case kItemLibraryPage:
            DGModelessClose(sIDUpdateDialog);
            openUpdatePage(item == kItemLibraryPage);
            return item;
        case DG_NO_ITEM:
            return item;
        default:
            return 0;
    }
}

}  // namespace

KW_String KW_AddonUpdate_GetText(short index) {
    return KW_Resource_GetString(static_cast<short>(KW_Resource_Framework + gKW_Language), index);
}

void KW_AddonUpdate_ResultUpdateInit(short dialogID) {
    DGSetDialogClientSize(dialogID, kDialogWidth, kDialogHeight, 0, true);
    DGBeginMoveGrowItems(dialogID);
    DGSetDialogTitle(dialogID, KW_UniStringOf(KW_AddonUpdate_SystemText(sett_ADDON_NAME)));
    setText(dialogID, kItemClose, kTextClose);
    setText(dialogID, kItemWebSite, kTextWebSite);
    setText(dialogID, kItemUpdatePage, kTextUpdatePage);
    setText(dialogID, kItemLibraryPage, kTextUpdatePage);
    if (sUpdateStatus == kUpdateStatus_Running) {
        hideResult(dialogID);
    } else if (sUpdateStatus == kUpdateStatus_UpToDate || sUpdateStatus == kUpdateStatus_Available) {
        fillWithResult(dialogID);
    }
    DGEndMoveGrowItems(dialogID);
    DGRedrawItem(dialogID, DG_ALL_ITEMS);
}

short KW_AddonUpdate_ResultUpdate_Handler(short message, short dialogID, short item, DGUserData,
                                          DGMessageData) {
    switch (message) {
        case DG_MSG_INIT:
            ACAPI_RegisterModelessWindow(dialogID, nullptr, kEveryView, GS::NULLGuid);
            KW_AddonUpdate_ResultUpdateInit(dialogID);
            return 0;
        case DG_MSG_CLOSE:
            ACAPI_UnregisterModelessWindow(sIDUpdateDialog);
            sUpdateDialogClosed = true;
            return 1;
        case DG_MSG_CLICK:
            return itemClicked(item);
        default:
            return 0;
    }
}

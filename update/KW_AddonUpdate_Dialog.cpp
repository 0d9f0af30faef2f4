#include "foundation/KW_Units.h"
#include "language/KW_Language.h"
#include "language/KW_Resource.h"
#include "library/KW_General.h"
#include "platform/HostInterface.h"
#include "settings/AddonIdentity.h"
#include "update/Addresses.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <initializer_list>

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

constexpr short kDialogWidth = 655;
constexpr short kDialogHeight = 172;
constexpr unsigned int kEveryView = 7;  // the window lives in every kind of view
constexpr char kUpdatePagePath[] = "update_plugins/updates.htm";

void setText(short dialogID, short item, const KW_String& text) {
    DGSetItemText(dialogID, item, KW_UniStringOf(text));
}

void setText(short dialogID, short item, KW_FrameworkText text) {
    setText(dialogID, item, KW_Resource_GetFrameworkString(text));
}

KW_String textWithName(KW_FrameworkText text, const char* placeholder, const KW_String& name) {
    return KW_Resource_GetFrameworkString(text).Replace(KW_SystemText(placeholder), name);
}

void show(short dialogID, bool shown, std::initializer_list<short> items) {
    for (const short item : items)
        shown ? DGShowItem(dialogID, item) : DGHideItem(dialogID, item);
}

void fillWithResult(short dialogID) {
    const bool available = sUpdateStatus == kUpdateStatus_Available;
    show(dialogID, true, {kItemWebSite, kItemAddon, kItemUpdatePage});
    show(dialogID, sHasLibrary, {kItemHeadline, kItemLibrary, kItemLibraryPage});
    available ? DGEnableItem(dialogID, kItemUpdatePage) : DGDisableItem(dialogID, kItemUpdatePage);
    setText(dialogID, sHasLibrary ? kItemHeadline : kItemAddon,
            available ? KW_FrameworkText_UpdateAvailable : KW_FrameworkText_UpToDate);
    if (!sHasLibrary) return;
    setText(dialogID, kItemAddon,
            textWithName(available ? KW_FrameworkText_AddonAvailable : KW_FrameworkText_AddonUpToDate,
                         "ADDONNAME", KW_SystemText(sett_ADDON_NAME)));
    setText(dialogID, kItemLibraryPage, KW_FrameworkText_LibraryPage);
    setText(dialogID, kItemLibrary,
            textWithName(KW_FrameworkText_Library, "ADDONLIBNAME", sUpdateAddonLibName));
}

void openUpdatePage(bool ofLibrary) {
    KW_String address = KW_SystemText(kURLUpdateServer) + kUpdatePagePath +
                        "?acver=" + KW_AddonUpdate_HostVersion() +
                        "&lang=" + KW_String::LongToString(gKW_Language, 0) + "&addon=" + sett_ADDON_NAME;
    if (ofLibrary) address += "&lib=Unknown";
    KW_General::LaunchURLByPath(address);
}

short itemClicked(short item) {
    switch (item) {
        case kItemWebSite:
            DGModelessClose(sIDUpdateDialog);
            KW_General::LaunchURLByPath(KW_SystemText(kURLWebSite));
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

void KW_AddonUpdate_ResultUpdateInit(short dialogID) {
    DGSetDialogClientSize(dialogID, kDialogWidth, kDialogHeight, 0, true);
    DGBeginMoveGrowItems(dialogID);
    DGSetDialogTitle(dialogID, KW_UniStringOf(KW_SystemText(sett_ADDON_NAME)));
    setText(dialogID, kItemClose, KW_FrameworkText_Cancel);
    setText(dialogID, kItemWebSite, KW_FrameworkText_WebSite);
    setText(dialogID, kItemUpdatePage, KW_FrameworkText_UpdatePage);
    setText(dialogID, kItemLibraryPage, KW_FrameworkText_UpdatePage);
    if (sUpdateStatus == kUpdateStatus_Running) {
        show(dialogID, false, {kItemWebSite, kItemUpdatePage, kItemLibraryPage, kItemAddon, kItemLibrary});
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

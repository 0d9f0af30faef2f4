#include "addon/CDlgAbout.h"

#include "addon/DialogMessages.h"
#include "addon/DialogTexts.h"
#include "dialogs/KW_Dialog.h"
#include "files/KW_Location.h"
#include "library/KW_General.h"
#include "platform/DialogManager.h"
#include "platform/HostInterface.h"

namespace {

constexpr short kDialog = 32500;
constexpr short kWidth = 960;
constexpr short kHeight = 510;

enum Item : short {
    kItemOK = 1,
    kItemCancel = 2,
    kItemDescription = 4,
    kItemDocument1 = 6,
    kItemDocument2 = 7
};

enum Text : long {
    kTextTitle = 4,
    kTextFirstDescription = 5,
    kTextLastDescription = 12,
    kTextDocument1 = 13,
    kTextDocument2 = 14,
    kTextNotOpened = 15,
};

constexpr char kDocument1[] = "01 - Libreria Tessaro.pdf";
constexpr char kDocument2[] = "02 - Libreria Tessaro.pdf";

void openDocument(const char* name) {
    IO::Location addon;
    ACAPI_GetOwnLocation(addon);
    KW_Location document(addon);
    document.SetLastName(name);
    if (KW_General::LaunchDocByLoc(document)) return;

    KW_Dialog::ShowMessage(
        KW_Dialog::SetPrefixString(AddonText(kTextNotOpened), true, KW_SystemText(": "), true));
}

short CDlgAbout_CallBack(short message, short dialogID, short item, DGUserData userData, DGMessageData) {
    return AnswerDialogMessage(*reinterpret_cast<CDlgAbout*>(userData), message, dialogID, item, kWidth,
                               kHeight);
}

}  // namespace

bool CDlgAbout::ShowDialog() {
    const RSResModule module = ACAPI_GetOwnResModule();
    return DGModalDialog(module, kDialog, module, CDlgAbout_CallBack, reinterpret_cast<DGUserData>(this)) ==
           kItemOK;
}

void CDlgAbout::SetItems() {
    KW_String description;
    for (long text = kTextFirstDescription; text <= kTextLastDescription; ++text)
        description += AddonText(text);

    SetDialogTitle(dialogID, AddonText(kTextTitle));
    SetDialogItemText(dialogID, kItemOK, KW_Resource_GetFrameworkString(KW_FrameworkText_OK));
    SetDialogItemText(dialogID, kItemCancel, KW_Resource_GetFrameworkString(KW_FrameworkText_Cancel));
    SetDialogItemText(dialogID, kItemDescription, description);
    SetDialogItemText(dialogID, kItemDocument1, AddonText(kTextDocument1));
    SetDialogItemText(dialogID, kItemDocument2, AddonText(kTextDocument2));
    DGHideItem(dialogID, kItemCancel);
}

short CDlgAbout::MsgClick(short item) {
    switch (item) {
        case kItemOK:
        case kItemCancel:
            return item;
        case kItemDocument1:
            openDocument(kDocument1);
            return 0;
        case kItemDocument2:
            openDocument(kDocument2);
            return 0;
        default:
            return 0;
    }
}

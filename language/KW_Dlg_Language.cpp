#include "language/KW_Dlg_Language.h"

#include "foundation/KW_List.h"
#include "foundation/KW_Units.h"
#include "language/KW_Language.h"
#include "language/KW_Resource.h"
#include "platform/DialogManager.h"
#include "platform/HostInterface.h"
#include "settings/AddonIdentity.h"

namespace {

constexpr short kDialog = 32734;
constexpr short kFirstIcon = 32758;  // of language 0

enum Item : short { kItemOK = 1, kItemCancel = 2, kItemList = 3, kItemPrompt = 6 };

void setText(short dialogID, short item, KW_FrameworkText index) {
    const KW_String text = KW_Resource_GetFrameworkString(index);
    DGSetItemText(dialogID, item, KW_UniStringOf(text));
}

bool isOffered(short language) {
    const KW_String offered = KW_SystemText(sett_ADDON_SHOWED_LANGUAGES);
    return offered.length == 0 || offered.IndexOfIgnoreCase(gKW_Languages_Suffixes[language], 0) >= 0;
}

void initialise(short dialogID, KW_List<short>& langIndexes) {
    DGSetDialogClientSize(dialogID, 483, 282, 0, true);
    const KW_String title = KW_SystemText(sett_ADDON_NAME);
    DGSetDialogTitle(dialogID, KW_UniStringOf(title));
    setText(dialogID, kItemOK, KW_FrameworkText_OK);
    setText(dialogID, kItemCancel, KW_FrameworkText_Cancel);
    setText(dialogID, kItemPrompt, KW_FrameworkText_LanguagePrompt);

    DGListSetTabFieldCount(dialogID, kItemList, 1);
    DGListSetItemHeight(dialogID, kItemList, 30);
    DGListSetTabFieldData(dialogID, kItemList, 1, 5, 285, 0, 0x1000, false, true);
    DGListDisableDraw(dialogID, kItemList);
    DGListDeselectItem(dialogID, kItemList, DG_ALL_ITEMS);
    DGListDeleteItem(dialogID, kItemList, DG_ALL_ITEMS);

    langIndexes.Reset();
    short selectedRow = 1;
    for (short language = 0; language < KW_Language_Count; ++language) {
        if (!isOffered(language)) continue;
        langIndexes.AddData(language, -1);
        const short row = DGListInsertItem(dialogID, kItemList, DG_LIST_BOTTOM);
        DGListSetTabItemText(dialogID, kItemList, row, 1, GS::UniString());
        DGListSetTabItemIcon(dialogID, kItemList, row, 1,
                             DG::Icon(ACAPI_GetOwnResModule(), static_cast<short>(kFirstIcon + language)));
        if (language == gKW_Language) selectedRow = row;
    }

    DGListEnableDraw(dialogID, kItemList);
    DGRedrawItem(dialogID, kItemList);
    DGListSelectItem(dialogID, kItemList, selectedRow);
    DGSetFocus(dialogID, DG_NO_ITEM);
}

// The language of the selected row; `otherwise` when no row is selected.
short selectedLanguage(short dialogID, const KW_List<short>& langIndexes, short otherwise) {
    const short row = DGListGetSelected(dialogID, kItemList, 1);
    return row >= 1 && row <= langIndexes.count ? langIndexes[row - 1] : otherwise;
}

short KW_Dlg_Language_CallBack(short message, short dialogID, short item, DGUserData userData,
                               DGMessageData) {
    static KW_List<short> langIndexes;  // the language of each row
    if (dialogID != kDialog) return 0;
    const short languageAtOpening = static_cast<short>(userData);

    switch (message) {
        case DG_MSG_INIT:
            initialise(dialogID, langIndexes);
            return 0;
        case DG_MSG_CLICK:
            if (item == kItemCancel) {
                gKW_Language = languageAtOpening;
                return kItemCancel;
            }
            if (item == kItemOK) {
                const short chosen = selectedLanguage(dialogID, langIndexes, languageAtOpening);
                gKW_Language = chosen;
                if (chosen != languageAtOpening) KW_Language_Write();
                return kItemOK;
            }
            return 0;
        case DG_MSG_CLOSE:
            return item;
        case DG_MSG_CHANGE:
            if (item == kItemList) {
                gKW_Language = selectedLanguage(dialogID, langIndexes, gKW_Language);
                setText(dialogID, kItemCancel, KW_FrameworkText_Cancel);
                setText(dialogID, kItemPrompt, KW_FrameworkText_LanguagePrompt);
            }
            return 0;
        default:
            return 0;
    }
}

}  // namespace

bool KW_Dlg_Language() {
    const RSResModule module = ACAPI_GetOwnResModule();
    const short closedBy = DGModalDialog(module, kDialog, module, KW_Dlg_Language_CallBack, gKW_Language);
    return closedBy == kItemOK;
}

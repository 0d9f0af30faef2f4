#include "language/KW_Resource.h"

#include "language/KW_Language.h"
#include "platform/ResourceManager.h"

namespace {

constexpr int kMenuItemCount = 5;

}  // namespace

KW_String KW_Resource_GetString(short resID, long index) {
    unsigned short text[kRSStringBufferUnits] = {};
    const short stringIndex = static_cast<short>(index);
    const RSResModule module = ACAPI_GetOwnResModule();
    bool found = ACAPI_Resource_GetLocUStr(text, resID, stringIndex, module);
    if (!found && gKW_Language != KW_Language_International) {
        const short international = static_cast<short>(resID + KW_Language_International - gKW_Language);
        found = ACAPI_Resource_GetLocUStr(text, international, stringIndex, module);
    }
    return found ? KW_String(text) : KW_SystemText("_ERR_NO_");
}

KW_String KW_Resource_GetCurrentString(short base, long index) {
    return KW_Resource_GetString(static_cast<short>(base + gKW_Language), index);
}

KW_String KW_Resource_GetFrameworkString(long index) {
    return KW_Resource_GetCurrentString(KW_Resource_Framework, index);
}

GSErrCode KW_Menu_SetText(short menuResID, int item, const KW_String& text) {
    API_MenuItemRef itemRef{};
    itemRef.menuResID = menuResID;
    itemRef.itemIndex = item;
    GS::UniString hostText(text.data, text.length);
    return ACAPI_Interface(APIIo_SetMenuItemTextID, &itemRef, nullptr, &hostText);
}

void MenuUpdate() {
    for (short language = 0; language < KW_Language_Count; ++language) {
        const short menuResID = static_cast<short>(KW_Resource_Menu + language);
        for (int item = 1; item <= kMenuItemCount; ++item) {
            KW_Menu_SetText(menuResID, item, KW_Resource_GetCurrentString(KW_Resource_MenuItems, item));
        }
    }
}

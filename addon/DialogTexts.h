#pragma once

#include "foundation/KW_Units.h"
#include "language/KW_Resource.h"
#include "platform/DialogManager.h"

/// Texts of the add-on's own dialogs.

/// String `index` of this add-on, in the current language.
inline KW_String AddonText(long index) {
    return KW_Resource_GetCurrentString(KW_Resource_Addon, index);
}

inline void SetDialogTitle(short dialogID, const KW_String& title) {
    DGSetDialogTitle(dialogID, KW_UniStringOf(title));
}

inline void SetDialogItemText(short dialogID, short item, const KW_String& text) {
    DGSetItemText(dialogID, item, KW_UniStringOf(text));
}

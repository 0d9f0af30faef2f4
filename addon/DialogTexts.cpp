#include "addon/DialogTexts.h"

#include "foundation/KW_Units.h"
#include "language/KW_Language.h"
#include "language/KW_Resource.h"
#include "platform/DialogManager.h"

namespace {

constexpr short kAddonStrings = 32530;

KW_String localisedText(short base, long index) {
    return KW_Resource_GetString(static_cast<short>(base + gKW_Language), index);
}

}  // namespace

KW_String AddonText(long index) {
    return localisedText(kAddonStrings, index);
}

KW_String FrameworkText(long index) {
    return localisedText(KW_Resource_Framework, index);
}

KW_String SystemText(const char* text) {
    return KW_String(text, KW_String::Encoding_System);
}

void SetDialogTitle(short dialogID, const KW_String& title) {
    DGSetDialogTitle(dialogID, KW_UniStringOf(title));
}

void SetDialogItemText(short dialogID, short item, const KW_String& text) {
    DGSetItemText(dialogID, item, KW_UniStringOf(text));
}

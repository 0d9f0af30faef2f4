#include "language/KW_Language.h"

#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"

short gKW_Language = KW_Language_International;

KW_String gKW_Languages_Suffixes[KW_Language_Count] = {
    KW_SystemText("ita"), KW_SystemText("int"), KW_SystemText("fra"), KW_SystemText("ger"),
    KW_SystemText("spa"), KW_SystemText("jap"), KW_SystemText("rus"),
};

namespace {

constexpr short kFirstExtraLanguage = 5;

KW_String currentKey() {
    return KW_SystemText("Language_str");
}

// The form of earlier versions: the index as a number. It is read and never written.
KW_String olderKey() {
    return KW_SystemText("Language");
}

KW_AddonSettings_Type languageSettings() {
    return sett_ADDON_HAS_OWN_LANGUAGE ? KW_AddonSettings_ThisAddon : KW_AddonSettings_AllAddons;
}

short languageOfSuffix(const KW_String& suffix) {
    for (short index = 0; index < KW_Language_Count; ++index) {
        if (KW_String::CompareIgnoreCase(suffix, 0, gKW_Languages_Suffixes[index], 0, 0) == 0) return index;
    }
    return KW_Language_International;
}

// Russian has no number in the older form.
short languageOfNumber(const KW_String& text) {
    if (KW_String::IsNumber(text) == 0) return KW_Language_International;
    const long number = KW_String::ToLong(text.ToCStr(KW_String::Encoding_System).data);
    if (number < 0) return KW_Language_International;
    const long index = number & 0xFFFF;
    return index <= 5 ? static_cast<short>(index) : KW_Language_International;
}

}  // namespace

bool KW_Language_Read(bool reload) {
    if (reload) KW_AddonSettings_Load(KW_AddonSettings_AllAddons, false);
    gKW_Language = KW_Language_International;
    KW_String value;
    if (KW_AddonSettings_Get(languageSettings(), currentKey(), &value, true)) {
        gKW_Language = languageOfSuffix(value);
    } else if (KW_AddonSettings_Get(languageSettings(), olderKey(), &value, true)) {
        gKW_Language = languageOfNumber(value);
    } else {
        return false;
    }
    KW_Language_CheckSupportedLanguage();
    return true;
}

void KW_Language_Write() {
    if (gKW_Language < 0 || gKW_Language >= KW_Language_Count) gKW_Language = KW_Language_International;
    KW_AddonSettings_LoadSetSave(languageSettings(), currentKey(), gKW_Languages_Suffixes[gKW_Language],
                                 true);
    KW_Language_CheckSupportedLanguage();
}

void KW_Language_CheckSupportedLanguage() {
    if (gKW_Language < kFirstExtraLanguage) return;
    const KW_String supported = KW_SystemText(sett_ADDON_SUPP_EXTRA_LANGUAGES);
    const bool known = gKW_Language < KW_Language_Count;
    if (!known || supported.IndexOfIgnoreCase(gKW_Languages_Suffixes[gKW_Language], 0) < 0) {
        gKW_Language = KW_Language_International;
    }
}

bool KW_Language_Exists() {
    KW_String* const anyValue = nullptr;
    return KW_AddonSettings_Get(languageSettings(), currentKey(), anyValue, true) ||
           KW_AddonSettings_Get(languageSettings(), olderKey(), anyValue, true);
}

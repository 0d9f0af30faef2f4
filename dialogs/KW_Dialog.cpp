#include "dialogs/KW_Dialog.h"

#include "files/KW_Location.h"
#include "foundation/KW_Units.h"
#include "language/KW_Resource.h"
#include "platform/DialogManager.h"

namespace {

constexpr GSType kFileCreator = 0x47534143;  // 'GSAC'
constexpr int kFileIcon = 145;
constexpr short kNameAsGiven = 0;  // extension option: nothing is added to the name

}  // namespace

void KW_Dialog::ShowAlert(short type, const KW_String& text1, const KW_String& text2,
                          const KW_String& text3) {
    DGAlert(type, KW_UniStringOf(text1), KW_UniStringOf(text2), KW_UniStringOf(text3),
            KW_UniStringOf(KW_Resource_GetFrameworkString(KW_FrameworkText_OK)), GS::UniString(),
            GS::UniString());
}

void KW_Dialog::ShowMessage(const KW_String& text) {
    ShowAlert(DG_ALERT_PLAIN, KW_String(), text, KW_String());
}

KW_String KW_Dialog::SetPrefixString(const KW_String& text, bool firstPrefix, const KW_String& separator,
                                     bool toLower) {
    KW_String result;
    result = "";
    if (text.length == 0 || separator.length == 0) return result;

    const KW_String first = text.Substring(0, 1);
    result = KW_Resource_GetFrameworkString(firstPrefix ? KW_FrameworkText_ErrorPrefix
                                                        : KW_FrameworkText_WarningPrefix);
    result += separator;
    result += toLower ? first.ToLowerCase() : first.ToUpperCase();
    result += text.Substring(1);
    return result;
}

bool KW_Dialog::SaveFile(KW_Location& file, const KW_String& typeDescription, const KW_String& extension,
                         long typeCode, const KW_String& title, const KW_String& defaultPath) {
    FTM::FileTypeManager manager("Module");
    KW_List<FTM::GeneralID> filters;
    const KW_CString description = typeDescription.ToCStr(KW_String::Encoding_System);
    const KW_CString extensionText = extension.ToCStr(KW_String::Encoding_System);
    const FTM::FileType type(description.data, extensionText.data, kFileCreator,
                             static_cast<GSType>(typeCode), kFileIcon, nullptr, nullptr, true);
    filters.AddData(FTM::RootGroup(manager).AddType(type), -1);

    if (defaultPath.length == 0) return SaveFile(file, nullptr, nullptr, title, &filters, nullptr);

    const int lastSlash = defaultPath.LastIndexOf('/');
    const KW_Location name(defaultPath.Substring(static_cast<unsigned int>(lastSlash + 1)));
    KW_Location folder;
    if (lastSlash > 0) folder.Set(defaultPath.Substring(0, static_cast<unsigned int>(lastSlash)));
    return SaveFile(file, &name, folder.length != 0 ? &folder : nullptr, title, &filters, nullptr);
}

bool KW_Dialog::SaveFile(KW_Location& file, const KW_Location* defaultName, const KW_Location* defaultFolder,
                         const KW_String& title, KW_List<FTM::GeneralID>* filters, long* chosenFilter) {
    DG::FileDialog dialog(DG::FileDialog::Save);
    for (long i = 0; filters != nullptr && i < filters->count; ++i)
        dialog.AddFilter((*filters)[i], kNameAsGiven);
    if (title.length != 0) dialog.SetTitle(KW_UniStringOf(title));
    if (defaultFolder != nullptr) dialog.SetFolder(*defaultFolder);
    if (defaultName != nullptr) dialog.SelectFile(*defaultName, true);
    if (!dialog.Invoke()) return false;

    file.Set(dialog.GetSelectedFile(0));
    if (chosenFilter != nullptr) *chosenFilter = dialog.GetSelectedFilter();
    return true;
}

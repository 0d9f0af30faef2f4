#include "addon/CDlgInfo.h"

#include "addon/AddonVersion.h"
#include "addon/DialogMessages.h"
#include "addon/DialogTexts.h"
#include "dialogs/KW_Dialog.h"
#include "files/KW_Location.h"
#include "library/KW_General.h"
#include "platform/DialogManager.h"
#include "platform/FileSystem.h"
#include "platform/HostInterface.h"
#include "update/Addresses.h"

namespace {

constexpr short kDialog = 32501;
constexpr short kWidth = 705;
constexpr short kHeight = 503;

enum Item : short {
    kItemOK = 1,
    kItemCancel = 2,
    kItemProduct = 4,
    kItemVersion = 5,
    kItemDate = 6,
    kItemSystem = 7,
    kItemHost = 8,
    kItemFirstEmpty = 11,
    kItemLastEmpty = 13,
    kItemUpdatePage = 15,
    kItemSaveReport = 16,
};

enum Text : long {
    kTextVersion = 16,
    kTextDate = 17,
    kTextSystem = 18,
    kTextSaveReport = 20,
    kTextReportName = 21,
    kTextNotSaved = 22,
    kTextNotTxt = 23,
    kTextNotWritten = 24,
};

constexpr char kProduct[] = "TessaroLibrary";
constexpr char kSystem[] = "Mactel";
constexpr char kHost[] = "ArchiCAD ";
constexpr char kUpdatePage[] = "update/update.html";
constexpr char kReportType[] = "Text Files (*.txt)";
constexpr char kReportExtension[] = "TXT";
constexpr long kReportTypeCode = 0x54455854;  // 'TEXT'

void showNotSaved(Text reason) {
    KW_Dialog::ShowAlert(DG_ALERT_PLAIN, AddonText(kTextNotSaved), AddonText(reason), KW_String());
}

void saveReport(CDlgInfo& dialog) {
    KW_Location file;
    KW_List<KW_String> lines;
    bool cancelled = false;
    while (!dialog.AskForFileSave(file, cancelled))
        showNotSaved(kTextNotTxt);
    if (cancelled) return;
    dialog.BuildData(lines);
    if (!dialog.WriteData(file, lines)) showNotSaved(kTextNotWritten);
}

short CDlgInfo_CallBack(short message, short dialogID, short item, DGUserData userData, DGMessageData) {
    return AnswerDialogMessage(*reinterpret_cast<CDlgInfo*>(userData), message, dialogID, item, kWidth,
                               kHeight);
}

}  // namespace

void CDlgInfo::Reset() {
    dialogID = 0;
    KW_AddonUpdate_SplitAddonVersion(KW_String(), version);
}

bool CDlgInfo::ShowDialog() {
    Reset();
    KW_AddonUpdate_SplitAddonVersion(KW_SystemText(kAddonVersionLine), version);
    const RSResModule module = ACAPI_GetOwnResModule();
    return DGModalDialog(module, kDialog, module, CDlgInfo_CallBack, reinterpret_cast<DGUserData>(this)) ==
           kItemOK;
}

void CDlgInfo::SetItems() {
    SetDialogTitle(dialogID, KW_SystemText(kProduct));
    SetDialogItemText(dialogID, kItemOK, KW_Resource_GetFrameworkString(KW_FrameworkText_OK));
    SetDialogItemText(dialogID, kItemCancel, KW_Resource_GetFrameworkString(KW_FrameworkText_Cancel));
    SetDialogItemText(dialogID, kItemProduct, GetSuiteStr());
    for (short item = kItemFirstEmpty; item <= kItemLastEmpty; ++item)
        SetDialogItemText(dialogID, item, KW_String());
    SetDialogItemText(dialogID, kItemSaveReport, AddonText(kTextSaveReport));
    SetDialogItemText(dialogID, kItemVersion, GetVersionStr());
    SetDialogItemText(dialogID, kItemDate, GetDateStr());
    SetDialogItemText(dialogID, kItemSystem, GetSystemStr());
    SetDialogItemText(dialogID, kItemHost, GetACVersionStr());
}

KW_String CDlgInfo::GetSuiteStr() const {
    return KW_SystemText(kProduct);
}

KW_String CDlgInfo::GetVersionStr() const {
    return AddonText(kTextVersion) + " " + version.versionText;
}

KW_String CDlgInfo::GetDateStr() const {
    return AddonText(kTextDate) + " " + version.dateText;
}

KW_String CDlgInfo::GetSystemStr() const {
    return AddonText(kTextSystem) + " " + kSystem;
}

KW_String CDlgInfo::GetACVersionStr() const {
    return KW_SystemText(kHost) + KW_String::LongToString(version.hostVersion, 0);
}

bool CDlgInfo::AskForFileSave(KW_Location& file, bool& cancelled) {
    cancelled = !KW_Dialog::SaveFile(file, KW_SystemText(kReportType), KW_SystemText(kReportExtension),
                                     kReportTypeCode, AddonText(kTextSaveReport), AddonText(kTextReportName));
    if (cancelled) return true;
    return KW_String::CompareIgnoreCase(file.Extension(), 0, KW_SystemText(kReportExtension), 0, 0) == 0;
}

void CDlgInfo::BuildData(KW_List<KW_String>& lines) const {
    lines.Reset();
    for (const KW_String& line :
         {GetSuiteStr(), GetVersionStr(), GetDateStr(), GetSystemStr(), GetACVersionStr(), KW_String()}) {
        lines.AddData(line + "\n", -1);
    }
}

bool CDlgInfo::WriteData(KW_Location& file, KW_List<KW_String>& lines) const {
    IO::File hostFile(file, IO::File::Create);
    if (hostFile.Open(IO::File::WriteEmptyMode, IO::ReportAccessDenied) != kNoError) return false;
    hostFile.SetPosition(0);
    for (long i = 0; i < lines.count; ++i) {
        const KW_CString bytes = lines[i].ToCStr(KW_String::Encoding_UTF8);
        unsigned int size = bytes.size;
        while (size > 0 && bytes.data[size - 1] == 0)
            --size;
        if (hostFile.Write(bytes.data, size, nullptr) != kNoError) {
            hostFile.RecoverFromFailedWrite();
            return false;
        }
    }
    return hostFile.Close() == kNoError;
}

short CDlgInfo::MsgClick(short item) {
    switch (item) {
        case kItemOK:
        case kItemCancel:
            return item;
        case kItemUpdatePage:
            KW_General::LaunchURLByPath(KW_SystemText(kURLUpdateServer) + kUpdatePage);
            return 0;
        case kItemSaveReport:
            saveReport(*this);
            return 0;
        default:
            return 0;
    }
}

#include "dialogs/KW_Dialog.h"
#include "files/KW_File.h"
#include "language/KW_Resource.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"
#include "update/Addresses.h"
#include "update/KW_AddonUpdate_Internal.h"

KW_String sCurrentAddonVersion;
KW_String sUpdateAddonLibName;
bool sHasLibrary = false;
bool sUpdateCalledByUser = false;
short sUpdateStatus = kUpdateStatus_None;
short sIDUpdateDialog = 0;
bool sUpdateCancelled = false;
bool sUpdateDownloading = false;
bool sUpdateDialogClosed = false;

namespace {

constexpr short kUpdateDialogResID = 32755;
constexpr double kCheckInterval = 1209600.0;  // 14 days, in seconds
constexpr std::uint64_t kMaxVersionsFileSize = 16U << 20;
constexpr char kVersionsPath[] = "update_plugins/versions16.txt";
constexpr char kVersionsPlusPath[] = "update_plugins/versions_plus.txt";

/// Each host version keeps a time of its own.
KW_String lastCheckKey() {
    return KW_SystemText("LastUpdateCheck_") + KW_AddonUpdate_HostVersion() + "0";
}

KW_String versionsFileAddress() {
    return KW_SystemText(kURLUpdateServer) +
           (sett_ADDON_ONLY_PLUS_VERSION ? kVersionsPlusPath : kVersionsPath);
}

void showFailure() {
    KW_Dialog::ShowMessage(KW_Resource_GetFrameworkString(KW_FrameworkText_CheckFailed));
}

/// Its buttons act on the dialog of the last check, so there is never more than one.
void openResultDialog() {
    if (sIDUpdateDialog != 0 && !sUpdateDialogClosed) DGModelessClose(sIDUpdateDialog);
    sUpdateDialogClosed = false;
    const RSResModule module = ACAPI_GetOwnResModule();
    sIDUpdateDialog =
        DGModelessInit(module, kUpdateDialogResID, module, KW_AddonUpdate_ResultUpdate_Handler, 0);
}

void storeCheckTime() {
    KW_AddonSettings_SetLong(KW_AddonSettings_ThisAddon, lastCheckKey(), std::time(nullptr), true);
    KW_AddonSettings_Save(KW_AddonSettings_ThisAddon);
}

/// Reads the downloaded file and deletes it; one that is too large it only deletes.
bool takeVersionsFile(KW_String& text) {
    KW_Location location;
    if (!KW_AddonUpdate_GetFileLocation(location)) return false;
    KW_File file;
    if (file.Open(location, OpenMode_Read) != 0) return false;
    std::uint64_t size = 0;
    const bool read = file.file->GetRemainingLength(&size) == kNoError && size <= kMaxVersionsFileSize &&
                      file.ReadFullText(text, true, KW_String::Encoding_System) == 0;
    file.file.reset();
    KW_File::Delete(location);
    return read;
}

void showResult(KW_AddonUpdate_Comparison comparison) {
    const bool upToDate = comparison == KW_AddonUpdate_UpToDate;
    sUpdateStatus = upToDate ? kUpdateStatus_UpToDate : kUpdateStatus_Available;
    if (upToDate && !sUpdateCalledByUser) {
        DGModelessClose(sIDUpdateDialog);
        return;
    }
    KW_AddonUpdate_ResultUpdateInit(sIDUpdateDialog);
    DGShowModelessDialog(sIDUpdateDialog, 0);
}

void downloadFailed() {
    sUpdateDownloading = false;
    if (sUpdateDialogClosed) return;
    DGModelessClose(sIDUpdateDialog);
    showFailure();
}

void downloadFinished() {
    sUpdateDownloading = false;
    KW_String text;
    const bool read = takeVersionsFile(text);
    if (sUpdateDialogClosed) return;
    const auto comparison =
        read ? KW_AddonUpdate_CompareVersions(sCurrentAddonVersion, text) : KW_AddonUpdate_OwnLineInvalid;
    if (comparison == KW_AddonUpdate_OwnLineInvalid) return showFailure();
    showResult(comparison);
}

}  // namespace

bool KW_AddonUpdate_IsCheckDue(std::time_t now, long lastCheck) {
    return lastCheck == 0 || std::difftime(now, lastCheck) >= kCheckInterval;
}

bool KW_AddonUpdate_CheckForUpdate(bool byUser, const KW_String& ownVersion, const KW_String& libraryName) {
    if (sUpdateDownloading) {
        sUpdateCalledByUser = sUpdateCalledByUser || byUser;
        return true;
    }
    sUpdateCalledByUser = byUser;
    sHasLibrary = libraryName.data != nullptr;
    if (sHasLibrary) sUpdateAddonLibName = libraryName;

    KW_AddonSettings_Load(KW_AddonSettings_ThisAddon, true);
    if (!byUser) {
        const long lastCheck = KW_AddonSettings_GetLong(KW_AddonSettings_ThisAddon, lastCheckKey(), false);
        if (!KW_AddonUpdate_IsCheckDue(std::time(nullptr), lastCheck)) return true;
    }

    sCurrentAddonVersion = ownVersion;
    if (sCurrentAddonVersion.length == 0) return false;
    KW_Location location;
    if (!KW_AddonUpdate_GetFileLocation(location)) return false;

    if (!KW_General::URLDownload(versionsFileAddress(), location, KW_AddonUpdate_UpdateCallBack, nullptr)) {
        showFailure();
        return true;
    }
    sUpdateDownloading = true;
    sUpdateStatus = kUpdateStatus_Running;
    openResultDialog();
    storeCheckTime();
    return true;
}

bool KW_AddonUpdate_AutoUpdate(const KW_String& ownVersion, const KW_String& libraryName) {
    const KW_String value = KW_AddonUpdate_GetAutoUpdate();
    if (value.length == 0) {
        KW_AddonUpdate_SetAutoUpdate(true);
        return true;
    }
    if (KW_AddonUpdate_ToLong(value) != 1) return true;
    return KW_AddonUpdate_CheckForUpdate(false, ownVersion, libraryName);
}

int KW_AddonUpdate_UpdateCallBack(KW_URL_Message message, double, void*) {
    switch (message) {
        case KW_URL_Opened:
            sUpdateCancelled = false;
            break;
        case KW_URL_Progress:
            break;
        case KW_URL_Failed:
            downloadFailed();
            break;
        case KW_URL_Finished:
            downloadFinished();
            break;
    }
    return sUpdateCancelled;
}

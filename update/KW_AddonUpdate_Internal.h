#pragma once

#include "files/KW_Location.h"
#include "library/KW_General.h"
#include "platform/DialogManager.h"
#include "update/KW_AddonUpdate.h"

#include <ctime>

/// What the files of the update module share, and what its tests look at.

// ---- Texts and numbers

inline KW_String KW_AddonUpdate_SystemText(const char* text) {
    return KW_String(text, KW_String::Encoding_System);
}
inline long KW_AddonUpdate_ToLong(const KW_String& text) {
    return KW_String::ToLong(text.ToCStr(KW_String::Encoding_System).data);
}
/// A text of the suite in the current language.
KW_String KW_AddonUpdate_GetText(short index);

// ---- Versions file

/// Where the downloaded versions file lies. False when the host has no folder for it.
bool KW_AddonUpdate_GetFileLocation(KW_Location& location);

/// The kind of the line with these tokens, a KW_AddonUpdate_LineKind.
int KW_AddonUpdate_CheckVersionFormat(KW_List<KW_String>& tokens);

/// dd/mm/yyyy turned into yyyymmdd; of a shorter text what it has.
KW_String KW_AddonUpdate_FormatDate(KW_String& date);

/// The text lines ("# ...") right behind lines[index], joined by line feeds. `index` is left on the last of
/// them, or on the number of lines when these ran out.
KW_String KW_AddonUpdate_ReadText(long& index, KW_List<KW_String>& lines);

/// Appends the entries of a versions file's text to the lists.
void KW_AddonUpdate_ReadVersions(const KW_String& text, KW_List<KW_AddonUpdate_Message>& messages,
                                 KW_List<KW_AddonUpdate_Addon>& addons,
                                 KW_List<KW_AddonUpdate_Library>& libraries);

/// What a versions file says of an add-on.
enum KW_AddonUpdate_Comparison : short {
    KW_AddonUpdate_OwnLineInvalid,
    KW_AddonUpdate_UpToDate,
    KW_AddonUpdate_UpdateAvailable,
};

/// Looks in the text of a versions file for a line of the same product, host and major version as `ownLine`
/// with a later date. Only the date decides.
KW_AddonUpdate_Comparison KW_AddonUpdate_CompareVersions(const KW_String& ownLine, const KW_String& text);

// ---- Check

/// Whether an automatic check is due when the last one was started at `lastCheck` (seconds since 1970; 0:
/// never).
bool KW_AddonUpdate_IsCheckDue(std::time_t now, long lastCheck);

int KW_AddonUpdate_UpdateCallBack(KW_URL_Message message, double value, void* userData);

// ---- Setting of the automatic check

/// Empty when it has never been switched on or off.
KW_String KW_AddonUpdate_GetAutoUpdate();
void KW_AddonUpdate_SetAutoUpdate(bool on);

// ---- Result dialog

/// Fills the result dialog for the current sUpdateStatus.
void KW_AddonUpdate_ResultUpdateInit(short dialogID);
short KW_AddonUpdate_ResultUpdate_Handler(short message, short dialogID, short item, DGUserData userData,
                                          DGMessageData messageData);

// ---- State of the check

constexpr short kUpdateStatus_None = 0;
constexpr short kUpdateStatus_Running = 1;
constexpr short kUpdateStatus_UpToDate = 2;
constexpr short kUpdateStatus_Available = 3;

extern KW_String sCurrentAddonVersion;  ///< own version line of the last check
extern KW_String sUpdateAddonLibName;   ///< library name of the last check that had one
extern bool sHasLibrary;                ///< the last check had a library name
extern bool sUpdateCalledByUser;        ///< the user asked for the last check
extern short sUpdateStatus;
extern short sIDUpdateDialog;     ///< result dialog of the last check
extern bool sUpdateCancelled;     ///< the user closed the dialog since the connection opened
extern bool sUpdateDownloading;   ///< the download of the last check has not ended
extern bool sUpdateDialogClosed;  ///< the result dialog has been closed: nobody waits for the result

/// The state that the module has when it is loaded, for tests.
void KW_AddonUpdate_ResetState();

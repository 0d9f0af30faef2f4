#pragma once

#include "files/KW_Location.h"
#include "foundation/KW_Units.h"
#include "library/KW_General.h"
#include "platform/DialogManager.h"
#include "platform/HostTable.h"
#include "update/KW_AddonUpdate.h"

#include <ctime>
#include <span>
#include <vector>

/// What the files of the update module share, and what its tests look at.

// ---- Texts and numbers

/// The host's major version: "22".
inline KW_String KW_AddonUpdate_HostVersion() {
    return KW_String::LongToString(kAPIHostVersion / 1000, 0);
}
inline long KW_AddonUpdate_ToLong(const KW_String& text) {
    return KW_String::ToLong(text.ToCStr(KW_String::Encoding_System).data);
}

// ---- Versions file

/// Where the downloaded versions file is. False when the host has no folder for it.
bool KW_AddonUpdate_GetFileLocation(KW_Location& location);

/// Replaces `tokens` by those of the line. A versions file has many lines of which one or two concern an
/// add-on, so neither lines nor tokens are copied.
void KW_AddonUpdate_TakeTokens(KW_Units line, std::vector<KW_Units>& tokens);

/// The kind of the line with these tokens, a KW_AddonUpdate_LineKind.
int KW_AddonUpdate_KindOf(std::span<const KW_Units> tokens);
int KW_AddonUpdate_CheckVersionFormat(KW_List<KW_String>& tokens);

/// dd/mm/yyyy turned into yyyymmdd, so that dates compare as text; of a shorter text what it has.
KW_String KW_AddonUpdate_ArrangeDate(KW_Units date);
KW_String KW_AddonUpdate_FormatDate(KW_String& date);

/// Takes the text lines ("# ...") off the front of `rest` and joins them by line feeds.
KW_String KW_AddonUpdate_TakeText(KW_Units& rest);
/// The same right behind lines[index], which is left on the last of them, or on the number of lines when
/// these ran out.
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

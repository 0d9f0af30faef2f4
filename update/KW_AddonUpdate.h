#pragma once

#include "foundation/KW_List.h"
#include "foundation/KW_String.h"

/// The maker's versions file and the check for updates. Main thread only.

// ---- Records of the versions file

/// What a line of the versions file is, by its tokens.
enum KW_AddonUpdate_LineKind : int {
    KW_AddonUpdate_NoVersionLine = 0,
    KW_AddonUpdate_AddonLine = 1,
    KW_AddonUpdate_LibraryLine = 2,
};

/// One add-on line, such as "TessaroLibrary 22.0.4.2200 (AC220) 03/08/2018 ita int". A new record has empty
/// strings and numbers of 0.
struct KW_AddonUpdate_Addon {
    KW_String name = KW_SystemText("");
    KW_String versionText = KW_SystemText("");  ///< as written: "22.0.4.2200"
    short versionNumbers[4] = {};               ///< the first four numbers of it; 0 for a missing one
    short hostVersion = 0;                      ///< the host's major version: 22 for "(AC220)"
    KW_String date = KW_SystemText("");         ///< yyyymmdd
    KW_String dateText = KW_SystemText("");     ///< as written: "03/08/2018"
    KW_List<short> languages;                   ///< language indexes in line order
    KW_String text = KW_SystemText("");         ///< the text lines, joined by line feeds
    bool inSE = false;                          ///< false when marked "NoSE"
    bool inSuite = true;                        ///< false when marked "NoSuite"

    KW_AddonUpdate_Addon() = default;
    KW_AddonUpdate_Addon(const KW_AddonUpdate_Addon& other) = default;
    KW_AddonUpdate_Addon(KW_AddonUpdate_Addon&& other) = default;
    KW_AddonUpdate_Addon& operator=(const KW_AddonUpdate_Addon& other);
};

/// One library line, such as "Tessaro 01/10/2018". A new record has empty strings.
struct KW_AddonUpdate_Library {
    KW_String name = KW_SystemText("");
    KW_String date = KW_SystemText("");      ///< yyyymmdd
    KW_String dateText = KW_SystemText("");  ///< as written
    KW_String text = KW_SystemText("");      ///< the text lines, joined by line feeds
    bool inSuite = true;                     ///< false when marked "NoSuite"
};

/// One notice to the users. A new record has empty strings.
struct KW_AddonUpdate_Message {
    KW_String firstDate = KW_SystemText("");   ///< yyyymmdd, not checked; empty when absent
    KW_String secondDate = KW_SystemText("");  ///< likewise
    KW_String text = KW_SystemText("");        ///< up to the first "http://"
    KW_String url = KW_SystemText("");         ///< from there to the end; empty when there is none
};

/// Reads the downloaded versions file and appends its entries to the lists, in file order. Lines that are no
/// entry are passed over. Returns false, the lists unchanged, when the file cannot be read.
bool KW_AddonUpdate_ReadVersionsFile(KW_List<KW_AddonUpdate_Message>& messages,
                                     KW_List<KW_AddonUpdate_Addon>& addons,
                                     KW_List<KW_AddonUpdate_Library>& libraries);

/// Fills the record, except `text`, from an add-on line. The empty line empties the whole record, with `inSE`
/// false and `inSuite` true. Fields whose tokens a shorter line lacks become empty.
void KW_AddonUpdate_SplitAddonVersion(KW_String line, KW_AddonUpdate_Addon& addon);
/// Fills the record, except `text`, from a library line.
void KW_AddonUpdate_SplitLibVersion(KW_String line, KW_AddonUpdate_Library& library);

// ---- The check for updates

/// Starts a check: downloads the versions file and, when it has arrived, shows whether the maker has a newer
/// build of the add-on than `ownVersion` (an add-on line) tells. `libraryName` names the add-on's object
/// library in the result; null for an add-on without one.
///
/// A check that the user did not ask for is made at most once in 14 days and shows only an update or a
/// failure. While a check runs, another one is not started; when the user asks for it, the running one counts
/// as asked for by the user.
///
/// Returns false when there is no version line or no folder for the download; true otherwise, also when no
/// check was due. Any other failure is reported to the user.
bool KW_AddonUpdate_CheckForUpdate(bool byUser, const KW_String& ownVersion, const KW_String& libraryName);

/// The automatic check, if it is switched on. Where it has never been switched on or off, it is switched on
/// and no check is made yet. Returns what the check returns, true without one.
bool KW_AddonUpdate_AutoUpdate(const KW_String& ownVersion, const KW_String& libraryName);

/// Switches the automatic check on or off by the check mark of menu item `item` (from 1), in the menus
/// `menuResID` to `menuResID` + 6, each from its own mark; the last one that the host has decides. Always
/// true.
bool KW_AddonUpdate_SwitchAutoUpdateValue(short menuResID, short item);

/// Sets the check mark of the same items to what is stored. Always true.
bool KW_AddonUpdate_SetMenuUpdateCheck(short menuResID, short item);

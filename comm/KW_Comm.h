#pragma once

#include "files/KW_Location.h"
#include "platform/HostInterface.h"

/// How the add-ons of the suite learn of one another: marker files in the settings folder, module commands of
/// the host, fixed module identifiers. All operations ask the host for its version when they need it.

/// The codes of the suite's add-ons: -3 to 22, without -1. Each add-on knows its own.
enum KW_Comm_AddOnsCode : int {};

class KW_Comm {
public:
    /// Location of this add-on's marker file for a host version: sett_ADDON_SETTINGS_FILE_NAME, "_", the
    /// version, ".sui". False, `location` unchanged, when the settings folder is not known.
    static bool AddOnFileLocation(const long& hostVersion, KW_Location& location);
    /// The same for the suite's file: "Tessaro_AC", the version, ".sui". The suite puts it there.
    static bool SuiteFileLocation(const long& hostVersion, KW_Location& location);

    /// Writes anew into this add-on's marker file whether it is loaded. Whether that succeeded.
    static bool AddOnFileWrite(bool loaded);
    /// Whether this add-on's marker file says that it is loaded; false too when there is none or it is
    /// damaged.
    static bool AddOnFileRead();
    /// Deletes the marker files of all add-ons for the running host version.
    static void AddOnsFileDelete();

    /// Whether the suite is present: its main module responds (`mainModuleAnswers`), or its file exists.
    static bool SuiteIsLoaded(bool& mainModuleAnswers);
    /// Whether the suite's file of the running host version exists.
    static bool SuiteFileExist();

    /// The host module of an add-on; both fields 0x20202020 for a code that no add-on has.
    static API_ModulID GetMDID(KW_Comm_AddOnsCode code);
};

extern KW_Comm gKW_Comm;

/// Names of the module commands that the add-ons send one another.
extern const char* const kComm_CmdTestStr;
extern const char* const kComm_CmdLangStr;
extern const char* const kComm_CmdOpenStr;
extern const char* const kComm_CmdVersStr;
extern const char* const kComm_CmdChkLangStr;
extern const char* const kComm_CmdChkLangParStr;
extern const char* const kComm_CmdConvertHAStr;

#include "comm/KW_Comm.h"

#include "files/KW_File.h"
#include "platform/FileSystem.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_SettingsFile.h"

#include <array>
#include <cstdint>

KW_Comm gKW_Comm;

const char* const kComm_CmdTestStr = "Comm_CmdTest";
const char* const kComm_CmdLangStr = "Comm_CmdLang";
const char* const kComm_CmdOpenStr = "Comm_CmdOpen";
const char* const kComm_CmdVersStr = "Comm_CmdVers";
const char* const kComm_CmdChkLangStr = "Comm_CmdChkLang";
const char* const kComm_CmdChkLangParStr = "Comm_CmdChkLangPar";
const char* const kComm_CmdConvertHAStr = "Comm_CmdConvertHA";

namespace {

constexpr auto kEncoding = KW_String::Encoding_System;

constexpr std::uint32_t kDeveloperID = 0x4B7E2A19;
constexpr API_ModulID kSuiteModule = {kDeveloperID, 0x9E14EC41};
constexpr GSType kSuiteCommand = 0x53554954;  // 'SUIT'
constexpr std::int32_t kSuiteCommandVersion = 0;
constexpr API_ModulID kBlankModule = {0x20202020, 0x20202020};

constexpr int kFirstCode = -3;
constexpr std::uint32_t kNoModule = 0;

/// By code, from kFirstCode. Codes 6 and 19 are one module.
constexpr std::array<std::uint32_t, 26> kLocalIDs = {
    0xB66087E5, 0x5F6C4B2F, kNoModule,                                       // -3 to -1
    0xB2D01BA0, 0xFC120734, 0xDC45EDE8, 0x88B291EC, 0x48D8FE36, 0xA7143732,  // 0 to 5
    0x1BAA6910, 0x881F89E6, 0xAC3DFE1F, 0x3D2AADC9, 0x2E2BEED1, 0x48C33F40,  // 6 to 11
    0x22024855, 0x9EA4016E, 0x2C1EE136, 0xCF5752A1, 0xD3C6AD2C, 0xBF3B79AF,  // 12 to 17
    0xE9EE6447, 0x1BAA6910, 0x175A7FAA, 0xF0CD9A49, 0x267C2168,              // 18 to 22
};

long hostVersion() {
    API_ServerApplicationInfo info{};
    ACAPI_GetReleaseNumber(&info);
    return info.mainVersion;
}

/// `begin` is what the file's name begins with.
bool markerLocation(const KW_String& begin, long version, KW_Location& location) {
    if (KW_Location::SettingsFolder(location) != kNoError) return false;
    location += "/";
    location += begin + KW_String::LongToString(version, 0) + ".sui";
    return true;
}

}  // namespace

bool KW_Comm::AddOnFileLocation(const long& hostVersion, KW_Location& location) {
    return markerLocation(KW_String(sett_ADDON_SETTINGS_FILE_NAME, kEncoding) + "_", hostVersion, location);
}

bool KW_Comm::SuiteFileLocation(const long& hostVersion, KW_Location& location) {
    return markerLocation(KW_String("Tessaro_AC", kEncoding), hostVersion, location);
}

bool KW_Comm::AddOnFileWrite(bool loaded) {
    KW_Location location;
    if (!AddOnFileLocation(::hostVersion(), location)) return false;
    if (location.IsFile()) (void)KW_File::Delete(location);
    if (IO::File(location, IO::File::Create).GetStatus() != kNoError) return false;

    KW_List<KW_Setting> entries;
    entries.AddData(
        KW_Setting(KW_String("Tessaro Loaded", kEncoding), KW_String(loaded ? "TRUE" : "FALSE", kEncoding)),
        -1);
    return KW_SettingsFile_Write(location, entries);
}

bool KW_Comm::AddOnFileRead() {
    KW_Location location;
    if (!AddOnFileLocation(::hostVersion(), location)) return false;
    KW_List<KW_Setting> entries;
    return KW_SettingsFile_Read(location, entries) == KW_SettingsFile_Result::Read && entries.count == 1 &&
           entries[0].value == KW_String("TRUE", kEncoding);
}

void KW_Comm::AddOnsFileDelete() {
    const long version = ::hostVersion();
    KW_Location folder;
    if (KW_Location::SettingsFolder(folder) != kNoError) return;
    const KW_String suffix = "_" + KW_String::LongToString(version, 0) + ".sui";
    KW_List<KW_Location> files;
    (void)folder.GetFilesInFolder(nullptr, false, &files);
    for (long i = 0; i < files.count; ++i) {
        if (files[i].LastName().EndsWith(suffix)) (void)KW_File::Delete(files[i]);
    }
}

bool KW_Comm::SuiteIsLoaded(bool& mainModuleAnswers) {
    mainModuleAnswers = ACAPI_Command_Test(&kSuiteModule, kSuiteCommand, kSuiteCommandVersion) == kNoError;
    return mainModuleAnswers || SuiteFileExist();
}

bool KW_Comm::SuiteFileExist() {
    KW_Location location;
    return SuiteFileLocation(::hostVersion(), location) && location.IsFile();
}

API_ModulID KW_Comm::GetMDID(KW_Comm_AddOnsCode code) {
    const long index = static_cast<long>(code) - kFirstCode;
    if (index < 0 || index >= static_cast<long>(kLocalIDs.size())) return kBlankModule;
    const std::uint32_t localID = kLocalIDs[static_cast<std::size_t>(index)];
    return localID == kNoModule ? kBlankModule : API_ModulID{kDeveloperID, localID};
}

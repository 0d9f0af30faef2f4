#pragma once

#include "platform/HostTable.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// A host for the module that is linked into the test program: hands over its table when constructed, writes
/// down each call and answers what the test asks for. One at a time.
class RecordingHost {
public:
    RecordingHost();
    ~RecordingHost();
    RecordingHost(const RecordingHost&) = delete;
    RecordingHost& operator=(const RecordingHost&) = delete;

    /// "Register_Menu 32501 0 13 0", "Install_MenuHandler 32500", "KeepInMemory true", "SMIT 32501 2 Lingua",
    /// ...
    std::vector<std::string> calls;
    std::set<APIClient> clients;  ///< for whom the calls were made

    GSErrCode registerMenuAnswer = kNoError;
    GSErrCode registerLibraryAnswer = kNoError;
    std::map<short, GSErrCode> installAnswers;  ///< by menu resource ID; 0 for those not named
    std::map<short, APIMenuCommandProc> handlers;

    /// Menus that exist in this host; item requests for others fail with kNoSuchMenu.
    std::set<short> menus;
    static constexpr GSErrCode kNoSuchMenu = -2130313112;
    std::map<std::pair<short, int>, std::string> itemTexts;    ///< (menu, item) -> UTF-8
    std::map<std::pair<short, int>, std::uint32_t> itemFlags;  ///< (menu, item); 0 for those not named

    /// Answers the environment requests but for 'APPL'; none: kAPIErrNoHostFunction.
    std::function<GSErrCode(API_EnvironmentID, void*, void*, void*)> environment;
    std::function<GSErrCode(API_LibPart*)> libPartSearch;
    std::function<GSErrCode(API_LibPart*)> libPartGet;
    /// Rendering engines, number 1 first, with their menu names in UTF-8.
    std::vector<std::pair<API_ModulID, std::string>> renderingEngines;

    /// The table as handed over.
    static APIImportedFunctions table();
};

}  // namespace support

#include "tests/support/RecordingHost.h"

#include "addon/ACAPlib.h"

#include <sstream>

namespace support {
namespace {

RecordingHost* sHost = nullptr;

template <typename... Words>
void record(const Words&... words) {
    std::ostringstream line;
    const char* between = "";
    ((line << between << std::boolalpha << words, between = " "), ...);
    sHost->calls.push_back(line.str());
}

GSErrCode onRegisterMenu(APIClient, const APIMenuRegistration* menu) {
    record("Register_Menu", menu->menuResID, menu->promptResID, menu->positionCode, menu->flags);
    if (sHost->registerMenuAnswer == kNoError) sHost->menus.insert(menu->menuResID);
    return sHost->registerMenuAnswer;
}

GSErrCode onRegisterBuiltInLibrary(APIClient) {
    record("Register_BuiltInLibrary");
    return sHost->registerLibraryAnswer;
}

GSErrCode onInstallMenuHandler(APIClient, std::int16_t menuResID, APIMenuCommandProc handler) {
    record("Install_MenuHandler", menuResID);
    sHost->handlers[menuResID] = handler;
    const auto answer = sHost->installAnswers.find(menuResID);
    return answer != sHost->installAnswers.end() ? answer->second : kNoError;
}

GSErrCode onKeepInMemory(APIClient, bool keep) {
    record("KeepInMemory", keep);
    return kNoError;
}

GSErrCode onInterface(APIClient, API_InterfaceID request, void* par1, void* par2, void* par3) {
    const auto& item = *static_cast<API_MenuItemRef*>(par1);
    const std::pair<short, int> key{item.menuResID, item.itemIndex};
    const bool exists = sHost->menus.contains(item.menuResID);
    const std::string where = std::to_string(item.menuResID) + " " + std::to_string(item.itemIndex);
    if (request == APIIo_SetMenuItemTextID) {
        const std::string text = GS::UniStringToUtf8(*static_cast<const GS::UniString*>(par3));
        record("SMIT", where, text);
        if (par2 != nullptr) record("SMIT with a second parameter");
        if (exists) sHost->itemTexts[key] = text;
    } else if (request == APIIo_GetMenuItemFlagsID) {
        record("GMIF", where);
        if (exists) *static_cast<std::uint32_t*>(par2) = sHost->itemFlags[key];
    } else if (request == APIIo_SetMenuItemFlagsID) {
        record("SMIF", where, *static_cast<const std::uint32_t*>(par2));
        if (exists) sHost->itemFlags[key] = *static_cast<const std::uint32_t*>(par2);
    } else {
        return kAPIErrNoHostFunction;
    }
    return exists ? kNoError : RecordingHost::kNoSuchMenu;
}

GSErrCode onEnvironment(APIClient, API_EnvironmentID request, void* par1, void* par2, void* par3) {
    if (request == APIEnv_ApplicationID) {
        *static_cast<API_ServerApplicationInfo*>(par1) = {1, sHost->mainVersion, 0, 4023};
        return kNoError;
    }
    return sHost->environment ? sHost->environment(request, par1, par2, par3) : kAPIErrNoHostFunction;
}

GSErrCode onRegisterModelessWindow(APIClient, std::int32_t reference, APIModelessWindowProc callback,
                                   std::uint32_t flags, const GS::Guid* guid) {
    record("RegisterModelessWindow", flags, callback == nullptr ? "no callback" : "callback",
           *guid == GS::NULLGuid ? "null guid" : "guid");
    return reference != 0 ? kNoError : -1;
}

GSErrCode onUnregisterModelessWindow(APIClient, std::int32_t) {
    record("UnregisterModelessWindow");
    return kNoError;
}

GSErrCode onLibPartSearch(APIClient, API_LibPart* part, bool createIfMissing, bool onlyPlaceable) {
    record("LibPart_Search", createIfMissing, onlyPlaceable);
    return sHost->libPartSearch ? sHost->libPartSearch(part) : kAPIErrNoHostFunction;
}

GSErrCode onLibPartGet(APIClient, API_LibPart* part) {
    record("LibPart_Get");
    return sHost->libPartGet ? sHost->libPartGet(part) : kAPIErrNoHostFunction;
}

GSErrCode onCommandTest(APIClient, const API_ModulID*, GSType, std::int32_t) {
    record("Command_Test");
    return -1;
}

GSErrCode onCommandPublish(APIClient, const API_ModulID*, GSType, std::int32_t) {
    record("Command_Publish");
    return kNoError;
}

std::int32_t onRenderingEngineCount(APIClient) {
    return static_cast<std::int32_t>(sHost->renderingEngines.size());
}

GSErrCode onRenderingEngineID(APIClient, std::int32_t index, API_ModulID* engine) {
    if (index < 1 || index > onRenderingEngineCount(nullptr)) return -1;
    *engine = sHost->renderingEngines[static_cast<std::size_t>(index - 1)].first;
    return kNoError;
}

GSErrCode onRenderingEngineMenuName(APIClient, const API_ModulID* engine, GS::UniString* name) {
    for (const auto& [id, menuName] : sHost->renderingEngines) {
        if (id != *engine) continue;
        *name = GS::UniStringFromUtf8(menuName);
        return kNoError;
    }
    return -1;
}

}  // namespace

APIImportedFunctions RecordingHost::table(const std::set<HostSlot>& emptySlots) {
    APIImportedFunctions result{};
    const auto fill = [&result](HostSlot slot, auto function) {
        result.slots[static_cast<std::size_t>(slot)] = reinterpret_cast<APIHostFunction>(function);
    };
    fill(HostSlot::RegisterMenu, HostFunction::RegisterMenu(onRegisterMenu));
    fill(HostSlot::RegisterBuiltInLibrary, HostFunction::RegisterBuiltInLibrary(onRegisterBuiltInLibrary));
    fill(HostSlot::InstallMenuHandler, HostFunction::InstallMenuHandler(onInstallMenuHandler));
    fill(HostSlot::KeepInMemory, HostFunction::KeepInMemory(onKeepInMemory));
    fill(HostSlot::Environment, HostFunction::Environment(onEnvironment));
    fill(HostSlot::Interface, HostFunction::Interface(onInterface));
    fill(HostSlot::RegisterModelessWindow, HostFunction::RegisterModelessWindow(onRegisterModelessWindow));
    fill(HostSlot::UnregisterModelessWindow,
         HostFunction::UnregisterModelessWindow(onUnregisterModelessWindow));
    fill(HostSlot::LibPartSearch, HostFunction::LibPartSearch(onLibPartSearch));
    fill(HostSlot::LibPartGet, HostFunction::LibPartGet(onLibPartGet));
    fill(HostSlot::CommandTest, HostFunction::CommandTest(onCommandTest));
    fill(HostSlot::CommandPublish, HostFunction::CommandPublish(onCommandPublish));
    fill(HostSlot::RenderingEngineCount, HostFunction::RenderingEngineCount(onRenderingEngineCount));
    fill(HostSlot::RenderingEngineID, HostFunction::RenderingEngineID(onRenderingEngineID));
    fill(HostSlot::RenderingEngineMenuName, HostFunction::RenderingEngineMenuName(onRenderingEngineMenuName));
    for (const HostSlot slot : emptySlots)
        result.slots[static_cast<std::size_t>(slot)] = nullptr;
    return result;
}

RecordingHost::RecordingHost() {
    sHost = this;
    const APIImportedFunctions full = table();
    SetImportedFuncAddrs(&full);
}

RecordingHost::~RecordingHost() {
    const APIImportedFunctions empty{};
    SetImportedFuncAddrs(&empty);
    sHost = nullptr;
}

APIExportedFunctions RecordingHost::exported() {
    APIExportedFunctions record;
    GetExportedFuncAddrs(&record);
    return record;
}

GSErrCode RecordingHost::choose(short menuResID, int item) {
    const API_MenuParams params{{menuResID, item}};
    return handlers.at(menuResID)(&params);
}

}  // namespace support

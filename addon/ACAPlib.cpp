// The bridge into the host: the two exported functions, the entry-point wrappers, the image hooks, and every
// ACAPI_* function as a forwarder into the table that the host hands over.

#include "addon/ACAPlib.h"

#include "addon/EntryPoints.h"
#include "platform/Bundle.h"
#include "platform/FileSystem.h"
#include "platform/HostTable.h"
#include "platform/LibraryPart.h"
#include "platform/Rendering.h"
#include "platform/ResourceManager.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <type_traits>

namespace {

constexpr std::size_t kBundlePathSize = 1024;  // bytes, with the terminator

APIImportedFunctions sImported{};
bool sImportedIsSet = false;
APIClient sClient = nullptr;
APIDllTermHookProc sTermHook = nullptr;
RSResModule sResModule = kNoResModule;
char sBundlePath[kBundlePathSize];  // empty when it is not known or does not fit

/// The host's function in a slot, or null.
template <typename Function>
Function hostFunction(HostSlot slot) {
    static_assert(std::is_pointer_v<Function>);
    return reinterpret_cast<Function>(sImported.slots[static_cast<std::size_t>(slot)]);
}

template <typename Function, typename... Arguments>
GSErrCode callHost(HostSlot slot, Arguments... arguments) {
    const auto function = hostFunction<Function>(slot);
    return function != nullptr ? function(sClient, arguments...) : kAPIErrNoHostFunction;
}

int checkEnvironmentEntry(API_EnvirParams* params) {
    return sImportedIsSet ? CheckEnvironment(params) : kAPIAddonDontRegister;
}

GSErrCode registerInterfaceEntry() {
    return sImportedIsSet ? RegisterInterface() : kAPIErrNotInitialised;
}

GSErrCode initializeEntry(APIClient client) {
    if (!sImportedIsSet) return kAPIErrNotInitialised;
    sClient = client;
    return Initialize();
}

GSErrCode freeDataEntry() {
    if (!sImportedIsSet) return kAPIErrNotInitialised;
    const GSErrCode result = FreeData();
    sClient = nullptr;
    return result;
}

void GSTermImage() {
    if (sResModule != kNoResModule) {
        RSRemoveModuleImageCache(sResModule);
        RSCloseResourceFile(sResModule);
    }
    sResModule = kNoResModule;
    if (sClient == nullptr) return;
    DBPrintf("Abnormal add-on termination (\"%s\")", sBundlePath);
    if (sTermHook != nullptr) {
        DBPrintf(", calling custom DllTermHookProc\n");
        sTermHook();
    } else {
        DBPrintf("\n");
    }
    sClient = nullptr;
}

int GSInitImage() {
    if (GSRoot_DelayInitImage(GSInitImage)) return 0;
    std::atexit(GSTermImage);
    const GSCFXBundleRef bundle = GSCFXBundleCreateFromMachHeader(&sImported);
    const std::string path = bundle != nullptr ? GSCFXBundlePath(bundle) : std::string();
    if (path.size() < kBundlePathSize) sBundlePath[path.copy(sBundlePath, path.size())] = 0;
    sResModule = sBundlePath[0] != 0 ? RSOpenResourceFile(sBundlePath) : kNoResModule;
    if (bundle != nullptr) GSCFXBundleRelease(bundle);
    return 0;
}

/// This file is linked last, so that the module's other objects exist before the hook runs.
[[maybe_unused]] const int sInitImageResult = GSInitImage();

}  // namespace

extern "C" {

__attribute__((visibility("default"))) void GetExportedFuncAddrs(APIExportedFunctions* record) {
    std::memset(record, 0, sizeof *record);
    record->interfaceVersion = kAPIInterfaceVersion;
    record->checkEnvironment = checkEnvironmentEntry;
    record->registerInterface = registerInterfaceEntry;
    record->initialize = initializeEntry;
    record->freeData = freeDataEntry;
    record->hostVersion = kAPIHostVersion;
}

__attribute__((visibility("default"))) GSErrCode SetImportedFuncAddrs(const APIImportedFunctions* table) {
    sImported = *table;
    sImportedIsSet = true;
    return kNoError;
}

}  // extern "C"

GSErrCode ACAPI_Register_Menu(short menuResID, short promptResID, int positionCode, unsigned int flags) {
    const APIMenuRegistration registration{menuResID, promptResID, positionCode, flags};
    return callHost<HostFunction::RegisterMenu>(HostSlot::RegisterMenu, &registration);
}

GSErrCode ACAPI_Register_BuiltInLibrary() {
    return callHost<HostFunction::RegisterBuiltInLibrary>(HostSlot::RegisterBuiltInLibrary);
}

GSErrCode ACAPI_Install_MenuHandler(short menuResID, APIMenuCommandProc handler) {
    return callHost<HostFunction::InstallMenuHandler>(HostSlot::InstallMenuHandler, menuResID, handler);
}

GSErrCode ACAPI_KeepInMemory(bool keep) {
    return callHost<HostFunction::KeepInMemory>(HostSlot::KeepInMemory, keep);
}

GSErrCode ACAPI_Environment(API_EnvironmentID request, void* par1, void* par2, void* par3) {
    return callHost<HostFunction::Environment>(HostSlot::Environment, request, par1, par2, par3);
}

GSErrCode ACAPI_Interface(API_InterfaceID request, void* par1, void* par2, void* par3) {
    return callHost<HostFunction::Interface>(HostSlot::Interface, request, par1, par2, par3);
}

GSErrCode ACAPI_RegisterModelessWindow(std::int32_t referenceID, APIModelessWindowProc callback,
                                       unsigned int flags, const GS::Guid& reference) {
    return callHost<HostFunction::RegisterModelessWindow>(HostSlot::RegisterModelessWindow, referenceID,
                                                          callback, flags, &reference);
}

GSErrCode ACAPI_UnregisterModelessWindow(std::int32_t referenceID) {
    return callHost<HostFunction::UnregisterModelessWindow>(HostSlot::UnregisterModelessWindow, referenceID);
}

GSErrCode ACAPI_LibPart_Search(API_LibPart* part, bool createIfMissing, bool onlyPlaceable) {
    return callHost<HostFunction::LibPartSearch>(HostSlot::LibPartSearch, part, createIfMissing,
                                                 onlyPlaceable);
}

GSErrCode ACAPI_LibPart_Get(API_LibPart* part) {
    return callHost<HostFunction::LibPartGet>(HostSlot::LibPartGet, part);
}

GSErrCode ACAPI_Command_Test(const API_ModulID* module, GSType command, std::int32_t version) {
    return callHost<HostFunction::CommandTest>(HostSlot::CommandTest, module, command, version);
}

short EXPGetRendCount() {
    const auto count = hostFunction<HostFunction::RenderingEngineCount>(HostSlot::RenderingEngineCount);
    return count != nullptr ? static_cast<short>(std::clamp(count(sClient), 0, SHRT_MAX)) : 0;
}

GSErrCode EXPGetRendMDID(short index, MDID* engine) {
    return callHost<HostFunction::RenderingEngineID>(HostSlot::RenderingEngineID, index, engine);
}

GSErrCode EXPGetRendMenuStr(const MDID* engine, GS::UniString* name) {
    return callHost<HostFunction::RenderingEngineMenuName>(HostSlot::RenderingEngineMenuName, engine, name);
}

GSErrCode ACAPI_Command_Publish(const API_ModulID* self, GSType command, std::int32_t version) {
    return callHost<HostFunction::CommandPublish>(HostSlot::CommandPublish, self, command, version);
}

void ACAPI_GetReleaseNumber(API_ServerApplicationInfo* info) {
    if (info != nullptr) ACAPI_Environment(APIEnv_ApplicationID, info, nullptr, nullptr);
}

RSResModule ACAPI_GetOwnResModule() {
    return sResModule;
}

GSErrCode ACAPI_GetOwnLocation(IO::Location& location) {
    static const IO::Location sOwnLocation = IO::Location::FromPosixPath(sBundlePath);
    if (sBundlePath[0] == 0) {
        location = IO::Location();
        return kAPIErrNoOwnLocation;
    }
    location = sOwnLocation;
    return kNoError;
}

void ACAPI_SetDllTermHookProc(APIDllTermHookProc hook) {
    sTermHook = hook;
}

bool ACAPI_Resource_GetLocUStr(unsigned short* buffer, short resID, short index, RSResModule module) {
    return RSGetIndString_ParamAdapter(RSStringLocalised, buffer, resID, index, module);
}

bool ACAPI_Resource_GetFixStr(char* buffer, short resID, short index, RSResModule module) {
    return RSGetIndString_ParamAdapter(RSStringFixed, buffer, resID, index, module);
}

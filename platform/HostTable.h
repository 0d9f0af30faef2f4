#pragma once

#include "platform/HostInterface.h"

#include <cstddef>
#include <cstdint>

/// The contract between a host and an add-on bundle: two exported functions, two records.
///
/// The order of calls: the bundle is loaded; GetExportedFuncAddrs fills the add-on's record;
/// SetImportedFuncAddrs receives the host's table; then the four entry points, environment check,
/// registration, initialisation and, at the end, free data. The table is read only after it was handed over.

/// The host's own mark for one loaded add-on: handed to the initialisation entry point, held by the add-on
/// until free data, and passed back as first argument of most host functions. Null before and after.
using APIClient = void*;

using APICheckEnvironmentProc = int (*)(API_EnvirParams* params);
using APIRegisterInterfaceProc = GSErrCode (*)();
using APIInitializeProc = GSErrCode (*)(APIClient client);
using APIFreeDataProc = GSErrCode (*)();

/// Filled by GetExportedFuncAddrs; every byte not named is zero.
struct APIExportedFunctions {
    std::uint32_t interfaceVersion;  ///< kAPIInterfaceVersion
    std::uint32_t reserved0;
    APICheckEnvironmentProc checkEnvironment;
    APIRegisterInterfaceProc registerInterface;
    APIInitializeProc initialize;
    APIFreeDataProc freeData;
    std::int32_t hostVersion;  ///< kAPIHostVersion
    std::uint8_t reserved1[76];
};
static_assert(sizeof(APIExportedFunctions) == 120);
static_assert(offsetof(APIExportedFunctions, checkEnvironment) == 8);
static_assert(offsetof(APIExportedFunctions, hostVersion) == 40);

constexpr std::uint32_t kAPIInterfaceVersion = 0x00160001;
constexpr std::int32_t kAPIHostVersion = 22000;

constexpr std::size_t kAPIHostFunctionCount = 519;

using APIHostFunction = void (*)();

/// The host's functions; each slot holds a function of the type that belongs to it, or null.
struct APIImportedFunctions {
    APIHostFunction slots[kAPIHostFunctionCount];
};
static_assert(sizeof(APIImportedFunctions) == 4152);

/// Names of the two exported functions, C linkage.
constexpr const char* kAPIGetExportedFuncAddrsName = "GetExportedFuncAddrs";
constexpr const char* kAPISetImportedFuncAddrsName = "SetImportedFuncAddrs";
using APIGetExportedFuncAddrsProc = void (*)(APIExportedFunctions* record);
using APISetImportedFuncAddrsProc = GSErrCode (*)(const APIImportedFunctions* table);

/// Slots of the host's table that add-ons of the suite use.
enum class HostSlot : std::size_t {
    RegisterMenu = 10,
    RegisterBuiltInLibrary = 14,
    InstallMenuHandler = 20,
    KeepInMemory = 31,
    Environment = 40,
    Interface = 41,
    RegisterModelessWindow = 60,
    UnregisterModelessWindow = 61,
    LibPartSearch = 120,
    LibPartGet = 121,
    CommandTest = 200,
    CommandPublish = 201,
    RenderingEngineCount = 240,
    RenderingEngineID = 241,
    RenderingEngineMenuName = 242,
};

/// Arguments of menu registration.
struct APIMenuRegistration {
    std::int16_t menuResID;
    std::int16_t promptResID;
    std::int32_t positionCode;
    std::uint32_t flags;
};

struct API_LibPart;

/// Types of the functions in the slots.
namespace HostFunction {
using RegisterMenu = GSErrCode (*)(APIClient, const APIMenuRegistration*);
using RegisterBuiltInLibrary = GSErrCode (*)(APIClient);
using InstallMenuHandler = GSErrCode (*)(APIClient, std::int16_t menuResID, APIMenuCommandProc);
using KeepInMemory = GSErrCode (*)(APIClient, bool keep);
using Environment = GSErrCode (*)(APIClient, API_EnvironmentID, void*, void*, void*);
using Interface = GSErrCode (*)(APIClient, API_InterfaceID, void*, void*, void*);
using RegisterModelessWindow = GSErrCode (*)(APIClient, std::int32_t, APIModelessWindowProc, std::uint32_t,
                                             const GS::Guid*);
using UnregisterModelessWindow = GSErrCode (*)(APIClient, std::int32_t);
using LibPartSearch = GSErrCode (*)(APIClient, API_LibPart*, bool createIfMissing, bool onlyPlaceable);
using LibPartGet = GSErrCode (*)(APIClient, API_LibPart*);
using CommandTest = GSErrCode (*)(APIClient, const API_ModulID*, GSType, std::int32_t);
/// Publishes a command of the calling add-on, which is module `self`, for CommandTest.
using CommandPublish = GSErrCode (*)(APIClient, const API_ModulID* self, GSType, std::int32_t version);
/// The number of engines.
using RenderingEngineCount = std::int32_t (*)(APIClient);
/// Identifier of engine `index`, from 1.
using RenderingEngineID = GSErrCode (*)(APIClient, std::int32_t index, API_ModulID* out);
using RenderingEngineMenuName = GSErrCode (*)(APIClient, const API_ModulID*, GS::UniString* out);
}  // namespace HostFunction

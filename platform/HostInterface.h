#pragma once

#include "platform/HostError.h"
#include "platform/ResourceManager.h"
#include "platform/UniString.h"

#include <cstdint>

/// What an add-on calls of its host, and the records that pass between the two. The functions are declared
/// here, where every room finds them, and defined by the bridge into the table that the host hands over
/// (addon/ACAPlib.cpp). All on the host's main thread. A host function answers 0 for success, else an error
/// code; kAPIErrNoHostFunction when the host's table has no such function.

namespace IO {
class Location;
}

using GSType = std::uint32_t;  ///< four characters, the first in the highest byte

/// An entry point was called before the host's function table was handed over.
constexpr GSErrCode kAPIErrNotInitialised = hostError(0x81060001);
/// The location of the add-on's own bundle is not known.
constexpr GSErrCode kAPIErrNoOwnLocation = hostError(0x81060385);
/// The host's table has an empty slot for this function.
constexpr GSErrCode kAPIErrNoHostFunction = hostError(0x81060387);
/// A library-part search found only a part whose definition is missing.
constexpr GSErrCode kAPIErrMissingDefinition = -7003;

// ---- Entry points -------------------------------------------------------------------------------------

/// The application that loads the add-on.
struct API_ServerApplicationInfo {
    std::uint32_t serverApplication;  ///< 1: the CAD host that this suite is made for
    std::uint16_t mainVersion;        ///< 22
    std::uint16_t releaseVersion;
    std::uint32_t buildNumber;
};

/// What the add-on reports about itself.
struct API_AddOnInfo {
    GS::UniString name;
    GS::UniString description;
};

/// Argument of the environment check.
struct API_EnvirParams {
    API_ServerApplicationInfo serverInfo;
    API_AddOnInfo addOnInfo;
};

/// Results of the environment check.
constexpr int kAPIAddonDontRegister = 0;
constexpr int kAPIAddonNormal = 2;

/// One item of one menu.
struct API_MenuItemRef {
    std::int16_t menuResID;
    std::int32_t itemIndex;  ///< from 1
};

/// Argument of a menu handler.
struct API_MenuParams {
    API_MenuItemRef menuItemRef;
};

using APIMenuCommandProc = GSErrCode (*)(const API_MenuParams* params);

GSErrCode ACAPI_Register_Menu(short menuResID, short promptResID, int positionCode, unsigned int flags);
/// Registers the library parts in the add-on's resources as a built-in library of the host.
GSErrCode ACAPI_Register_BuiltInLibrary();
GSErrCode ACAPI_Install_MenuHandler(short menuResID, APIMenuCommandProc handler);
/// True keeps the add-on loaded between calls.
GSErrCode ACAPI_KeepInMemory(bool keep);

// ---- The add-on itself ----------------------------------------------------------------------------------

/// Handle of the add-on's own resource file; -1 when it could not be opened.
RSResModule ACAPI_GetOwnResModule();
/// Location of the add-on's bundle; kAPIErrNoOwnLocation, `location` cleared, when it is not known.
GSErrCode ACAPI_GetOwnLocation(IO::Location& location);
/// Function that is called when the add-on goes away without its free-data entry point having been called.
using APIDllTermHookProc = void (*)();
void ACAPI_SetDllTermHookProc(APIDllTermHookProc hook);
/// String `index` (from 1) of string resource `resID` with its terminator, in a buffer of
/// kRSStringBufferUnits UTF-16 units. Returns whether it was found.
bool ACAPI_Resource_GetLocUStr(unsigned short* buffer, short resID, short index, RSResModule module);
/// The same as 8-bit text in the system encoding.
bool ACAPI_Resource_GetFixStr(char* buffer, short resID, short index, RSResModule module);
/// Nothing happens when `info` is null or the host does not know.
void ACAPI_GetReleaseNumber(API_ServerApplicationInfo* info);

// ---- Environment ------------------------------------------------------------------------------------------

/// Requests of ACAPI_Environment, with their parameters.
enum API_EnvironmentID : GSType {
    APIEnv_ApplicationID = 0x4150504C,   ///< 'APPL': API_ServerApplicationInfo* out
    APIEnv_GetLibrariesID = 0x474C4942,  ///< 'GLIB': API_LibraryList* out, std::int32_t* embedded index out
    APIEnv_AddLibraryID = 0x414C4942,    ///< 'ALIB': const IO::Location* folder
    APIEnv_ProjectID = 0x50524F4A,       ///< 'PROJ': API_ProjectInfo* out
    APIEnv_GetRenderingEngineID = 0x4752454E,  ///< 'GREN': API_ModulID* out
    APIEnv_SetRenderingEngineID = 0x4352454E,  ///< 'CREN': const API_ModulID*
};

GSErrCode ACAPI_Environment(API_EnvironmentID request, void* par1, void* par2, void* par3);

/// Identifies a module of the host or an add-on.
struct API_ModulID {
    std::uint32_t developerID;
    std::uint32_t localID;
    friend bool operator==(const API_ModulID&, const API_ModulID&) = default;
};

/// Whether the module answers the command; 0 when it does.
GSErrCode ACAPI_Command_Test(const API_ModulID* module, GSType command, std::int32_t version);
/// Lets this add-on, as module `self`, answer the command as long as it is loaded. In RegisterInterface.
GSErrCode ACAPI_Command_Publish(const API_ModulID* self, GSType command, std::int32_t version);

// ---- Interface --------------------------------------------------------------------------------------------

/// Requests of ACAPI_Interface, with their parameters.
enum API_InterfaceID : GSType {
    APIIo_SetMenuItemTextID = 0x534D4954,   ///< 'SMIT': API_MenuItemRef*, null, const GS::UniString*
    APIIo_GetMenuItemFlagsID = 0x474D4946,  ///< 'GMIF': API_MenuItemRef*, std::uint32_t* out
    APIIo_SetMenuItemFlagsID = 0x534D4946,  ///< 'SMIF': API_MenuItemRef*, const std::uint32_t*
};

/// Flags of a menu item.
constexpr std::uint32_t kAPIMenuItemChecked = 0x0002;

GSErrCode ACAPI_Interface(API_InterfaceID request, void* par1, void* par2, void* par3);

namespace GS {
/// A 128-bit identifier.
struct Guid {
    std::uint8_t bytes[16];
    friend bool operator==(const Guid&, const Guid&) = default;
};
inline constexpr Guid NULLGuid{};
}  // namespace GS

using APIModelessWindowProc = GSErrCode (*)(std::int32_t referenceID, std::int32_t message);

/// Tells the host of a modeless dialog, under its dialog ID. `callback` may be null; `flags` 7 lets the
/// window live in every kind of view.
GSErrCode ACAPI_RegisterModelessWindow(std::int32_t referenceID, APIModelessWindowProc callback,
                                       unsigned int flags, const GS::Guid& reference);
GSErrCode ACAPI_UnregisterModelessWindow(std::int32_t referenceID);

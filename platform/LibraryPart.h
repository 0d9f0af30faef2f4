#pragma once

#include "platform/FileSystem.h"
#include "platform/HostInterface.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Library parts of the host and their libraries.

/// The host's library-part types.
enum API_LibTypeID : std::int32_t {
    APILib_Any = 0,  ///< a search finds parts of every type
    APILib_Window = 1,
    APILib_Door = 2,
    APILib_Object = 3,
    APILib_Lamp = 4,
    APILib_Room = 5,
    APILib_Property = 6,
    APILib_Label = 7,
    APILib_Macro = 8,
    APILib_Picture = 9,
};

constexpr std::size_t kAPIPartNameUnits = 256;  ///< with the terminator

/// No library part of the name and type, or of the index.
constexpr GSErrCode kAPIErrNoSuchPart = hostError(0x81060201);

/// One library part. A search reads the type and the name, a get reads the index; both fill all fields. After
/// an error the record is as it was.
struct API_LibPart {
    API_LibTypeID typeID;
    std::int32_t index;  ///< from 1; the host's number of the part, stable while its library is loaded
    bool missingDef;     ///< the part is known, its definition is missing; found when there is no better one
    unsigned short name[kAPIPartNameUnits];  ///< UTF-16 without extension, zero-terminated
    IO::Location* location;  ///< allocated by the host, released by the caller; null when none
};

/// One loaded library.
struct API_LibraryInfo {
    IO::Location location;
};

/// The loaded libraries in the order in which they were loaded (APIEnv_GetLibrariesID).
using API_LibraryList = std::vector<API_LibraryInfo>;

/// Searches the loaded libraries. Letter case does not count in names. The two flags are false in this suite:
/// no placeholder is made for a part that is missing, and parts of every kind are found.
GSErrCode ACAPI_LibPart_Search(API_LibPart* part, bool createIfMissing, bool onlyPlaceable);
/// The part of the index.
GSErrCode ACAPI_LibPart_Get(API_LibPart* part);

#pragma once

#include "platform/FileSystem.h"
#include "platform/HostInterface.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Library parts of the host and the libraries they lie in.

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

/// One library part. A search reads the type and the name, a get reads the index; both fill all fields.
struct API_LibPart {
    API_LibTypeID typeID;
    std::int32_t index;  ///< from 1; the host's number of the part, stable while its library is loaded
    bool missingDef;     ///< the part is known, its definition is missing
    unsigned short name[kAPIPartNameUnits];  ///< UTF-16 without extension, zero-terminated
    IO::Location* location;  ///< allocated by the host, released by the caller; null when none
};

/// One loaded library.
struct API_LibraryInfo {
    IO::Location location;
};

GSErrCode ACAPI_LibPart_Search(API_LibPart* part, bool createIfMissing, bool onlyPlaceable);
GSErrCode ACAPI_LibPart_Get(API_LibPart* part);

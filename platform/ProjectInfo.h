#pragma once

#include "platform/FileSystem.h"

/// What the host reports about the open project (APIEnv_ProjectID).
struct API_ProjectInfo {
    bool untitled;          ///< the project has not been saved yet; it has no location then
    IO::Location location;  ///< of the project file
};

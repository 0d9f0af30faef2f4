#pragma once

#include "platform/HostTable.h"

namespace host {

/// The library parts that the host knows, behind the slots of the same names.
class LibraryParts {
public:
    virtual ~LibraryParts() = default;
    virtual GSErrCode search(API_LibPart* part, bool createIfMissing, bool onlyPlaceable) = 0;
    virtual GSErrCode get(API_LibPart* part) = 0;
};

}  // namespace host

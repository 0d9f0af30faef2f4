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

/// The host's rendering engines, numbered from 1.
class RenderingEngines {
public:
    virtual ~RenderingEngines() = default;
    virtual std::int32_t count() const = 0;
    virtual GSErrCode identifier(std::int32_t index, API_ModulID* out) const = 0;
    virtual GSErrCode menuName(const API_ModulID& engine, GS::UniString* out) const = 0;
};

}  // namespace host

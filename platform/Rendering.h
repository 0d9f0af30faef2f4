#pragma once

#include "platform/HostInterface.h"
#include "platform/UniString.h"

/// The host's rendering extensions (rendering engines). Engines are numbered from 1; the numbers hold until
/// the host's list of engines changes.

/// Identifies a rendering engine: developer, then the developer's own number.
using MDID = API_ModulID;

/// How many engines the host has; 0 if it does not know.
short EXPGetRendCount();
/// Identifier of engine `index`. `*engine` is set only on success.
GSErrCode EXPGetRendMDID(short index, MDID* engine);
/// Name of the engine as the host's menu shows it. `*name` is set only on success.
GSErrCode EXPGetRendMenuStr(const MDID* engine, GS::UniString* name);

#pragma once

#include "platform/HostInterface.h"

/// The menu handlers of TessaroLibrary, one for each language menu (resource IDs 32500 to 32505). Each does
/// nothing when the parameters name another menu, and always returns 0.
extern "C" {
GSErrCode MenuCommandHandler_ITA(const API_MenuParams* params);
GSErrCode MenuCommandHandler_INT(const API_MenuParams* params);
GSErrCode MenuCommandHandler_FRA(const API_MenuParams* params);
GSErrCode MenuCommandHandler_GER(const API_MenuParams* params);
GSErrCode MenuCommandHandler_ESP(const API_MenuParams* params);
GSErrCode MenuCommandHandler_JAP(const API_MenuParams* params);
}

#pragma once

#include "platform/HostInterface.h"

/// The menu handlers of TessaroLibrary, one for each language menu (resource IDs 32500 to 32505). Each does
/// nothing when the parameters name another menu, and always returns 0.
extern "C" {
GSErrCode MenuCommandHandler_ITA(API_MenuParams const* params);
GSErrCode MenuCommandHandler_INT(API_MenuParams const* params);
GSErrCode MenuCommandHandler_FRA(API_MenuParams const* params);
GSErrCode MenuCommandHandler_GER(API_MenuParams const* params);
GSErrCode MenuCommandHandler_ESP(API_MenuParams const* params);
GSErrCode MenuCommandHandler_JAP(API_MenuParams const* params);
}

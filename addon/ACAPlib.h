#pragma once

#include "platform/HostTable.h"

/// The two functions that an add-on's shared object exports; the host finds them by name and calls them in
/// this order, right after loading.
extern "C" {

/// Fills the 120 bytes of `record`: two version stamps, the four entry points, zero elsewhere. Until the
/// host's table was handed over, the entry points answer kAPIAddonDontRegister (environment check) and
/// kAPIErrNotInitialised (the others) in place of the add-on's own.
void GetExportedFuncAddrs(APIExportedFunctions* record);

/// Copies the host's table. Returns 0.
GSErrCode SetImportedFuncAddrs(const APIImportedFunctions* table);
}

#pragma once

#include "platform/HostTable.h"

namespace host {

/// The table that every loaded add-on gets: the functions of Host::current().
const APIImportedFunctions& functionTable();

}  // namespace host

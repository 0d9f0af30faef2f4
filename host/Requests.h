#pragma once

#include "platform/HostInterface.h"
#include "platform/HostTable.h"

namespace host {

/// This host, as the environment check and the release number request see it.
API_ServerApplicationInfo applicationInfo();

/// Behind the table's slots of these names. The parameters are those that the add-on passed; what each points
/// to depends on the request.
GSErrCode environment(APIClient client, API_EnvironmentID code, void* par1, void* par2, void* par3);
GSErrCode interfaceRequest(APIClient client, API_InterfaceID code, void* par1, void* par2, void* par3);

}  // namespace host

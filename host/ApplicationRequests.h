#pragma once

#include "host/RequestFamily.h"

namespace host {

/// This host, as the environment check and the release number request see it.
API_ServerApplicationInfo applicationInfo();

/// The release number of the host.
class ApplicationRequests : public RequestFamily {
public:
    std::vector<GSType> codes() const override { return {APIEnv_ApplicationID}; }
    GSErrCode answer(AddOn& addOn, GSType code, void* par1, void* par2, void* par3) override;
    platform::TraceArguments outputs(GSType code, const void* par1, const void* par2,
                                     const void* par3) const override;
};

}  // namespace host

#pragma once

#include "host/RequestFamily.h"

namespace host {

/// Texts and flags of the calling add-on's own menu items.
class MenuRequests : public RequestFamily {
public:
    std::vector<GSType> codes() const override;
    GSErrCode answer(AddOn& addOn, GSType code, void* par1, void* par2, void* par3) override;
    platform::TraceArguments arguments(GSType code, const void* par1, const void* par2,
                                       const void* par3) const override;
    platform::TraceArguments outputs(GSType code, const void* par1, const void* par2,
                                     const void* par3) const override;
};

}  // namespace host

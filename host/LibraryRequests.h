#pragma once

#include "host/RequestFamily.h"

namespace host {

class Libraries;

/// The loaded libraries, and the loading of one.
class LibraryRequests : public RequestFamily {
public:
    /// `libraries` stays the caller's.
    explicit LibraryRequests(Libraries& libraries) : libraries_(libraries) {}

    std::vector<GSType> codes() const override { return {APIEnv_GetLibrariesID, APIEnv_AddLibraryID}; }
    GSErrCode answer(AddOn& addOn, GSType code, void* par1, void* par2, void* par3) override;
    platform::TraceArguments arguments(GSType code, const void* par1, const void* par2,
                                       const void* par3) const override;
    platform::TraceArguments outputs(GSType code, const void* par1, const void* par2,
                                     const void* par3) const override;

private:
    Libraries& libraries_;
};

}  // namespace host

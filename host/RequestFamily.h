#pragma once

#include "platform/host/CallTrace.h"
#include "platform/HostInterface.h"

#include <vector>

namespace host {

struct AddOn;

/// A group of requests of ACAPI_Environment or ACAPI_Interface that belong together. The parameters are those
/// that the add-on passed, unchecked; what each points to is described at the request's code.
class RequestFamily {
public:
    RequestFamily() = default;
    virtual ~RequestFamily() = default;
    RequestFamily(const RequestFamily&) = delete;
    RequestFamily& operator=(const RequestFamily&) = delete;

    /// The codes that this family answers.
    virtual std::vector<GSType> codes() const = 0;
    /// Answers a request of one of these codes: 0, or an error code.
    virtual GSErrCode answer(AddOn& addOn, GSType code, void* par1, void* par2, void* par3) = 0;

    /// What goes in and, after a success, what came out, for someone who watches the calls.
    virtual platform::TraceArguments arguments(GSType, const void*, const void*, const void*) const {
        return {};
    }
    virtual platform::TraceArguments outputs(GSType, const void*, const void*, const void*) const {
        return {};
    }
};

}  // namespace host

#pragma once

#include "host/ErrorCodes.h"
#include "host/Host.h"
#include "platform/host/CallTrace.h"

namespace host {

/// Answers one call of an add-on. Nothing that is thrown on the way reaches the add-on.
template <typename MakeArguments, typename Body>
GSErrCode serve(const char* function, APIClient client, const MakeArguments& arguments,
                const Body& body) noexcept {
    try {
        platform::CallTrace trace(platform::CallDirection::ToHost, function, arguments);
        try {
            Host* const host = Host::current();
            AddOn* const addOn = host != nullptr ? host->caller(client) : nullptr;
            return trace.returning(addOn != nullptr ? body(*host, *addOn, trace) : kErrBadClient);
        } catch (...) {
            return trace.returning(kErrInternal);
        }
    } catch (...) {
        return kErrInternal;
    }
}

/// The arguments of a call without any.
inline platform::TraceArguments none() {
    return {};
}

}  // namespace host

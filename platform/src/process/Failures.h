#pragma once

#include "platform/host/Failures.h"

namespace platform {

/// Tells the host of the exception that is being handled.
void tellCallbackFailure(const std::string& callback, const void* function);

/// Calls a function of an add-on; an exception that comes out of it ends here.
template <typename Result, typename... Parameters, typename... Arguments>
Result callAddOn(const std::string& callback, Result (*function)(Parameters...), Arguments... arguments) {
    try {
        return function(arguments...);
    } catch (...) {
        tellCallbackFailure(callback, reinterpret_cast<const void*>(function));
    }
    return Result();
}

/// Notes how the replacement of a file ended: an errno value, 0 for success.
void noteReplacement(const std::string& path, int error);

}  // namespace platform

#include "platform/src/process/Failures.h"

#include "platform/Bundle.h"

#include <cstring>
#include <exception>
#include <set>

namespace platform {

namespace {

/// Never destroyed: add-ons call and write while the process ends.
struct Handlers {
    CallbackFailureHandler callback;
    ReplacementFailureHandler replacement;
    std::set<std::string> failedPaths;
};

Handlers& handlers() {
    static auto* const all = new Handlers;
    return *all;
}

}  // namespace

std::string exceptionText() {
    try {
        throw;
    } catch (const std::exception& exception) {
        const char* const text = exception.what();
        return text != nullptr ? text : "";
    } catch (...) {
        return {};
    }
}

void setCallbackFailureHandler(CallbackFailureHandler handler) {
    handlers().callback = std::move(handler);
}

void setReplacementFailureHandler(ReplacementFailureHandler handler) {
    handlers().replacement = std::move(handler);
}

void tellCallbackFailure(const std::string& callback, const void* function) {
    const CallbackFailure failure{callback, exceptionText(), function};
    if (handlers().callback) return handlers().callback(failure);
    DBPrintf("the %s of an add-on threw an exception: %s\n", callback.c_str(), failure.reason.c_str());
}

void noteReplacement(const std::string& path, int error) {
    if (error == 0) {
        handlers().failedPaths.erase(path);
    } else if (handlers().failedPaths.insert(path).second) {
        if (handlers().replacement) return handlers().replacement({path, std::strerror(error)});
        DBPrintf("%s could not be written: %s\n", path.c_str(), std::strerror(error));
    }
}

}  // namespace platform

#include "platform/src/process/Failures.h"

#include "platform/Bundle.h"

#include <cstring>
#include <exception>
#include <set>

namespace platform {

namespace {

void printCallbackFailure(const CallbackFailure& failure) {
    DBPrintf("the %s of an add-on threw an exception%s%s\n", failure.callback.c_str(),
             failure.reason.empty() ? "" : ": ", failure.reason.c_str());
}

void printReplacementFailure(const PathFailure& failure) {
    DBPrintf("%s: it keeps its old content: %s\n", failure.path.c_str(), failure.reason.c_str());
}

/// Never destroyed: add-ons call and write while the process ends.
struct Handlers {
    CallbackFailureHandler callback = printCallbackFailure;
    ReplacementFailureHandler replacement = printReplacementFailure;
    std::set<std::string> failedPaths;
};

Handlers& handlers() {
    static auto* const all = new Handlers;
    return *all;
}

/// What the exception that is being handled says.
std::string exceptionText() {
    try {
        throw;
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return {};
    }
}

}  // namespace

void setCallbackFailureHandler(CallbackFailureHandler handler) {
    handlers().callback = handler ? std::move(handler) : printCallbackFailure;
}

void setReplacementFailureHandler(ReplacementFailureHandler handler) {
    handlers().replacement = handler ? std::move(handler) : printReplacementFailure;
}

void tellCallbackFailure(const std::string& callback, const void* function) {
    handlers().callback({callback, exceptionText(), function});
}

void noteReplacement(const std::string& path, int error) {
    if (error == 0) {
        handlers().failedPaths.erase(path);
    } else if (handlers().failedPaths.insert(path).second) {
        handlers().replacement({path, std::strerror(error)});
    }
}

}  // namespace platform

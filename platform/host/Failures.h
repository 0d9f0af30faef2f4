#pragma once

#include <functional>
#include <string>

/// Failures that an add-on does not or cannot report, so that its host does. Main thread only. A
/// handler must not throw; without one, also after setting an empty one, each failure is a line of the
/// diagnostic print (platform/host/Diagnostics.h).
namespace platform {

// ---- Exceptions -----------------------------------------------------------------------------------------

/// An exception came out of a callback of an add-on (dialog, timer, stream). It was stopped there and counts
/// as the answer 0.
struct CallbackFailure {
    std::string callback;  ///< "timer callback", "stream callback", "callback of dialog 7 at message click"
    std::string reason;    ///< what the exception says; empty when it says nothing
    const void* function;  ///< the callback itself, which is in the add-on's image
};

/// What the exception that is being handled says; empty when it says nothing.
std::string exceptionText();

using CallbackFailureHandler = std::function<void(const CallbackFailure&)>;
void setCallbackFailureHandler(CallbackFailureHandler handler);

// ---- Files ----------------------------------------------------------------------------------------------

struct PathFailure {
    std::string path;    ///< the file system's own bytes
    std::string reason;  ///< the system's words for it
};

/// Hears of each file that was to get new content as a whole and did not: it could not be staged, written,
/// flushed or renamed. Told once for each path until its content is replaced.
using ReplacementFailureHandler = std::function<void(const PathFailure&)>;
void setReplacementFailureHandler(ReplacementFailureHandler handler);

}  // namespace platform

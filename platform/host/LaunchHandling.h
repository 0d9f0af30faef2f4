#pragma once

#include <functional>
#include <string>

/// Who opens the documents and web pages that add-ons ask for (platform/Launching.h). Main thread only.
namespace platform {

struct LaunchRequest {
    enum class Kind { Document, WebAddress };

    Kind kind;
    std::string target;  ///< the path's bytes as they came; the address in UTF-8
};

/// Carries out a request; 0 for success. Must not throw.
using LaunchHandler = std::function<int(const LaunchRequest&)>;

/// Lets `handler` have the requests instead of the desktop; an empty one restores the desktop's opener.
void setLaunchHandler(LaunchHandler handler);

/// Replaces the program that opens documents and addresses (xdg-open, found on the search path); an empty
/// name restores it.
void setOpenerProgram(std::string program);

/// How long OpenDocument waits for the opener, in milliseconds; a negative number restores the default.
void setOpenerPatience(int milliseconds);

}  // namespace platform

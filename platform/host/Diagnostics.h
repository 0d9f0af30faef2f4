#pragma once

#include <functional>
#include <string>

namespace platform {

/// Takes over what DBPrintf prints, in the pieces in which it is printed; an empty function gives it back to
/// the standard error stream. It must not throw.
void setDiagnosticPrinter(std::function<void(const std::string& text)> printer);

}  // namespace platform

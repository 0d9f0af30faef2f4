#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

/// The subcommands of the program, each in a file of its own.
namespace tools {

/// Carries out the subcommand that was given, and returns the program's exit code (host::ExitCode).
using Chosen = std::function<int()>;

/// Prints "tessaro COMMAND: LINE", printable, on the standard error stream; returns the code.
int fail(int code, const char* command, const std::string& line);

/// Adds `tessaro versions` and its subcommands.
void addVersions(CLI::App& app, Chosen& chosen);

}  // namespace tools

#pragma once

#include <memory>
#include <optional>
#include <string>

namespace host {

/// Lines of a person or a script. Waiting for one keeps the main run loop going.
class LineSource {
public:
    enum class Result {
        Line,        ///< a line was read
        End,         ///< there are no more
        Unreadable,  ///< nor are there, since they cannot be read; the line says why
        Dispatched,  ///< the run loop had something to do; no line yet
    };

    LineSource() = default;
    virtual ~LineSource() = default;
    LineSource(const LineSource&) = delete;
    LineSource& operator=(const LineSource&) = delete;

    virtual Result next(std::string& line) = 0;
    /// Whether a person types the lines and sees them.
    virtual bool isInteractive() const = 0;
    /// Whether the user interrupted the session (Ctrl-C). The next line is then the end.
    virtual bool isInterrupted() const { return false; }
    /// Something is about to be printed.
    virtual void clearPrompt() {}

protected:
    /// Waits until `descriptor` can be read or the main run loop has something to do, and dispatches the loop
    /// in the second case. Returns whether the descriptor can be read (or has ended).
    static bool waitForInput(int descriptor);
};

/// Reads from a file descriptor, lines of at most 1 MiB. Lines that are there already come before the run
/// loop's work, so that a script takes the same course every time.
std::unique_ptr<LineSource> makeScriptSource(int descriptor);

/// Reads from the terminal at standard input, with line editing, history and a prompt.
std::unique_ptr<LineSource> makeTerminalSource(std::string prompt);

}  // namespace host

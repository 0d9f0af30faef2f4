#pragma once

#include "platform/host/Presenter.h"

#include <functional>
#include <string>
#include <vector>

namespace host {

class Session;

using Arguments = std::vector<std::string>;

/// One word of the console.
struct Command {
    std::string word;
    std::string usage;  ///< "click ITEM [DIALOG]"
    std::string explanation;
    std::size_t minArguments = 0;
    std::size_t maxArguments = 0;
    /// Carries the command out; for one that stands for what a user does in a dialog, returns that.
    std::function<platform::UserAction(Session&, const Arguments&)> run;
};

class CommandSet {
public:
    void add(Command command) { commands_.push_back(std::move(command)); }
    /// Null when there is no such word.
    const Command* find(const std::string& word) const;
    const std::vector<Command>& all() const { return commands_; }

    /// Carries out one line. An unknown word or a wrong number of arguments is refused with one line.
    platform::UserAction run(Session& session, const std::string& line) const;

private:
    std::vector<Command> commands_;
};

/// Splits a line at blanks. Double quotes keep blanks together; inside them a backslash stands before a quote
/// or a backslash. False when a quote is left open.
bool splitWords(const std::string& line, std::vector<std::string>& words);

/// A whole number in decimal digits, within the range of a short; nothing otherwise.
bool parseNumber(const std::string& text, short& number);

/// The words in groups, each in a file of its own.
void addGeneralCommands(CommandSet& commands);
void addMenuCommands(CommandSet& commands);
void addDialogCommands(CommandSet& commands);
void addAddOnCommands(CommandSet& commands);
void addProjectCommands(CommandSet& commands);
void addLibraryCommands(CommandSet& commands);

}  // namespace host

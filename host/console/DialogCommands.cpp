#include "host/console/CommandSet.h"
#include "host/console/Session.h"
#include "platform/host/DialogControl.h"

namespace host {

using platform::UserAction;

namespace {

/// A command whose arguments are all numbers, missing ones 0.
Command numbersCommand(std::string word, std::string usage, std::string explanation, std::size_t minArguments,
                       std::size_t maxArguments,
                       std::function<UserAction(const std::vector<short>&)> makeAction) {
    auto run = [maxArguments, makeAction = std::move(makeAction)](Session& session,
                                                                  const Arguments& arguments) {
        std::vector<short> numbers(maxArguments);
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            if (!parseNumber(arguments[index], numbers[index])) {
                session.refuse("items, rows and dialogs are numbers");
                return UserAction{};
            }
        }
        return makeAction(numbers);
    };
    return {std::move(word), std::move(usage), std::move(explanation),
            minArguments,    maxArguments,     std::move(run)};
}

/// Whether the open chooser, if there is one, is for folders or for files as `forFolders` says.
bool fits(Session& session, bool forFolders) {
    using Kind = platform::FileChooserState::Kind;
    const auto* const chooser = platform::DialogControl::instance().activeFileChooser();
    if (chooser == nullptr || (chooser->kind == Kind::Folder) == forFolders) return true;
    session.refuse(forFolders ? "a file is to be chosen, not a folder"
                              : "a folder is to be chosen, not a file");
    return false;
}

UserAction chooseFile(Session& session, const Arguments& arguments) {
    short filter = 1;
    if (arguments.size() > 1 && (!parseNumber(arguments[1], filter) || filter < 1)) {
        session.refuse("a filter is a number from 1");
        return {};
    }
    return fits(session, false) ? UserAction::chooseFile(arguments.front(), filter - 1) : UserAction{};
}

UserAction chooseFolder(Session& session, const Arguments& arguments) {
    return fits(session, true) ? UserAction::chooseFile(arguments.front()) : UserAction{};
}

}  // namespace

void addDialogCommands(CommandSet& commands) {
    using Numbers = std::vector<short>;
    commands.add(numbersCommand("click", "click ITEM [DIALOG]",
                                "clicks a button; without DIALOG, of the foremost", 1, 2,
                                [](const Numbers& it) { return UserAction::click(it[1], it[0]); }));
    commands.add(
        numbersCommand("select", "select ITEM ROW [DIALOG]", "selects a row of a list", 2, 3,
                       [](const Numbers& it) { return UserAction::selectRow(it[2], it[0], it[1]); }));
    commands.add(
        numbersCommand("double", "double ITEM ROW [DIALOG]", "double-clicks a row of a list", 2, 3,
                       [](const Numbers& it) { return UserAction::doubleClick(it[2], it[0], it[1]); }));
    commands.add(numbersCommand("close", "close [DIALOG]", "closes a dialog, as its close box does", 0, 1,
                                [](const Numbers& it) { return UserAction::close(it[0]); }));
    commands.add(numbersCommand("answer", "answer BUTTON", "answers an alert", 1, 1,
                                [](const Numbers& it) { return UserAction::answer(it[0]); }));
    commands.add({"file", "file PATH [FILTER]", "chooses a file in a chooser", 1, 2, chooseFile});
    commands.add({"folder", "folder PATH", "chooses a folder in a chooser", 1, 1, chooseFolder});
    commands.add({"cancel", "cancel", "cancels a chooser, an alert or a dialog", 0, 0,
                  [](Session&, const Arguments&) { return UserAction::close(); }});
}

}  // namespace host

#include "host/console/TypedWords.h"

#include "host/Printable.h"

#include <charconv>

namespace host {

namespace {

using platform::UserAction;
using Refusal = Session::Refusal;

constexpr const char* kWrongUsage = "";
constexpr Refusal kDone = std::nullopt;

/// Splits a line at blanks. Double quotes keep blanks together; inside them a backslash precedes a quote
/// or a backslash. False when a quotation mark is missing.
bool splitLine(const std::string& line, Arguments& pieces) {
    std::string piece;
    bool inPiece = false;
    bool isQuoted = false;
    for (std::size_t index = 0; index < line.size(); ++index) {
        const char character = line[index];
        const bool blank = character == ' ' || character == '\t';
        if (isQuoted && character == '\\' && index + 1 < line.size() &&
            (line[index + 1] == '"' || line[index + 1] == '\\')) {
            piece += line[++index];
        } else if (character == '"') {
            isQuoted = !isQuoted;
            inPiece = true;
        } else if (blank && !isQuoted) {
            if (inPiece) pieces.push_back(std::move(piece));
            piece.clear();
            inPiece = false;
        } else {
            piece += character;
            inPiece = true;
        }
    }
    if (inPiece) pieces.push_back(std::move(piece));
    return !isQuoted;
}

/// A whole number in decimal digits, or for seconds one with a point. False when it is none or out of range.
template <typename Number>
bool parseNumber(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end;
}

const Word* findWord(const std::string& name) {
    for (const Word& word : words()) {
        if (word.name() == name) return &word;
    }
    return nullptr;
}

std::string argument(const Arguments& arguments, std::size_t index) {
    return index < arguments.size() ? arguments[index] : std::string();
}

Word simpleWord(std::string usage, std::string explanation, void (Session::*run)()) {
    return {std::move(usage), std::move(explanation), 0, 0, [run](Session& session, const Arguments&) {
                (session.*run)();
                return kDone;
            }};
}

/// A word whose arguments are all numbers, missing ones 0.
Word actionWord(std::string usage, std::string explanation, std::size_t minArguments,
                std::size_t maxArguments, UserAction (*makeAction)(const std::vector<short>&)) {
    auto run = [maxArguments, makeAction](Session& session, const Arguments& arguments) -> Refusal {
        std::vector<short> numbers(maxArguments);
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            if (!parseNumber(arguments[index], numbers[index]))
                return "items, rows and dialogs must be numbers";
        }
        return session.act(makeAction(numbers));
    };
    return {std::move(usage), std::move(explanation), minArguments, maxArguments, std::move(run)};
}

Refusal help(Session& session, const Arguments& arguments) {
    const Word* const wanted = arguments.empty() ? nullptr : findWord(arguments.front());
    if (!arguments.empty() && wanted == nullptr) return "unknown command; \"help\" lists the commands";
    for (const Word& word : words()) {
        if (wanted == nullptr || wanted == &word) session.tell(event::Help{word.usage, word.explanation});
    }
    return kDone;
}

Refusal wait(Session& session, const Arguments& arguments) {
    constexpr double kLongest = 3600;
    double seconds = -1;
    if (!arguments.empty() &&
        (!parseNumber(arguments.front(), seconds) || !(seconds >= 0 && seconds <= kLongest))) {
        return "SECONDS must be a number from 0 to 3600";
    }
    session.wait(seconds);
    return kDone;
}

Refusal trace(Session& session, const Arguments& arguments) {
    if (arguments.front() == "on") {
        session.startTrace();
    } else if (arguments.front() == "off") {
        session.stopTrace();
    } else {
        return kWrongUsage;
    }
    return kDone;
}

/// "ITEM" or "MENU.ITEM".
Refusal choose(Session& session, const Arguments& arguments) {
    const std::string& text = arguments.front();
    const std::size_t point = text.find('.');
    short menu = 1;
    short item = 0;
    if ((point != std::string::npos && !parseNumber(text.substr(0, point), menu)) ||
        !parseNumber(text.substr(point + 1), item)) {
        return "give the item's number, or the menu's number, a dot and the item's number";
    }
    return session.choose(menu, item);
}

Refusal file(Session& session, const Arguments& arguments) {
    short filter = 1;
    if (arguments.size() > 1 && (!parseNumber(arguments[1], filter) || filter < 1)) {
        return "FILTER must be a number from 1";
    }
    return session.chooseFile(arguments.front(), filter);
}

Refusal folder(Session& session, const Arguments& arguments) {
    return session.chooseFolder(arguments.front());
}

Refusal load(Session& session, const Arguments& arguments) {
    const std::string option = argument(arguments, 1);
    if (arguments.size() == 1) return session.load(arguments.front());
    if (option == "--no-table") return session.probe(arguments.front(), ProbeTable::None);
    if (option == "--empty-table") return session.probe(arguments.front(), ProbeTable::Empty);
    return kWrongUsage;
}

Refusal unload(Session& session, const Arguments& arguments) {
    FreeDataCall freeData = FreeDataCall::Made;
    std::string name;
    for (const std::string& each : arguments) {
        if (each == "--without-free-data") {
            freeData = FreeDataCall::LeftOut;
        } else if (name.empty() && !each.starts_with("--")) {
            name = each;
        } else {
            return kWrongUsage;
        }
    }
    return session.unload(name, freeData);
}

Refusal reload(Session& session, const Arguments& arguments) {
    return session.reload(argument(arguments, 0));
}

Refusal project(Session& session, const Arguments& arguments) {
    const std::string verb = argument(arguments, 0);
    const std::string path = argument(arguments, 1);
    if (verb == "save" && arguments.size() == 1) return session.saveProject();
    if (verb == "open" || verb == "save") return session.setProject(path);
    if (arguments.empty()) {
        session.showProject();
    } else if (verb == "new" && path.empty()) {
        session.startProject();
    } else {
        return kWrongUsage;
    }
    return kDone;
}

Refusal engines(Session& session, const Arguments& arguments) {
    if (arguments.empty()) {
        session.listEngines();
    } else {
        session.replaceEngines(arguments);
    }
    return kDone;
}

Refusal engine(Session& session, const Arguments& arguments) {
    short number = 0;
    if (arguments.front() == "none") {
        session.setNoEngine();
        return kDone;
    }
    return session.setEngine(parseNumber(arguments.front(), number) ? number : 0);
}

Refusal libraries(Session& session, const Arguments& arguments) {
    const std::string verb = argument(arguments, 0);
    const std::string path = argument(arguments, 1);
    if (arguments.empty()) {
        session.listLibraries();
    } else if (path.empty()) {
        return kWrongUsage;
    } else if (verb == "add") {
        return session.addLibrary(path);
    } else if (verb == "remove") {
        return session.removeLibrary(path);
    } else if (verb != "embed") {
        return kWrongUsage;
    } else if (path != "none") {
        return session.embedLibrary(path);
    } else {
        session.embedNoLibrary();
    }
    return kDone;
}

Refusal parts(Session& session, const Arguments& arguments) {
    session.listParts(argument(arguments, 0));
    return kDone;
}

Refusal part(Session& session, const Arguments& arguments) {
    return session.showPart(arguments.front(), argument(arguments, 1));
}

}  // namespace

const std::vector<Word>& words() {
    using Numbers = std::vector<short>;
    constexpr std::size_t kMostEngines = 100;
    static const std::vector<Word> all = {
        {"help [COMMAND]", "explains all commands, or one", 0, 1, help},
        simpleWord("show", "shows what is open, or the menus if nothing is", &Session::show),
        {"wait [SECONDS]", "waits until all transfers have finished, or for SECONDS", 0, 1, wait},
        {"trace on|off", "shows every call between host and add-ons", 1, 1, trace},
        simpleWord("quit", "closes what is open, unloads the add-ons and exits", &Session::quit),
        simpleWord("menu", "shows the menus of the loaded add-ons", &Session::showMenus),
        {"choose [MENU.]ITEM", "chooses a menu item; MENU defaults to 1", 1, 1, choose},
        actionWord("click ITEM [DIALOG]", "clicks a button; DIALOG defaults to the frontmost", 1, 2,
                   [](const Numbers& it) { return UserAction::click(it[1], it[0]); }),
        actionWord("select ITEM ROW [DIALOG]", "selects a row of a list", 2, 3,
                   [](const Numbers& it) { return UserAction::selectRow(it[2], it[0], it[1]); }),
        actionWord("double ITEM ROW [DIALOG]", "double-clicks a row of a list", 2, 3,
                   [](const Numbers& it) { return UserAction::doubleClick(it[2], it[0], it[1]); }),
        actionWord("close [DIALOG]", "closes a dialog, as its close box does", 0, 1,
                   [](const Numbers& it) { return UserAction::close(it[0]); }),
        actionWord("answer BUTTON", "answers an alert", 1, 1,
                   [](const Numbers& it) { return UserAction::answer(it[0]); }),
        {"file PATH [FILTER]", "chooses a file in a chooser", 1, 2, file},
        {"folder PATH", "chooses a folder in a chooser", 1, 1, folder},
        actionWord("cancel", "cancels a chooser, an alert or a dialog", 0, 0,
                   [](const Numbers&) { return UserAction::close(); }),
        simpleWord("addons", "lists the loaded add-ons", &Session::listAddOns),
        {"load PATH [--no-table|--empty-table]",
         "loads a bundle, or calls its entry points on trial without the host's functions", 1, 2, load},
        {"unload [ADDON] [--without-free-data]", "unloads an add-on, or does so without calling FreeData", 0,
         2, unload},
        {"reload [ADDON]", "unloads an add-on and loads it again", 0, 1, reload},
        {"project [new|open PATH|save [PATH]]", "shows, creates, opens or saves the project", 0, 2, project},
        {"engines [NAME...]", "lists the rendering engines, or replaces them", 0, kMostEngines, engines},
        {"engine NUMBER|none", "makes a rendering engine the current one", 1, 1, engine},
        {"libraries [add PATH|remove PATH|embed PATH|embed none]",
         "lists the loaded libraries, or changes them", 0, 2, libraries},
        {"parts [TEXT]", "lists the library parts, or those with TEXT in their names", 0, 1, parts},
        {"part NAME [TYPE]", "shows the library part that add-ons find under this name", 1, 2, part},
        simpleWord("commands", "lists the module commands of the add-ons", &Session::listCommands),
    };
    return all;
}

namespace {

Refusal runLine(Session& session, const std::string& line) {
    Arguments arguments;
    if (!splitLine(line, arguments)) return "a quotation mark is missing";
    if (arguments.empty() || arguments.front().starts_with('#')) return kDone;
    const Word* const word = findWord(arguments.front());
    if (word == nullptr) {
        return "unknown command " + inQuotes(arguments.front()) + "; \"help\" lists the commands";
    }
    arguments.erase(arguments.begin());
    const bool fits = arguments.size() >= word->minArguments && arguments.size() <= word->maxArguments;
    const Refusal refusal = fits ? word->run(session, arguments) : kWrongUsage;
    return refusal == kWrongUsage ? "usage: " + word->usage : refusal;
}

}  // namespace

void carryOut(Session& session, const std::string& line) {
    if (const Refusal refusal = runLine(session, line)) session.tell(event::Refused{*refusal});
}

}  // namespace host

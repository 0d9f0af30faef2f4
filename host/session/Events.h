#pragma once

#include "host/Host.h"
#include "platform/host/CallTrace.h"
#include "platform/host/LaunchHandling.h"
#include "platform/host/Presenter.h"

#include <variant>

/// What happens in a session. Everything that a face shows is one of these.
namespace host::event {

/// A word that was read from a script; not sent when a person types, who sees it anyway.
struct Command {
    std::string text;
};

struct Loaded {
    std::string addOn;
    std::string name;         ///< as the add-on calls itself
    std::string description;  ///< as it describes itself
};

struct Unloaded {
    std::string addOn;
};

struct AddOnListed {
    std::string addOn;
    std::string name;
    std::string description;
    int menus;
    int modelessWindows;
    bool keptInMemory;
    bool builtInLibrary;
};

struct MenuShown {
    int number;  ///< by which the user addresses it
    std::string addOn;
    Menu menu;

    friend bool operator==(const MenuShown& a, const MenuShown& b) {
        return a.addOn == b.addOn && a.menu.resID == b.menu.resID && a.menu.items == b.menu.items;
    }
};

struct DialogShown {
    enum class Change { Shown, Changed, Listed };
    Change change;
    platform::DialogState dialog;
};

struct DialogClosed {
    short id;
    short item;  ///< 0 when no item closed it
};

struct AlertShown {
    platform::AlertState alert;
};

struct AlertAnswered {
    short button;
};

struct ChooserShown {
    platform::FileChooserState chooser;
};

struct ChooserClosed {};

/// A document or web page would have been opened on the desktop.
struct Opened {
    platform::LaunchRequest request;
};

struct Transfers {
    bool underWay;
};

struct ProjectShown {
    bool untitled;
    std::string path;  ///< of the project file; empty for an untitled project
};

struct EngineListed {
    int number;
    std::string menuName;
    bool current;
};

struct LibraryListed {
    std::string path;
    int parts;
    bool embedded;
    std::vector<LibraryProblem> problems;
};

struct PartListed {
    int index;
    std::string name;
    std::string type;
    std::string path;
    bool missing;  ///< its definition
};

/// A command by which other add-ons may call one.
struct CommandListed {
    std::string addOn;
    PublishedCommand command;
};

/// What an entry point answered to a call for trial.
struct EntryPointAnswered {
    std::string entryPoint;
    std::optional<GSErrCode> result;  ///< nothing when it threw an exception
};

struct Call {
    enum class Phase { Entered, Left, Whole };
    Phase phase;
    int depth;
    std::string addOn;  ///< empty when it is not known
    platform::TracedCall call;
    platform::TraceArguments results;  ///< none while it is entered
};

struct Help {
    std::string usage;
    std::string explanation;
};

/// What the user asked for is not possible; nothing has changed.
struct Refused {
    std::string reason;
};

/// Something went wrong that nobody asked for.
struct Problem {
    std::string text;
};

/// A line of an add-on or of the platform for developers.
struct Diagnostic {
    std::string text;
};

struct Note {
    std::string text;
};

}  // namespace host::event

namespace host {

using Event = std::variant<event::Command, event::Loaded, event::Unloaded, event::AddOnListed,
                           event::MenuShown, event::DialogShown, event::DialogClosed, event::AlertShown,
                           event::AlertAnswered, event::ChooserShown, event::ChooserClosed, event::Opened,
                           event::Transfers, event::ProjectShown, event::EngineListed, event::LibraryListed,
                           event::PartListed, event::CommandListed, event::EntryPointAnswered, event::Call,
                           event::Help, event::Refused, event::Problem, event::Diagnostic, event::Note>;

}  // namespace host

#include "host/console/CommandSet.h"
#include "host/console/Session.h"
#include "host/console/Texts.h"
#include "host/ErrorCodes.h"

#include <algorithm>

namespace host {

using platform::UserAction;

namespace {

void showLibraries(Session& session) {
    const Libraries& libraries = session.host().libraries();
    int position = 0;
    for (const LoadedLibrary& library : libraries.all()) {
        session.print(event::LibraryListed{library.path, static_cast<int>(library.parts.size()),
                                           position++ == libraries.embedded(), library.problems});
    }
    if (libraries.all().empty()) session.print(event::Note{"no library is loaded"});
}

UserAction libraries(Session& session, const Arguments& arguments) {
    Libraries& loaded = session.host().libraries();
    const std::string word = arguments.empty() ? "" : arguments.front();
    const std::string path = arguments.size() > 1 ? arguments.back() : "";
    const IO::Location folder = IO::Location::FromPosixPath(path);
    GSErrCode result = kNoError;
    if (word == "embed" && path == "none") {
        loaded.setNoEmbedded();
    } else if (word == "add" && !path.empty()) {
        result = loaded.add(folder);
    } else if (word == "embed" && !path.empty()) {
        result = loaded.setEmbedded(folder);
    } else if (word == "remove" && !path.empty()) {
        result = loaded.remove(folder);
    } else if (!arguments.empty()) {
        session.refuse("usage: " + session.commands().find("libraries")->usage);
        return {};
    }
    if (result == kNoError) {
        showLibraries(session);
    } else if (result == kErrNotFound) {
        session.refuse("the library " + inQuotes(path) + " is not loaded");
    } else {
        session.refuse("there is no folder " + inQuotes(path) + " that can be read");
    }
    return {};
}

void showPart(Session& session, const LoadedPart& part) {
    session.print(event::PartListed{part.index, part.file.name, partTypeName(part.file.type), part.file.path,
                                    part.isMissing()});
}

UserAction parts(Session& session, const Arguments& arguments) {
    const std::string text = arguments.empty() ? "" : arguments.front();
    bool any = false;
    for (const LoadedLibrary& library : session.host().libraries().all()) {
        for (const LoadedPart& part : library.parts) {
            if (part.file.name.find(text) == std::string::npos) continue;
            showPart(session, part);
            any = true;
        }
    }
    if (!any) session.print(event::Note{"no part"});
    return {};
}

UserAction part(Session& session, const Arguments& arguments) {
    const auto type = arguments.size() > 1 ? partTypeOfName(arguments[1]) : APILib_Any;
    if (!type) {
        session.refuse("there is no type " + inQuotes(arguments[1]));
        return {};
    }
    const LoadedPart* const found = session.host().libraries().find(arguments.front(), *type);
    if (found == nullptr) {
        session.print(event::Note{"no part"});
    } else {
        showPart(session, *found);
    }
    return {};
}

UserAction moduleCommands(Session& session, const Arguments&) {
    bool any = false;
    for (const auto& addOn : session.host().addOns()) {
        for (const PublishedCommand& command : addOn->commands) {
            session.print(event::CommandListed{addOn->name(), command});
            any = true;
        }
    }
    if (!any) session.print(event::Note{"no command is published"});
    return {};
}

}  // namespace

void addLibraryCommands(CommandSet& commands) {
    commands.add({"libraries", "libraries [add PATH|remove PATH|embed PATH|embed none]",
                  "lists the loaded libraries, or changes them", 0, 2, libraries});
    commands.add(
        {"parts", "parts [TEXT]", "lists the library parts, or those with TEXT in their names", 0, 1, parts});
    commands.add({"part", "part NAME [TYPE]", "shows the library part that add-ons find", 1, 2, part});
    commands.add(
        {"commands", "commands", "lists the module commands that the add-ons answer", 0, 0, moduleCommands});
}

}  // namespace host

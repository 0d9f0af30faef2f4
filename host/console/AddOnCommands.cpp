#include "host/console/CommandSet.h"
#include "host/console/Session.h"
#include "host/console/Texts.h"

namespace host {

using platform::UserAction;

namespace {

std::string loadFailure(const std::string& path, const std::string& reason) {
    return "cannot load " + inQuotes(path) + ": " + reason;
}

UserAction list(Session& session, const Arguments&) {
    for (const auto& addOn : session.host().addOns()) {
        session.print(event::AddOnListed{
            addOn->name(), UniStringToUtf8(addOn->info.name), UniStringToUtf8(addOn->info.description),
            static_cast<int>(addOn->menus.all().size()), static_cast<int>(addOn->modelessWindows.size()),
            addOn->keepInMemory, addOn->builtInLibrary});
    }
    if (session.host().addOns().empty()) session.print(event::Note{"no add-on is loaded"});
    return {};
}

void probe(Session& session, const std::string& path, ProbeTable table) {
    const auto answers = session.host().probe(path, table);
    if (const auto* const error = std::get_if<LoadError>(&answers)) {
        session.refuse(loadFailure(path, error->reason));
        return;
    }
    session.print(event::Note{table == ProbeTable::None ? "called without a function table:"
                                                        : "called with an empty function table:"});
    for (const EntryPointAnswer& answer : std::get<std::vector<EntryPointAnswer>>(answers))
        session.print(event::EntryPointAnswered{answer.entryPoint, answer.result});
}

UserAction load(Session& session, const Arguments& arguments) {
    const std::string& path = arguments.front();
    if (arguments.size() == 1) {
        if (const auto refusal = session.load(path)) session.refuse(loadFailure(path, *refusal));
    } else if (arguments[1] == "--no-table") {
        probe(session, path, ProbeTable::None);
    } else if (arguments[1] == "--empty-table") {
        probe(session, path, ProbeTable::Empty);
    } else {
        session.refuse("usage: " + session.commands().find("load")->usage);
    }
    return {};
}

/// The add-on of this name, or the only one without a name; null and a refusal when it is not clear.
AddOn* meant(Session& session, const std::string& name) {
    const auto& addOns = session.host().addOns();
    if (!name.empty()) {
        AddOn* const found = session.host().find(name);
        if (found == nullptr) session.refuse("no add-on " + inQuotes(name) + " is loaded");
        return found;
    }
    if (addOns.size() == 1) return addOns.front().get();
    session.refuse(addOns.empty() ? "no add-on is loaded" : "several add-ons are loaded; say which");
    return nullptr;
}

UserAction unload(Session& session, const Arguments& arguments) {
    FreeDataCall freeData = FreeDataCall::Made;
    std::string name;
    for (const std::string& argument : arguments) {
        if (argument == "--without-free-data") {
            freeData = FreeDataCall::LeftOut;
        } else if (name.empty() && !argument.starts_with("--")) {
            name = argument;
        } else {
            session.refuse("usage: " + session.commands().find("unload")->usage);
            return {};
        }
    }
    AddOn* const addOn = meant(session, name);
    if (addOn == nullptr) return {};
    const std::string unloaded = addOn->name();
    if (const auto refusal = session.host().unload(*addOn, freeData)) {
        session.refuse(*refusal);
    } else {
        session.print(event::Unloaded{unloaded});
    }
    return {};
}

UserAction reload(Session& session, const Arguments& arguments) {
    AddOn* const addOn = meant(session, arguments.empty() ? std::string() : arguments.front());
    if (addOn == nullptr) return {};
    const std::string name = addOn->name();
    const std::string path = addOn->bundle->path();
    if (const auto refusal = session.host().unload(*addOn)) {
        session.refuse(*refusal);
        return {};
    }
    session.print(event::Unloaded{name});
    session.forgetMenus();
    if (const auto refusal = session.load(path)) session.refuse(loadFailure(path, *refusal));
    return {};
}

}  // namespace

void addAddOnCommands(CommandSet& commands) {
    commands.add({"addons", "addons", "lists the loaded add-ons", 0, 0, list});
    commands.add({"load", "load PATH [--no-table|--empty-table]",
                  "loads a bundle; or calls its entry points for trial, without the host's functions", 1, 2,
                  load});
    commands.add({"unload", "unload [ADDON] [--without-free-data]",
                  "unloads an add-on; or leaves its free-data entry point out", 0, 2, unload});
    commands.add({"reload", "reload [ADDON]", "unloads an add-on and loads it again", 0, 1, reload});
}

}  // namespace host

#include "host/console/CommandSet.h"
#include "host/console/Session.h"

namespace host {

using platform::UserAction;

namespace {

void showProject(Session& session) {
    const Project& project = session.host().project();
    session.print(event::ProjectShown{project.untitled(), project.path()});
}

UserAction project(Session& session, const Arguments& arguments) {
    Project& open = session.host().project();
    const std::string word = arguments.empty() ? "" : arguments.front();
    const std::string path = arguments.size() > 1 ? arguments.back() : "";
    if (word == "new" && path.empty()) {
        open.startNew();
    } else if (word == "open" || word == "save") {
        const bool again = word == "save" && arguments.size() == 1 && !open.untitled();
        if (!again && !open.setFile(path)) {
            session.refuse("a project needs the path of a file");
            return {};
        }
    } else if (!arguments.empty()) {
        session.refuse("usage: project [new|open PATH|save [PATH]]");
        return {};
    }
    showProject(session);
    return {};
}

void showEngine(Session& session, std::int32_t number) {
    const RenderingEngines& list = session.host().renderingEngines();
    const std::string& name = list.all()[static_cast<std::size_t>(number - 1)].menuName;
    session.print(event::EngineListed{number, name, list.current() == number});
}

UserAction engines(Session& session, const Arguments& arguments) {
    RenderingEngines& list = session.host().renderingEngines();
    if (!arguments.empty()) list.replace(arguments);
    for (std::int32_t number = 1; number <= list.count(); ++number)
        showEngine(session, number);
    return {};
}

UserAction engine(Session& session, const Arguments& arguments) {
    RenderingEngines& list = session.host().renderingEngines();
    short number = 0;
    if (arguments.front() == "none") {
        list.clearCurrent();
        session.print(event::Note{"no rendering engine is current"});
    } else if (parseNumber(arguments.front(), number) && list.setCurrent(number)) {
        showEngine(session, number);
    } else {
        session.refuse("there is no rendering engine of this number");
    }
    return {};
}

}  // namespace

void addProjectCommands(CommandSet& commands) {
    constexpr std::size_t kMostEngines = 100;
    commands.add({"project", "project [new|open PATH|save [PATH]]",
                  "shows the open project, or opens another", 0, 2, project});
    commands.add({"engines", "engines [NAME...]", "lists the rendering engines, or replaces them", 0,
                  kMostEngines, engines});
    commands.add({"engine", "engine NUMBER|none", "makes a rendering engine the current one", 1, 1, engine});
}

}  // namespace host

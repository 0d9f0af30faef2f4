#include "host/console/CommandSet.h"
#include "host/console/Session.h"

#include <charconv>

namespace host {

using platform::UserAction;

namespace {

UserAction help(Session& session, const Arguments& arguments) {
    if (arguments.empty()) {
        for (const Command& command : session.commands().all())
            session.print(event::Help{command.usage, command.explanation});
        return {};
    }
    const Command* const command = session.commands().find(arguments.front());
    if (command == nullptr) {
        session.refuse("unknown word; \"help\" lists the words");
    } else {
        session.print(event::Help{command->usage, command->explanation});
    }
    return {};
}

UserAction show(Session& session, const Arguments&) {
    session.showAll();
    return {};
}

UserAction wait(Session& session, const Arguments& arguments) {
    constexpr double kLongest = 3600;
    double seconds = -1;
    if (!arguments.empty()) {
        const std::string& text = arguments.front();
        const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
        if (error != std::errc() || rest != text.data() + text.size() ||
            !(seconds >= 0 && seconds <= kLongest)) {
            session.refuse("the seconds are a number from 0 to 3600");
            return {};
        }
    }
    if (!session.wait(seconds)) session.print(event::Note{"the transfer goes on"});
    return {};
}

UserAction trace(Session& session, const Arguments& arguments) {
    if (arguments.front() == "on") {
        session.trace().start();
    } else if (arguments.front() == "off") {
        session.trace().stop();
    } else {
        session.refuse("usage: trace on|off");
    }
    return {};
}

UserAction quit(Session& session, const Arguments&) {
    session.quit();
    return {};
}

}  // namespace

void addGeneralCommands(CommandSet& commands) {
    commands.add({"help", "help [WORD]", "explains the words, or one", 0, 1, help});
    commands.add({"show", "show", "shows what is open; the menus when nothing is", 0, 0, show});
    commands.add(
        {"wait", "wait [SECONDS]", "lets transfers go on until they have ended, or so long", 0, 1, wait});
    commands.add({"trace", "trace on|off", "shows every call between host and add-ons", 1, 1, trace});
    commands.add({"quit", "quit", "closes what is open, unloads the add-ons and ends", 0, 0, quit});
}

}  // namespace host

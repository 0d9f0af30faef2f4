#include "host/console/CommandSet.h"
#include "host/console/Session.h"

namespace host {

using platform::UserAction;

namespace {

UserAction menu(Session& session, const Arguments&) {
    session.showMenus();
    return {};
}

/// "ITEM" or "MENU.ITEM".
bool parseItem(const std::string& text, short& menuNumber, short& item) {
    const std::size_t dot = text.find('.');
    menuNumber = 1;
    if (dot == std::string::npos) return parseNumber(text, item);
    return parseNumber(text.substr(0, dot), menuNumber) && parseNumber(text.substr(dot + 1), item);
}

UserAction choose(Session& session, const Arguments& arguments) {
    short number = 0;
    short item = 0;
    if (!parseItem(arguments.front(), number, item)) {
        session.refuse("a menu item is a number, or the menu's number, a point and the item's number");
        return {};
    }
    const auto menus = session.menus();
    if (number < 1 || static_cast<std::size_t>(number) > menus.size()) {
        session.refuse("there is no menu " + std::to_string(number));
        return {};
    }
    const Session::NumberedMenu& chosen = menus[static_cast<std::size_t>(number - 1)];
    if (const auto refusal = session.host().choose(*chosen.addOn, chosen.menu->resID, item))
        session.refuse(*refusal);
    return {};
}

}  // namespace

void addMenuCommands(CommandSet& commands) {
    commands.add({"menu", "menu", "shows the menus of the loaded add-ons", 0, 0, menu});
    commands.add(
        {"choose", "choose [MENU.]ITEM", "chooses a menu item; without MENU, of menu 1", 1, 1, choose});
}

}  // namespace host

#pragma once

#include "platform/HostTable.h"

#include <string>
#include <vector>

namespace host {

struct MenuItem {
    std::string text;         ///< UTF-8
    std::uint32_t flags = 0;  ///< kAPIMenuItem...

    bool checked() const { return (flags & kAPIMenuItemChecked) != 0; }
    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

/// One registered menu.
struct Menu {
    short resID = 0;
    std::string title;
    std::vector<MenuItem> items;  ///< item n is items[n - 1]
    APIMenuRegistration registration{};
};

/// The menus that one add-on has registered.
class Menus {
public:
    /// Reads the menu's texts from the add-on's resources. Returns an error code, 0 for success.
    GSErrCode add(RSResModule resources, const APIMenuRegistration& registration);

    /// Null when it is not registered, or has no such item.
    const Menu* find(short resID) const;
    MenuItem* find(const API_MenuItemRef& item);
    const std::vector<Menu>& all() const { return menus_; }

private:
    std::vector<Menu> menus_;
};

}  // namespace host

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

/// The menus that one add-on has registered. The functions answer an error code, 0 for success.
class Menus {
public:
    /// Reads the menu's texts from the add-on's resources.
    GSErrCode add(RSResModule resources, const APIMenuRegistration& registration);
    GSErrCode setText(const API_MenuItemRef& item, const std::string& text);
    GSErrCode getFlags(const API_MenuItemRef& item, std::uint32_t& flags) const;
    GSErrCode setFlags(const API_MenuItemRef& item, std::uint32_t flags);

    const Menu* find(short resID) const;
    const std::vector<Menu>& all() const { return menus_; }

private:
    const MenuItem* findItem(const API_MenuItemRef& item) const;
    MenuItem* findItem(const API_MenuItemRef& item);

    std::vector<Menu> menus_;
};

}  // namespace host

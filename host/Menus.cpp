#include "host/Menus.h"

#include "host/ErrorCodes.h"
#include "platform/host/Resources.h"

#include <utility>

namespace host {

GSErrCode Menus::add(RSResModule resources, const APIMenuRegistration& registration) {
    if (find(registration.menuResID) != nullptr) return kErrAlreadyThere;
    platform::MenuResource resource;
    if (!platform::getMenuResource(resources, registration.menuResID, resource)) return kErrNoResource;
    Menu menu;
    menu.resID = registration.menuResID;
    menu.title = std::move(resource.title);
    for (std::string& text : resource.items)
        menu.items.push_back({std::move(text), 0});
    menu.registration = registration;
    menus_.push_back(std::move(menu));
    return kNoError;
}

const Menu* Menus::find(short resID) const {
    for (const Menu& menu : menus_) {
        if (menu.resID == resID) return &menu;
    }
    return nullptr;
}

MenuItem* Menus::find(const API_MenuItemRef& item) {
    for (Menu& menu : menus_) {
        const auto index = static_cast<std::size_t>(item.itemIndex) - 1;
        if (menu.resID == item.menuResID && index < menu.items.size()) return &menu.items[index];
    }
    return nullptr;
}

}  // namespace host

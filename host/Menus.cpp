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

GSErrCode Menus::setText(const API_MenuItemRef& item, const std::string& text) {
    MenuItem* const found = findItem(item);
    if (found == nullptr) return kErrNoSuchMenu;
    found->text = text;
    return kNoError;
}

GSErrCode Menus::getFlags(const API_MenuItemRef& item, std::uint32_t& flags) const {
    const MenuItem* const found = findItem(item);
    if (found == nullptr) return kErrNoSuchMenu;
    flags = found->flags;
    return kNoError;
}

GSErrCode Menus::setFlags(const API_MenuItemRef& item, std::uint32_t flags) {
    MenuItem* const found = findItem(item);
    if (found == nullptr) return kErrNoSuchMenu;
    found->flags = flags;
    return kNoError;
}

const Menu* Menus::find(short resID) const {
    for (const Menu& menu : menus_) {
        if (menu.resID == resID) return &menu;
    }
    return nullptr;
}

const MenuItem* Menus::findItem(const API_MenuItemRef& item) const {
    const Menu* const menu = find(item.menuResID);
    if (menu == nullptr || item.itemIndex < 1) return nullptr;
    const auto index = static_cast<std::size_t>(item.itemIndex - 1);
    return index < menu->items.size() ? &menu->items[index] : nullptr;
}

MenuItem* Menus::findItem(const API_MenuItemRef& item) {
    return const_cast<MenuItem*>(std::as_const(*this).findItem(item));
}

}  // namespace host

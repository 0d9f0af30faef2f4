#include "host/MenuRequests.h"

#include "host/AddOn.h"
#include "host/ErrorCodes.h"

namespace host {

using platform::TraceArguments;

std::vector<GSType> MenuRequests::codes() const {
    return {APIIo_SetMenuItemTextID, APIIo_GetMenuItemFlagsID, APIIo_SetMenuItemFlagsID};
}

GSErrCode MenuRequests::answer(AddOn& addOn, GSType code, void* par1, void* par2, void* par3) {
    const void* const value = code == APIIo_SetMenuItemTextID ? par3 : par2;
    if (par1 == nullptr || value == nullptr) return kErrBadParameter;
    const auto& item = *static_cast<const API_MenuItemRef*>(par1);
    if (code == APIIo_SetMenuItemTextID) {
        return addOn.menus.setText(item, UniStringToUtf8(*static_cast<const GS::UniString*>(value)));
    }
    if (code == APIIo_SetMenuItemFlagsID) {
        return addOn.menus.setFlags(item, *static_cast<const std::uint32_t*>(value));
    }
    return addOn.menus.getFlags(item, *static_cast<std::uint32_t*>(par2));
}

TraceArguments MenuRequests::arguments(GSType code, const void* par1, const void* par2,
                                       const void* par3) const {
    TraceArguments arguments;
    if (par1 != nullptr) {
        const auto& item = *static_cast<const API_MenuItemRef*>(par1);
        arguments = {{"menu", item.menuResID}, {"item", item.itemIndex}};
    }
    if (code == APIIo_SetMenuItemTextID && par3 != nullptr) {
        arguments.emplace_back("text", UniStringToUtf8(*static_cast<const GS::UniString*>(par3)));
    }
    if (code == APIIo_SetMenuItemFlagsID && par2 != nullptr) {
        arguments.emplace_back("flags", std::int64_t{*static_cast<const std::uint32_t*>(par2)});
    }
    return arguments;
}

TraceArguments MenuRequests::outputs(GSType code, const void*, const void* par2, const void*) const {
    if (code != APIIo_GetMenuItemFlagsID) return {};
    return {{"flags", std::int64_t{*static_cast<const std::uint32_t*>(par2)}}};
}

}  // namespace host

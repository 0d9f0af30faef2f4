#include "language/KW_Language.h"
#include "platform/HostInterface.h"
#include "settings/KW_AddonSettings.h"
#include "update/KW_AddonUpdate_Internal.h"

namespace {

KW_String autoUpdateKey() {
    return KW_SystemText("AutoUpdate");
}

/// Hands the flags of the item in each menu that the host has to `change`, and writes them back.
template <typename Change>
void changeItemFlags(short firstMenuResID, short item, Change change) {
    for (short m = 0; m < KW_Language_Count; ++m) {
        API_MenuItemRef reference{};
        reference.menuResID = static_cast<std::int16_t>(firstMenuResID + m);
        reference.itemIndex = item;
        std::uint32_t flags = 0;
        if (ACAPI_Interface(APIIo_GetMenuItemFlagsID, &reference, &flags, nullptr) != kNoError) continue;
        change(flags);
        ACAPI_Interface(APIIo_SetMenuItemFlagsID, &reference, &flags, nullptr);
    }
}

}  // namespace

KW_String KW_AddonUpdate_GetAutoUpdate() {
    return KW_AddonSettings_Get(KW_AddonSettings_ThisAddon, autoUpdateKey(), true);
}

void KW_AddonUpdate_SetAutoUpdate(bool on) {
    KW_AddonSettings_LoadSetSave(KW_AddonSettings_ThisAddon, autoUpdateKey(), KW_SystemText(on ? "1" : "0"),
                                 true);
}

bool KW_AddonUpdate_SwitchAutoUpdateValue(short menuResID, short item) {
    changeItemFlags(menuResID, item, [](std::uint32_t& flags) {
        flags ^= kAPIMenuItemChecked;
        KW_AddonUpdate_SetAutoUpdate((flags & kAPIMenuItemChecked) != 0);
    });
    return true;
}

bool KW_AddonUpdate_SetMenuUpdateCheck(short menuResID, short item) {
    const KW_String value = KW_AddonUpdate_GetAutoUpdate();
    const long on = value.length == 0 ? 1 : KW_AddonUpdate_ToLong(value);
    changeItemFlags(menuResID, item, [on](std::uint32_t& flags) {
        if (on == 0) flags &= ~kAPIMenuItemChecked;
        if (on == 1) flags |= kAPIMenuItemChecked;
    });
    return true;
}

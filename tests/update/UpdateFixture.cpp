#include "tests/update/UpdateFixture.h"

#include "language/KW_Language.h"
#include "settings/KW_AddonSettings.h"

UpdateFixture::UpdateFixture() {
    KW_AddonSettings_Load(KW_AddonSettings_ThisAddon, false);
    reset();
    gKW_Language = KW_Language_International;
}

void UpdateFixture::reset() {
    sCurrentAddonVersion.SetToNullString();
    sUpdateAddonLibName.SetToNullString();
    sIDUpdateDialog = sUpdateStatus = 0;
    sHasLibrary = sUpdateCalledByUser = sUpdateCancelled = sUpdateDownloading = sUpdateDialogClosed = false;
}

UpdateFixture::~UpdateFixture() {
    for (const short id : platform::DialogControl::instance().openDialogs())
        DGModelessClose(id);
    gKW_Language = KW_Language_International;
}

std::string UpdateFixture::stored(const std::string& key) {
    KW_AddonSettings_Load(KW_AddonSettings_ThisAddon, false);
    return utf8(KW_AddonSettings_Get(KW_AddonSettings_ThisAddon, text(key), false));
}

void UpdateFixture::store(const std::string& key, const std::string& value) {
    KW_AddonSettings_LoadSetSave(KW_AddonSettings_ThisAddon, text(key), text(value), true);
}

std::string UpdateFixture::alertText() const {
    if (presenter_.alerts.size() != 1) return std::to_string(presenter_.alerts.size()) + " alerts";
    return GS::UniStringToUtf8(presenter_.alerts.front().texts[1]);
}

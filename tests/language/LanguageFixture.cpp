#include "tests/language/LanguageFixture.h"

#include "language/KW_Language.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"
#include "tests/support/SettingsBytes.h"

#include <cstdlib>

const bool kSharesLanguage = !sett_ADDON_HAS_OWN_LANGUAGE;

LanguageFixture::LanguageFixture() {
    setenv("TESSARO_DATA_DIR", folder_.path().c_str(), 1);
    reloadSettings();
    gKW_Language = KW_Language_International;
}

LanguageFixture::~LanguageFixture() {
    gKW_Language = KW_Language_International;
}

const char* LanguageFixture::languageFile() {
    return kSharesLanguage ? "TessaroPlugins.cfg" : "TestAddon_220.cfg";
}

void LanguageFixture::writeSettings(const std::string& file, const std::string& entries) const {
    folder_.write(file, exchanged(entries));
}

std::string LanguageFixture::settings(const std::string& file) const {
    return folder_.has(file) ? exchanged(folder_.read(file)) : "(no file)";
}

void LanguageFixture::reloadSettings() {
    KW_AddonSettings_Load(KW_AddonSettings_AllAddons, false);
    KW_AddonSettings_Load(KW_AddonSettings_ThisAddon, false);
}

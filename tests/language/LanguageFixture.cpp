#include "tests/language/LanguageFixture.h"

#include "language/KW_Language.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"

#include <cstdlib>

const bool kSharesLanguage = !sett_ADDON_HAS_OWN_LANGUAGE;

namespace {

std::string halvesExchanged(std::string bytes) {
    for (char& byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        byte = static_cast<char>(static_cast<unsigned char>(value << 4 | value >> 4));
    }
    return bytes;
}

}  // namespace

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
    folder_.write(file, halvesExchanged(entries));
}

std::string LanguageFixture::settings(const std::string& file) const {
    return folder_.has(file) ? halvesExchanged(folder_.read(file)) : "(no file)";
}

void LanguageFixture::reloadSettings() {
    KW_AddonSettings_Load(KW_AddonSettings_AllAddons, false);
    KW_AddonSettings_Load(KW_AddonSettings_ThisAddon, false);
}

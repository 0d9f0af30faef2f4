#pragma once

#include "language/KW_Language.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"
#include "tests/support/DataFolder.h"
#include "tests/support/SettingsBytes.h"

#include <gtest/gtest.h>
#include <string>

/// Whether this program is the add-on that shares the suite's language (TestAddon.cpp).
inline const bool kSharesLanguage = !sett_ADDON_HAS_OWN_LANGUAGE;

/// A data folder of its own for each test, with empty settings and the international language to start with.
class LanguageFixture : public testing::Test {
protected:
    LanguageFixture() {
        reloadSettings();
        gKW_Language = KW_Language_International;
    }

    static const char* languageFile() { return kSharesLanguage ? "TessaroPlugins.cfg" : "TestAddon_220.cfg"; }

    void writeSettings(const std::string& file, const std::string& entries) const {
        folder_.write(file, exchanged(entries));
    }
    std::string settings(const std::string& file) const { return exchanged(folder_.read(file)); }
    /// Makes the module take in what the test wrote.
    static void reloadSettings() {
        KW_AddonSettings_Load(KW_AddonSettings_AllAddons, false);
        KW_AddonSettings_Load(KW_AddonSettings_ThisAddon, false);
    }

    DataFolder folder_;
};

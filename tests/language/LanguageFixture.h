#pragma once

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <string>

/// Whether this program is the add-on that shares the suite's language, offers all languages and supports two
/// extra ones (TestAddon.cpp).
extern const bool kSharesLanguage;

/// A data folder of its own for each test, with empty settings and the international language to start with.
class LanguageFixture : public testing::Test {
protected:
    LanguageFixture();
    ~LanguageFixture() override;

    /// Name of the settings file that holds this add-on's language.
    static const char* languageFile();

    /// Writes a settings file; `entries` as they read once the halves of each byte are exchanged.
    void writeSettings(const std::string& file, const std::string& entries) const;
    /// The entries in the file; "(no file)" without one.
    std::string settings(const std::string& file) const;
    /// Makes the module take in what the test wrote.
    static void reloadSettings();

    TemporaryFolder folder_;
};

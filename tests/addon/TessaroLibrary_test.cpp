#include "addon/TessaroLibrary.h"

#include "addon/EntryPoints.h"
#include "language/KW_Language.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"
#include "tests/support/DataFolder.h"
#include "tests/support/RecordingHost.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace {

using support::RecordingHost;
using support::text;

/// A host and an empty data folder; the settings in memory start empty.
class TessaroLibraryTest : public testing::Test {
protected:
    void SetUp() override { KW_AddonSettings_Load(KW_AddonSettings_ThisAddon, false); }
    void store(const std::string& key, const std::string& value) {
        KW_AddonSettings_LoadSetSave(KW_AddonSettings_ThisAddon, text(key), text(value), true);
    }

    DataFolder folder;
    RecordingHost host;
};

TEST_F(TessaroLibraryTest, RegistersTheMenuOfTheStoredLanguageThenTheBuiltInLibrary) {
    store("Language_str", "ger");
    host.registerLibraryAnswer = -55;
    EXPECT_EQ(-55, RegisterInterface()) << "errors are passed on";
    EXPECT_EQ((std::vector<std::string>{"Register_Menu 32503 0 13 0", "Register_BuiltInLibrary"}),
              host.calls);
    host.calls.clear();
    host.registerMenuAnswer = -66;
    EXPECT_EQ(-66, RegisterInterface());
    EXPECT_EQ(1u, host.calls.size()) << "no library without the menu";
}

TEST_F(TessaroLibraryTest, InitializeInstallsSixHandlersAndThenSetsMarkAndTextsUnlessOneFailed) {
    ASSERT_EQ(0, RegisterInterface());
    host.calls.clear();
    host.installAnswers = {{32501, 0x10}, {32504, 0x01}};
    EXPECT_EQ(0x11, Initialize());
    EXPECT_EQ(6u, host.calls.size()) << "all six are installed, nothing follows";
    host.installAnswers.clear();
    host.calls.clear();
    ASSERT_EQ(0, Initialize());
    ASSERT_GT(host.calls.size(), 14u);
    EXPECT_EQ("GMIF 32500 4", host.calls[6]) << "behind the six handlers";
    EXPECT_EQ("SMIT 32500 1", host.calls[14].substr(0, 12)) << "behind the flags of seven menus";
    EXPECT_EQ(kAPIMenuItemChecked, (host.itemFlags[{32501, 4}]));
    for (int item = 1; item <= 5; ++item)
        EXPECT_NE("", (host.itemTexts[{32501, item}]));
}

TEST_F(TessaroLibraryTest, EachHandlerAnswersTheMenuOfItsLanguage) {
    store("AutoUpdate", "0");
    const APIMenuCommandProc handlers[] = {MenuCommandHandler_ITA, MenuCommandHandler_INT,
                                           MenuCommandHandler_FRA, MenuCommandHandler_GER,
                                           MenuCommandHandler_ESP, MenuCommandHandler_JAP};
    Initialize();
    host.calls.clear();
    for (short language = 0; language < 6; ++language) {
        const API_MenuParams params{{static_cast<short>(32500 + language), 0}};
        EXPECT_EQ(0, handlers[language](&params));
        EXPECT_EQ(0, host.handlers.at(params.menuItemRef.menuResID)(&params));
    }
    EXPECT_EQ(std::vector<std::string>(12, "KeepInMemory true"), host.calls);
}

}  // namespace

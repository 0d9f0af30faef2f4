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

TEST_F(TessaroLibraryTest, RegistersOnlyInTheHostThatItIsMadeFor) {
    for (const std::uint32_t application : {0u, 1u, 2u, 0xFFFFFFFFu}) {
        API_EnvirParams params{};
        params.serverInfo.serverApplication = application;
        const bool known = application == 1;
        EXPECT_EQ(known ? 2 : 0, CheckEnvironment(&params));
        EXPECT_EQ(known ? "TessaroLibrary 22.0 (AC220)" : "", GS::UniStringToUtf8(params.addOnInfo.name));
        EXPECT_EQ(known ? "TessaroLibrary" : "", GS::UniStringToUtf8(params.addOnInfo.description));
    }
}

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

TEST_F(TessaroLibraryTest, InitializeInstallsSixHandlersOrReturnsTheirCombinedErrorsAndSetsNoTexts) {
    ASSERT_EQ(0, RegisterInterface());
    host.calls.clear();
    host.installAnswers = {{32501, 0x10}, {32504, 0x01}};
    EXPECT_EQ(0x11, Initialize());
    EXPECT_EQ(6u, host.calls.size()) << "all six are installed, nothing follows";
    for (short id = 32500; id <= 32505; ++id)
        EXPECT_TRUE(host.handlers.contains(id)) << id;
    host.installAnswers.clear();
    ASSERT_EQ(0, Initialize());
    for (int item = 1; item <= 5; ++item)
        EXPECT_NE("", (host.itemTexts[{32501, item}]));
}

TEST_F(TessaroLibraryTest, InitializeMarksTheAutomaticCheckAsStoredBeforeItSetsTheTexts) {
    const std::pair<const char*, std::uint32_t> cases[] = {{"", 2}, {"0", 0}, {"1", 2}};
    for (const auto& [value, flags] : cases) {
        store("AutoUpdate", value);
        ASSERT_EQ(0, RegisterInterface());
        host.calls.clear();
        ASSERT_EQ(0, Initialize());
        EXPECT_EQ(flags, (host.itemFlags[{32501, 4}])) << value;
        ASSERT_GT(host.calls.size(), 14u);
        EXPECT_EQ("GMIF 32500 4", host.calls[6]) << "behind the six handlers";
        EXPECT_EQ("SMIT 32500 1", host.calls[14].substr(0, 12)) << "behind the flags of seven menus";
    }
}

TEST_F(TessaroLibraryTest, AHandlerIgnoresTheCommandsOfAnotherMenu) {
    const API_MenuParams params{{32501, 5}};
    EXPECT_EQ(0, MenuCommandHandler_FRA(&params));
    EXPECT_TRUE(host.calls.empty());
}

}  // namespace

#include "addon/TessaroLibrary.h"

#include "addon/EntryPoints.h"
#include "language/KW_Language.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"
#include "tests/support/DataFolder.h"
#include "tests/support/RecordingHost.h"

#include <gtest/gtest.h>

namespace {

using support::RecordingHost;

/// A host and an empty data folder; the settings in memory start empty.
class TessaroLibraryTest : public testing::Test {
protected:
    void SetUp() override { KW_AddonSettings_Load(KW_AddonSettings_ThisAddon, false); }
    void storeLanguage(char const* suffix) {
        KW_AddonSettings_LoadSetSave(KW_AddonSettings_ThisAddon,
                                     KW_String("Language_str", KW_String::Encoding_System),
                                     KW_String(suffix, KW_String::Encoding_System), true);
    }

    DataFolder folder;
    RecordingHost host;
};

TEST_F(TessaroLibraryTest, RegistersOnlyInTheHostThatItIsMadeFor) {
    for (const std::uint32_t application : {0u, 2u, 0xFFFFFFFFu}) {
        API_EnvirParams params{};
        params.serverInfo.serverApplication = application;
        EXPECT_EQ(0, CheckEnvironment(&params));
        EXPECT_TRUE(params.addOnInfo.name.IsEmpty());
        EXPECT_TRUE(params.addOnInfo.description.IsEmpty());
    }
    API_EnvirParams params{};
    params.serverInfo.serverApplication = 1;
    EXPECT_EQ(2, CheckEnvironment(&params));
    EXPECT_EQ("TessaroLibrary 22.0 (AC220)", GS::UniStringToUtf8(params.addOnInfo.name));
    EXPECT_EQ("TessaroLibrary", GS::UniStringToUtf8(params.addOnInfo.description));
}

TEST_F(TessaroLibraryTest, RegistersTheMenuOfTheStoredLanguageThenTheBuiltInLibrary) {
    storeLanguage("ger");
    EXPECT_EQ(0, RegisterInterface());
    EXPECT_EQ((std::vector<std::string>{"Register_Menu 32503 0 13 0", "Register_BuiltInLibrary"}),
              host.calls);
}

TEST_F(TessaroLibraryTest, PassesRegistrationErrorsOn) {
    host.registerLibraryAnswer = -55;
    EXPECT_EQ(-55, RegisterInterface());
    host.calls.clear();
    host.registerMenuAnswer = -66;
    EXPECT_EQ(-66, RegisterInterface());
    EXPECT_EQ(1u, host.calls.size()) << "no library without the menu";
}

TEST_F(TessaroLibraryTest, InitializeInstallsSixHandlersAndTextsTheRegisteredMenu) {
    ASSERT_EQ(0, RegisterInterface());
    ASSERT_EQ(0, Initialize());
    for (short id = 32500; id <= 32505; ++id)
        EXPECT_TRUE(host.handlers.contains(id)) << id;
    EXPECT_FALSE(host.handlers.contains(32506));
    for (int item = 1; item <= 5; ++item) {
        const std::string text = host.itemTexts[{32501, item}];
        EXPECT_NE("", text);
        EXPECT_NE("_ERR_NO_", text);
    }
}

TEST_F(TessaroLibraryTest, InitializeMarksTheAutomaticCheckAsStoredBeforeItSetsTheTexts) {
    const std::pair<char const*, std::uint32_t> cases[] = {{"", 2}, {"0", 0}, {"1", 2}};
    for (const auto& [value, flags] : cases) {
        KW_AddonSettings_LoadSetSave(KW_AddonSettings_ThisAddon,
                                     KW_String("AutoUpdate", KW_String::Encoding_System),
                                     KW_String(value, KW_String::Encoding_System), true);
        ASSERT_EQ(0, RegisterInterface());
        host.calls.clear();
        ASSERT_EQ(0, Initialize());
        EXPECT_EQ(flags, (host.itemFlags[{32501, 4}])) << value;
        ASSERT_GT(host.calls.size(), 14u);
        EXPECT_EQ("GMIF 32500 4", host.calls[6]) << "behind the six handlers";
        EXPECT_EQ("SMIT 32500 1", host.calls[14].substr(0, 12)) << "behind the flags of seven menus";
    }
}

TEST_F(TessaroLibraryTest, InitializeReturnsTheCombinedErrorsAndThenSetsNoTexts) {
    ASSERT_EQ(0, RegisterInterface());
    host.calls.clear();
    host.installAnswers = {{32501, 0x10}, {32504, 0x01}};
    EXPECT_EQ(0x11, Initialize());
    EXPECT_EQ(6u, host.calls.size()) << "all six are installed, nothing follows";
}

TEST_F(TessaroLibraryTest, AHandlerIgnoresTheCommandsOfAnotherMenu) {
    const API_MenuParams params{{32501, 5}};
    EXPECT_EQ(0, MenuCommandHandler_FRA(&params));
    EXPECT_TRUE(host.calls.empty());
}

}  // namespace

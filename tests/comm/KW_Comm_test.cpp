#include "comm/KW_Comm.h"

#include "tests/support/DataFolder.h"
#include "tests/support/SettingsBytes.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

namespace {

std::uint16_t sHostVersion = 22;
bool sSuiteAnswers = false;
constexpr const char* kMarker = "TestAddon_220_22.sui";

class Comm : public ::testing::Test {
protected:
    DataFolder temp_;
};

TEST_F(Comm, TheMarkerFileSaysWhetherTheAddOnIsLoaded) {
    EXPECT_FALSE(KW_Comm::AddOnFileRead());
    for (const bool loaded : {true, false}) {
        EXPECT_TRUE(KW_Comm::AddOnFileWrite(loaded));
        EXPECT_EQ(temp_.read(kMarker),
                  exchanged(loaded ? "$Tessaro Loaded: TRUE\n" : "$Tessaro Loaded: FALSE\n"));
        EXPECT_EQ(KW_Comm::AddOnFileRead(), loaded);
    }
    EXPECT_EQ(temp_.count(), 1);
}

TEST_F(Comm, OnlyOneEntryWithTheValueTrueCounts) {
    for (const auto& [content, loaded] : std::map<std::string, bool>{
             {"$any key: TRUE\n", true},
             {"", false},
             {"$k: true\n", false},
             {"$k: TRUE \n", false},
             {"$k: TRUE\n$k: TRUE\n", false},
             {"$k: TRUE\nrubbish", false},
             {"$k: TRUE\n$cut: TRUE", true},
             {"$k: " + std::string(100000, 'T') + "\n", false},
         }) {
        temp_.write(kMarker, exchanged(content));
        EXPECT_EQ(KW_Comm::AddOnFileRead(), loaded) << content.substr(0, 40);
    }
}

TEST_F(Comm, DeletingTakesTheMarkersOfTheRunningVersionOnly) {
    const char* const kept[] = {"B_21.sui",     "Tessaro_AC22.sui", "C_22.SUI",
                                "D_22.sui.bak", "E_122.sui",        "folder/F_22.sui"};
    for (const char* name : kept)
        temp_.write(name, "x");
    for (const char* name : {"A_22.sui", "_22.sui", "A\xE9_22.sui"})
        temp_.write(name, "x");
    temp_.makeFolder("folder_22.sui");
    KW_Comm::AddOnsFileDelete();
    for (const char* name : kept)
        EXPECT_TRUE(temp_.has(name)) << name;
    EXPECT_TRUE(temp_.has("folder_22.sui"));
    EXPECT_EQ(temp_.count(), 7);
}

TEST_F(Comm, TheSuiteIsThereWhenItsModuleAnswersOrItsFileExists) {
    for (const bool rightVersion : {false, true}) {
        temp_.write(rightVersion ? "Tessaro_AC22.sui" : "Tessaro_AC21.sui", "");
        EXPECT_EQ(KW_Comm::SuiteFileExist(), rightVersion);
        for (const bool suiteAnswers : {true, false}) {
            sSuiteAnswers = suiteAnswers;
            bool answers = !suiteAnswers;
            EXPECT_EQ(KW_Comm::SuiteIsLoaded(answers), suiteAnswers || rightVersion);
            EXPECT_EQ(answers, suiteAnswers);
        }
    }
}

TEST_F(Comm, FileNamesCarryTheHostVersion) {
    KW_Location location;
    EXPECT_TRUE(KW_Comm::AddOnFileLocation(7, location));
    EXPECT_EQ(location, support::text(temp_.path("TestAddon_220_7.sui")));
    EXPECT_TRUE(KW_Comm::SuiteFileLocation(65535, location));
    EXPECT_EQ(location, support::text(temp_.path("Tessaro_AC65535.sui")));
    sHostVersion = 65535;
    EXPECT_TRUE(KW_Comm::AddOnFileWrite(true));
    EXPECT_TRUE(temp_.has("TestAddon_220_65535.sui"));
    sHostVersion = 22;
}

TEST_F(Comm, WithoutASettingsFolderNothingIsWrittenOrFound) {
    std::filesystem::remove(temp_.path());
    bool answers = true;
    EXPECT_FALSE(KW_Comm::AddOnFileWrite(true));
    KW_Comm::AddOnsFileDelete();
    EXPECT_FALSE(KW_Comm::SuiteIsLoaded(answers));
    EXPECT_FALSE(answers);
}

TEST(CommIdentifiers, EveryCodeHasItsModule) {
    constexpr std::uint32_t kNone = 0;
    const std::uint32_t localIDs[] = {0xB66087E5, 0x5F6C4B2F, kNone,      0xB2D01BA0, 0xFC120734, 0xDC45EDE8,
                                      0x88B291EC, 0x48D8FE36, 0xA7143732, 0x1BAA6910, 0x881F89E6, 0xAC3DFE1F,
                                      0x3D2AADC9, 0x2E2BEED1, 0x48C33F40, 0x22024855, 0x9EA4016E, 0x2C1EE136,
                                      0xCF5752A1, 0xD3C6AD2C, 0xBF3B79AF, 0xE9EE6447, 0x1BAA6910, 0x175A7FAA,
                                      0xF0CD9A49, 0x267C2168};
    for (const int code : {INT32_MIN, -4, 23, INT32_MAX, -1})
        EXPECT_EQ(KW_Comm::GetMDID(KW_Comm_AddOnsCode(code)), (API_ModulID{0x20202020, 0x20202020})) << code;
    for (int code = -3; code <= 22; ++code) {
        const API_ModulID module{0x4B7E2A19, localIDs[code + 3]};
        EXPECT_TRUE(code == -1 || KW_Comm::GetMDID(KW_Comm_AddOnsCode(code)) == module) << code;
    }
}

}  // namespace

void ACAPI_GetReleaseNumber(API_ServerApplicationInfo* info) {
    *info = {1, sHostVersion, 3, 4};
}

GSErrCode ACAPI_Command_Test(const API_ModulID* module, GSType command, std::int32_t version) {
    const bool suite =
        *module == API_ModulID{0x4B7E2A19, 0x9E14EC41} && command == 0x53554954 && version == 0;
    return suite && sSuiteAnswers ? kNoError : kAPIErrNoHostFunction;
}

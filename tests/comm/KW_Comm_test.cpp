#include "comm/KW_Comm.h"

#include "tests/support/DataFolder.h"
#include "tests/support/SettingsBytes.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

struct Host {
    std::uint16_t mainVersion = 22;
    bool suiteAnswers = false;
};
Host sHost;

constexpr const char* kMarker = "TestAddon_220_22.sui";

class Comm : public ::testing::Test {
protected:
    DataFolder temp_;
    const Host reset_ = sHost = Host();
};

TEST_F(Comm, TheMarkerFileSaysWhetherTheAddOnIsLoaded) {
    EXPECT_FALSE(KW_Comm::AddOnFileRead());
    EXPECT_TRUE(KW_Comm::AddOnFileWrite(true));
    EXPECT_EQ(temp_.read(kMarker), exchanged("$Tessaro Loaded: TRUE\n"));
    EXPECT_TRUE(KW_Comm::AddOnFileRead());
    EXPECT_TRUE(KW_Comm::AddOnFileWrite(false));
    EXPECT_EQ(temp_.read(kMarker), exchanged("$Tessaro Loaded: FALSE\n"));
    EXPECT_FALSE(KW_Comm::AddOnFileRead());
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
    struct Case {
        bool answers;
        const char* file;
        bool loaded;
    };
    for (const Case& c : {Case{false, "Tessaro_AC21.sui", false}, Case{true, "Tessaro_AC21.sui", true},
                          Case{false, "Tessaro_AC22.sui", true}}) {
        sHost.suiteAnswers = c.answers;
        temp_.write(c.file, "");
        bool answers = !c.answers;
        EXPECT_EQ(KW_Comm::SuiteIsLoaded(answers), c.loaded);
        EXPECT_EQ(answers, c.answers);
        EXPECT_EQ(KW_Comm::SuiteFileExist(), temp_.has("Tessaro_AC22.sui"));
    }
}

TEST_F(Comm, FileNamesCarryTheHostVersion) {
    KW_Location location;
    EXPECT_TRUE(KW_Comm::AddOnFileLocation(7, location));
    EXPECT_EQ(location, support::text(temp_.path("TestAddon_220_7.sui")));
    EXPECT_TRUE(KW_Comm::SuiteFileLocation(65535, location));
    EXPECT_EQ(location, support::text(temp_.path("Tessaro_AC65535.sui")));
    sHost.mainVersion = 65535;
    EXPECT_TRUE(KW_Comm::AddOnFileWrite(true));
    EXPECT_TRUE(temp_.has("TestAddon_220_65535.sui"));
}

TEST_F(Comm, WithoutASettingsFolderNothingIsWrittenOrFound) {
    std::filesystem::remove(temp_.path());
    bool answers = true;
    EXPECT_FALSE(KW_Comm::AddOnFileWrite(true));
    EXPECT_FALSE(KW_Comm::AddOnFileRead());
    KW_Comm::AddOnsFileDelete();
    EXPECT_FALSE(KW_Comm::SuiteIsLoaded(answers));
    EXPECT_FALSE(answers);
    EXPECT_FALSE(std::filesystem::exists(temp_.path()));
}

TEST(CommIdentifiers, EveryCodeHasItsModule) {
    const std::map<int, std::uint32_t> localIDs = {
        {-3, 0xB66087E5}, {-2, 0x5F6C4B2F}, {0, 0xB2D01BA0},  {1, 0xFC120734},  {2, 0xDC45EDE8},
        {3, 0x88B291EC},  {4, 0x48D8FE36},  {5, 0xA7143732},  {6, 0x1BAA6910},  {7, 0x881F89E6},
        {8, 0xAC3DFE1F},  {9, 0x3D2AADC9},  {10, 0x2E2BEED1}, {11, 0x48C33F40}, {12, 0x22024855},
        {13, 0x9EA4016E}, {14, 0x2C1EE136}, {15, 0xCF5752A1}, {16, 0xD3C6AD2C}, {17, 0xBF3B79AF},
        {18, 0xE9EE6447}, {19, 0x1BAA6910}, {20, 0x175A7FAA}, {21, 0xF0CD9A49}, {22, 0x267C2168}};
    const API_ModulID blank = {0x20202020, 0x20202020};
    for (int code = -50; code < 50; ++code) {
        const auto known = localIDs.find(code);
        const API_ModulID expected = known == localIDs.end() ? blank : API_ModulID{0x4B7E2A19, known->second};
        EXPECT_EQ(KW_Comm::GetMDID(static_cast<KW_Comm_AddOnsCode>(code)), expected) << code;
    }
    for (const int code : {INT32_MIN, INT32_MAX})
        EXPECT_EQ(KW_Comm::GetMDID(static_cast<KW_Comm_AddOnsCode>(code)), blank);
}

}  // namespace

void ACAPI_GetReleaseNumber(API_ServerApplicationInfo* info) {
    *info = {1, sHost.mainVersion, 3, 4};
}

GSErrCode ACAPI_Command_Test(const API_ModulID* module, GSType command, std::int32_t version) {
    const bool suite =
        *module == API_ModulID{0x4B7E2A19, 0x9E14EC41} && command == 0x53554954 && version == 0;
    return suite && sHost.suiteAnswers ? kNoError : kAPIErrNoHostFunction;
}

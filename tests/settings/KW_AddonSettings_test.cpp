#include "settings/KW_AddonSettings.h"

#include "platform/host/SettingsFolder.h"
#include "tests/support/DataFolder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/SettingsBytes.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace {

constexpr auto kAll = KW_AddonSettings_AllAddons;
constexpr auto kThis = KW_AddonSettings_ThisAddon;
constexpr const char* kAllFile = "TessaroPlugins.cfg";
constexpr const char* kThisFile = "TestAddon_220.cfg";

using support::text;
using support::utf8;

/// Both sets loaded, empty.
class AddonSettings : public ::testing::Test {
protected:
    void SetUp() override {
        EXPECT_TRUE(KW_AddonSettings_Load(kAll, false));
        EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    }

    static std::string get(const char* key) { return utf8(KW_AddonSettings_Get(kThis, text(key), false)); }
    static void set(const char* key, const char* value) {
        EXPECT_TRUE(KW_AddonSettings_Set(kThis, text(key), text(value), true));
    }
    void writeFile(const std::string& plain) { temp_.write(kThisFile, exchanged(plain)); }

    DataFolder temp_;
};

TEST_F(AddonSettings, EachSetHasItsOwnFileInTheSettingsFolder) {
    KW_Location location;
    EXPECT_EQ(KW_AddonSettings_GetLocation(kAll, location), 0);
    EXPECT_EQ(utf8(location), temp_.path(kAllFile));
    EXPECT_EQ(KW_AddonSettings_GetLocation(kThis, location), 0);
    EXPECT_EQ(utf8(location), temp_.path(kThisFile));

    KW_AddonSettings_LoadSetSave(kAll, text("k"), text("all"), true);
    KW_AddonSettings_LoadSetSave(kThis, text("k"), text("this"), true);
    EXPECT_EQ(temp_.read(kAllFile), exchanged("$k: all\n"));
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$k: this\n"));

    platform::setSettingsFolder(IO::Location::FromPosixPath(temp_.path("missing")));
    EXPECT_FALSE(KW_AddonSettings_Save(kThis));
    EXPECT_EQ(get("k"), "this");
    EXPECT_FALSE(temp_.has("missing"));
}

TEST_F(AddonSettings, OfAKeyThatIsThereTwiceTheFirstIsMeant) {
    writeFile("$A: 1\n$A: 2\n");
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 2);
    EXPECT_EQ(get("A"), "1");
    set("A", "3");
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$A: 3\n$A: 2\n"));
    EXPECT_TRUE(KW_AddonSettings_Remove(kThis, text("A")));
    EXPECT_EQ(get("A"), "2");
    EXPECT_TRUE(KW_AddonSettings_Remove(kThis, text("A")));
    EXPECT_FALSE(KW_AddonSettings_Remove(kThis, text("A")));
}

TEST_F(AddonSettings, KeysAreComparedExactly) {
    set("Language_str", "ita");
    KW_String value = text("untouched");
    for (const char* key : {"language_str", "Language_st", "Language_str2", ""}) {
        EXPECT_FALSE(KW_AddonSettings_Get(kThis, text(key), &value, false));
        EXPECT_EQ(get(key), "");
    }
    EXPECT_EQ(utf8(value), "untouched");
    EXPECT_TRUE(KW_AddonSettings_Get(kThis, text("Language_str"), &value, false));
    EXPECT_TRUE(KW_AddonSettings_Get(kThis, text("Language_str"), nullptr, false));
    EXPECT_EQ(utf8(value), "ita");
    EXPECT_NE(KW_AddonSettings_Get(kThis, text("missing"), false).data, nullptr);
}

TEST_F(AddonSettings, AMissingKeyIsAddedAtTheEndOnlyWhenAskedFor) {
    EXPECT_TRUE(KW_AddonSettings_Set(kThis, text("k"), text("v"), false));
    EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 0);
    set("b", "1");
    set("a", "2");
    set("b", "3");
    KW_String key;
    KW_String value;
    EXPECT_TRUE(KW_AddonSettings_Get(kThis, 0L, &key, &value));
    EXPECT_EQ(utf8(key) + utf8(value), "b3");
    EXPECT_TRUE(KW_AddonSettings_Get(kThis, 1L, &key, nullptr));
    EXPECT_TRUE(KW_AddonSettings_Get(kThis, 1L, nullptr, &value));
    for (const long index : {-1L, 2L, std::numeric_limits<long>::min(), std::numeric_limits<long>::max()})
        EXPECT_FALSE(KW_AddonSettings_Get(kThis, index, &key, &value));
    EXPECT_EQ(utf8(key) + utf8(value), "a2");
}

TEST_F(AddonSettings, NumbersAreStoredAsTheirText) {
    EXPECT_TRUE(KW_AddonSettings_SetLong(kThis, text("l"), -42, true));
    EXPECT_EQ(get("l"), "-42");
    EXPECT_EQ(KW_AddonSettings_GetLong(kThis, text("l"), false), -42);

    for (const auto& [number, stored] :
         {std::pair(3.14159265, "3.14159"), std::pair(0.1, "0.1"), std::pair(1234567.0, "1.23457e+06"),
          std::pair(-0.0, "-0"), std::pair(100000.0, "100000"), std::pair(999999.5, "1e+06"),
          std::pair(HUGE_VAL, "inf")}) {
        EXPECT_TRUE(KW_AddonSettings_SetDouble(kThis, text("d"), number, true));
        EXPECT_EQ(get("d"), stored);
    }
    set("d", "2,5");
    EXPECT_EQ(KW_AddonSettings_GetDouble(kThis, text("d"), false), 2.5);

    long number = 7;
    double decimal = 7.5;
    EXPECT_FALSE(KW_AddonSettings_GetLong(kThis, text("x"), &number, false));
    EXPECT_FALSE(KW_AddonSettings_GetDouble(kThis, text("x"), &decimal, false));
    EXPECT_EQ(number, 7) << "a missing number leaves the variable";
    EXPECT_EQ(decimal, 7.5);
    EXPECT_EQ(KW_AddonSettings_GetLong(kThis, text("x"), false), 0);
    EXPECT_EQ(KW_AddonSettings_GetDouble(kThis, text("x"), false), 0.0);
}

TEST_F(AddonSettings, DecimalNumbersHaveAPointInEveryLocale) {
    // A locale with a decimal comma, made here: few machines have one installed.
    const std::string folder = temp_.path("locale");
    temp_.write("locale/source",
                "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
    const std::string command =
        "localedef -c -f ANSI_X3.4-1968 -i '" + folder + "/source' '" + folder + "/xx_XX' >/dev/null 2>&1";
    (void)!std::system(command.c_str());
    setenv("LOCPATH", folder.c_str(), 1);
    const bool available = std::setlocale(LC_NUMERIC, "xx_XX") != nullptr;
    if (available) {
        EXPECT_EQ(std::string(std::localeconv()->decimal_point), ",");
        EXPECT_TRUE(KW_AddonSettings_SetDouble(kThis, text("d"), 0.25, true));
    }
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
    if (!available) GTEST_SKIP() << "no locale with a decimal comma can be made here";
    EXPECT_EQ(get("d"), "0.25");
}

TEST_F(AddonSettings, OnlyALoadThatIsToldToDropsUnsavedChanges) {
    set("k", "unsaved");
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, true));
    EXPECT_EQ(get("k"), "unsaved");
    writeFile("$k: v\n");
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    EXPECT_EQ(get("k"), "v");
    KW_AddonSettings_Clear(kThis);
    EXPECT_FALSE(KW_AddonSettings_Get(kThis, text("k"), nullptr, true)) << "a cleared set stays loaded";
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$k: v\n"));
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));
    EXPECT_EQ(temp_.read(kThisFile), "");
}

TEST_F(AddonSettings, ADamagedFileIsKeptAsideBeforeItIsSavedOver) {
    const std::string aside = std::string(kThisFile) + ".damaged";
    const std::string damaged = "$good: 1\n$k: v\nrubbish";
    writeFile(damaged);
    EXPECT_FALSE(KW_AddonSettings_Load(kThis, false));
    EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 1);
    EXPECT_FALSE(temp_.has(aside)) << "loading writes nothing";
    temp_.makeFolder(aside);
    EXPECT_FALSE(KW_AddonSettings_Save(kThis)) << "without a copy nothing is saved over";
    EXPECT_EQ(temp_.read(kThisFile), exchanged(damaged));
    std::filesystem::remove(temp_.path(aside));
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));
    EXPECT_EQ(temp_.read(aside), exchanged(damaged));
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$good: 1\n"));

    // Once: what is saved now is sound.
    temp_.write(aside, "rescued");
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));
    EXPECT_EQ(temp_.read(aside), "rescued");

    writeFile(damaged);
    EXPECT_FALSE(KW_AddonSettings_Load(kThis, false));
    writeFile("$mended: 1\n");
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));
    EXPECT_EQ(temp_.read(aside), "rescued") << "another mended the file meanwhile";
}

TEST_F(AddonSettings, AFileThatIsTooLargeIsNotSavedOverUntilTheSetIsClearedOrLoaded) {
    const std::string large = exchanged("$k: " + std::string(100000, 'v') + "\n");
    temp_.write(kThisFile, large);
    EXPECT_FALSE(KW_AddonSettings_Load(kThis, false));
    set("k", "v");
    EXPECT_FALSE(KW_AddonSettings_Save(kThis));
    KW_AddonSettings_LoadSetSave(kThis, text("k"), text("w"), true);
    EXPECT_EQ(temp_.read(kThisFile), large);
    KW_AddonSettings_Clear(kThis);
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));
    EXPECT_EQ(temp_.read(kThisFile), "");

    temp_.write(kThisFile, large);
    EXPECT_FALSE(KW_AddonSettings_Load(kThis, false));
    writeFile("$l: 1\n");
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));
}

TEST_F(AddonSettings, ASaveThatFailsLeavesTheFileAndTheMemory) {
    writeFile("$k: old\n");
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    set("k", std::string(500, 'n').c_str());
    {
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 100);
        EXPECT_FALSE(KW_AddonSettings_Save(kThis));
    }
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$k: old\n"));
    EXPECT_EQ(get("k").size(), 500u);
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));

    writeFile("$k: v\n");
    {
        const ResourceLimit noMoreFiles(RLIMIT_NOFILE, 0);
        EXPECT_FALSE(KW_AddonSettings_Load(kThis, false));
    }
    EXPECT_FALSE(KW_AddonSettings_Save(kThis)) << "nor is a file saved over that could not be read";
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$k: v\n"));
}

/// Runs in a process of its own, where no set was ever loaded.
class NotLoadedYet : public ::testing::Test {
protected:
    NotLoadedYet() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    DataFolder temp_;
};

TEST_F(NotLoadedYet, OnlyTheOperationsThatSaySoLoad) {
    EXPECT_EXIT(
        {
            temp_.write(kThisFile, exchanged("$k: file\n"));
            EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 0);
            EXPECT_FALSE(KW_AddonSettings_Get(kThis, text("k"), nullptr, false));
            EXPECT_FALSE(KW_AddonSettings_Remove(kThis, text("k")));
            EXPECT_TRUE(KW_AddonSettings_Set(kThis, text("m"), text("memory"), true));
            EXPECT_EQ(utf8(KW_AddonSettings_Get(kThis, text("m"), false)), "memory");
            EXPECT_EQ(utf8(KW_AddonSettings_Get(kThis, text("k"), true)), "file");
            EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 1);
            KW_AddonSettings_LoadSetSave(kAll, text("k"), text("new"), true);
            EXPECT_EQ(temp_.read(kAllFile), exchanged("$k: new\n"));
            std::exit(HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(NotLoadedYet, AFaultyFileNeverCountsAsLoadedAndItsKeysAsMissing) {
    EXPECT_EXIT(
        {
            temp_.write(kThisFile, exchanged("$k: 5\n$l: 6\n$"));
            long number = 7;
            EXPECT_FALSE(KW_AddonSettings_GetLong(kThis, text("k"), &number, true));
            EXPECT_EQ(number, 7);
            EXPECT_EQ(KW_AddonSettings_GetLong(kThis, text("k"), true), 0);
            EXPECT_EQ(KW_AddonSettings_GetLong(kThis, text("k"), false), 5);
            temp_.write(kThisFile, exchanged("$k: 8\n"));
            EXPECT_EQ(KW_AddonSettings_GetLong(kThis, text("k"), true), 8);
            std::exit(HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

}  // namespace

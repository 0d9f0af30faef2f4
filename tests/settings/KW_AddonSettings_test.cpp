#include "settings/KW_AddonSettings.h"

#include "platform/host/FailingMemory.h"
#include "tests/support/DataFolder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/SettingsBytes.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>

namespace {

constexpr auto kAll = KW_AddonSettings_AllAddons;
constexpr auto kThis = KW_AddonSettings_ThisAddon;
constexpr const char* kAllFile = "TessaroPlugins.cfg";
constexpr const char* kThisFile = "TestAddon_220.cfg";

using support::text;
using support::utf8;

bool sFlushFails = false;
bool sRenameFails = false;

/// While it lives, nothing tells where the settings are.
class NoSettingsFolder {
public:
    explicit NoSettingsFolder(const DataFolder& folder) : folder_(folder) {
        for (const char* const name : {"TESSARO_DATA_DIR", "XDG_CONFIG_HOME", "HOME"})
            unsetenv(name);
        platform::setSettingsFolder(IO::Location());
    }
    ~NoSettingsFolder() { platform::setSettingsFolder(IO::Location::FromPosixPath(folder_.path())); }

private:
    const DataFolder& folder_;
};

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
    /// Saves with a full disk, and with system calls that fail when the content is complete.
    void expectNotSaved(const char* why) {
        const std::string stands = temp_.read(kThisFile);
        for (bool* const fails : {&sFlushFails, &sRenameFails, static_cast<bool*>(nullptr)}) {
            const ResourceLimit fullDisk(RLIMIT_FSIZE, fails == nullptr ? 10 : 10000);
            if (fails != nullptr) *fails = true;
            EXPECT_FALSE(KW_AddonSettings_Save(kThis)) << why;
            if (fails != nullptr) *fails = false;
            EXPECT_EQ(temp_.read(kThisFile), stands) << why;
        }
    }

    DataFolder temp_;
};

TEST_F(AddonSettings, EachSetHasItsOwnFileInTheSettingsFolder) {
    KW_Location location;
    EXPECT_EQ(KW_AddonSettings_GetLocation(kThis, location), 0);
    EXPECT_EQ(utf8(location), temp_.path(kThisFile));
    KW_AddonSettings_LoadSetSave(kAll, text("k"), text("all"), true);
    KW_AddonSettings_LoadSetSave(kThis, text("k"), text("this"), true);
    EXPECT_EQ(temp_.read(kAllFile), exchanged("$k: all\n"));
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$k: this\n"));

    set("unsaved", "kept");
    KW_AddonSettings_LoadSetSave(kThis, text("k"), text("new"), true);
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$k: new\n$unsaved: kept\n"));
}

TEST_F(AddonSettings, OfAKeyThatIsThereTwiceTheFirstIsMeant) {
    temp_.write(kThisFile, exchanged("$A: 1\n$A: 2\n"));
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 2);
    EXPECT_EQ(get("A"), "1");
    set("A", "3");
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));
    EXPECT_EQ(temp_.read(kThisFile), exchanged("$A: 3\n$A: 2\n"));
    for (const char* const left : {"2", ""}) {
        EXPECT_TRUE(KW_AddonSettings_Remove(kThis, text("A")));
        EXPECT_EQ(get("A"), left);
    }
    EXPECT_FALSE(KW_AddonSettings_Remove(kThis, text("A")));
}

TEST_F(AddonSettings, KeysAreComparedExactly) {
    set("Language_str", "ita");
    KW_String value = text("untouched");
    for (const char* key : {"language_str", "Language_st", "Language_str2", ""}) {
        EXPECT_FALSE(KW_AddonSettings_Get(kThis, text(key), &value, false));
        EXPECT_EQ(get(key), "");
        EXPECT_NE(KW_AddonSettings_Get(kThis, text(key), false).data, nullptr);
    }
    EXPECT_EQ(utf8(value), "untouched");
    EXPECT_TRUE(KW_AddonSettings_Get(kThis, text("Language_str"), &value, false));
    EXPECT_TRUE(KW_AddonSettings_Get(kThis, text("Language_str"), nullptr, false));
    EXPECT_EQ(utf8(value), "ita");
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

TEST_F(AddonSettings, NumbersAreStoredAsTheirTextWithAPointInEveryLocale) {
    EXPECT_TRUE(KW_AddonSettings_SetLong(kThis, text("l"), -42, true));
    EXPECT_EQ(get("l"), "-42");
    EXPECT_EQ(KW_AddonSettings_GetLong(kThis, text("l"), false), -42);

    // A locale with a decimal comma, made here: few machines have one installed.
    const std::string folder = temp_.path("locale");
    temp_.write("locale/source",
                "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\ngrouping -1\nEND LC_NUMERIC\n");
    (void)!std::system(
        ("localedef -c -f ANSI_X3.4-1968 -i '" + folder + "/source' '" + folder + "/xx_XX' >/dev/null 2>&1")
            .c_str());
    setenv("LOCPATH", folder.c_str(), 1);
    const bool hasComma = std::setlocale(LC_NUMERIC, "xx_XX") != nullptr;
    EXPECT_TRUE(KW_AddonSettings_SetDouble(kThis, text("d"), 1234567.0, true));
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
    EXPECT_EQ(get("d"), "1.23457e+06");
    set("d", "2,5");
    EXPECT_EQ(KW_AddonSettings_GetDouble(kThis, text("d"), false), 2.5);

    long number = 7;
    double decimal = 7.5;
    EXPECT_FALSE(KW_AddonSettings_GetLong(kThis, text("x"), &number, false));
    EXPECT_FALSE(KW_AddonSettings_GetDouble(kThis, text("x"), &decimal, false));
    EXPECT_EQ(number, 7) << "a missing number leaves the variable";
    EXPECT_EQ(decimal, 7.5);
    EXPECT_EQ(KW_AddonSettings_GetLong(kThis, text("x"), false), 0);
    if (!hasComma) GTEST_SKIP() << "no locale with a decimal comma can be made here";
}

TEST_F(AddonSettings, OnlyALoadThatIsToldToDropsUnsavedChanges) {
    set("k", "unsaved");
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, true));
    EXPECT_EQ(get("k"), "unsaved");
    temp_.write(kThisFile, exchanged("$k: v\n"));
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    EXPECT_EQ(get("k"), "v");
    KW_AddonSettings_Clear(kThis);
    EXPECT_FALSE(KW_AddonSettings_Get(kThis, text("k"), nullptr, true)) << "a cleared set stays loaded";
}

TEST_F(AddonSettings, ADamagedFileIsKeptAsideBeforeItIsSavedOver) {
    const std::string damaged = exchanged("$good: 1\n$k: v\nrubbish");
    const std::string aside = std::string(kThisFile) + ".damaged";
    for (const bool cleared : {false, true}) {
        temp_.write(kThisFile, damaged);
        EXPECT_FALSE(KW_AddonSettings_Load(kThis, false));
        EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 1);
        if (cleared) KW_AddonSettings_Clear(kThis);
        expectNotSaved("no copy, which loading did not make");
        EXPECT_TRUE(KW_AddonSettings_Save(kThis));
        EXPECT_EQ(temp_.read(aside), damaged);
        EXPECT_EQ(temp_.read(kThisFile), exchanged(cleared ? "" : "$good: 1\n"));

        // Once: what is saved now is sound.
        temp_.write(aside, "rescued");
        EXPECT_TRUE(KW_AddonSettings_Save(kThis));
        EXPECT_EQ(temp_.read(aside), "rescued");
        temp_.write(kThisFile, damaged);
        EXPECT_FALSE(KW_AddonSettings_Load(kThis, false));
        temp_.write(kThisFile, exchanged("$mended: 1\n"));
        EXPECT_TRUE(KW_AddonSettings_Save(kThis));
        EXPECT_EQ(temp_.read(aside), exchanged("$mended: 1\n")) << "another mended the file meanwhile";
    }
}

TEST_F(AddonSettings, AFileThatCouldNotBeReadIsNotSavedOverUntilTheSetIsClearedOrLoaded) {
    const std::string sound = exchanged("$k: v\n");
    const std::filesystem::path path = temp_.path(kThisFile);
    const auto failToLoad = [&](const std::string& why) {
        std::optional<ResourceLimit> noDescriptor;
        std::optional<NoSettingsFolder> noFolder;
        if (why == "large") temp_.write(kThisFile, std::string(99999, '$'));
        if (why == "descriptor") noDescriptor.emplace(RLIMIT_NOFILE, 0);
        if (why == "memory") platform::failMemoryAfter(0);
        if (why == "folder") noFolder.emplace(temp_);
        if (why == "circle") std::filesystem::rename(path, temp_.path("aside"));
        if (why == "circle") std::filesystem::create_symlink(path, path);
        EXPECT_FALSE(KW_AddonSettings_Load(kThis, false));
        EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 0);
        platform::failMemoryAfter(-1);
        if (why == "circle") std::filesystem::rename(temp_.path("aside"), path);
    };
    for (const char* const why : {"large", "descriptor", "memory", "folder", "circle"}) {
        SCOPED_TRACE(why);
        temp_.write(kThisFile, sound);
        failToLoad(why);
        const std::string stands = temp_.read(kThisFile);
        set("k", "w");
        EXPECT_FALSE(KW_AddonSettings_Save(kThis));
        EXPECT_EQ(temp_.read(kThisFile), stands);
        KW_AddonSettings_Clear(kThis);
        EXPECT_TRUE(KW_AddonSettings_Save(kThis));
        EXPECT_EQ(temp_.read(kThisFile), "");

        temp_.write(kThisFile, sound);
        failToLoad(why);
        temp_.write(kThisFile, sound);
        EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
        EXPECT_TRUE(KW_AddonSettings_Save(kThis));
    }
    failToLoad("large");
    std::filesystem::remove(path);
    EXPECT_TRUE(KW_AddonSettings_Save(kThis)) << "where there is no file none is lost";
}

TEST_F(AddonSettings, ASaveThatFailsSaysSoAndLeavesTheFileAndTheMemory) {
    temp_.write(kThisFile, exchanged("$k: old\n"));
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    set("k", std::string(500, 'n').c_str());
    expectNotSaved("the new file cannot take the old one's place");
    {
        const NoSettingsFolder none(temp_);
        KW_Location location(text("untouched"));
        EXPECT_NE(KW_AddonSettings_GetLocation(kThis, location), 0);
        EXPECT_EQ(utf8(location), "untouched");
        EXPECT_FALSE(KW_AddonSettings_Save(kThis));
    }
    EXPECT_EQ(get("k").size(), 500u);
    EXPECT_TRUE(KW_AddonSettings_Save(kThis));

    const std::string stands = temp_.read(kThisFile);
    platform::failMemoryAfter(0);
    EXPECT_TRUE(KW_AddonSettings_Remove(kThis, text("k")));
    platform::failMemoryAfter(-1);
    EXPECT_FALSE(KW_AddonSettings_Save(kThis)) << "a set that lost its memory";
    EXPECT_EQ(temp_.read(kThisFile), stands);
    EXPECT_TRUE(KW_AddonSettings_Load(kThis, false));
    EXPECT_EQ(get("k").size(), 500u);
}

/// In a process of its own, where no set was ever loaded.
TEST(NotLoadedYet, OnlyWhatSaysSoLoadsAndAFaultyFileNeverCountsAsLoadedAndItsKeysAsMissing) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const DataFolder temp;
            temp.write(kThisFile, exchanged("$k: file\n"));
            EXPECT_FALSE(KW_AddonSettings_Get(kThis, text("k"), nullptr, false));
            EXPECT_FALSE(KW_AddonSettings_Remove(kThis, text("k")));
            EXPECT_TRUE(KW_AddonSettings_Set(kThis, text("m"), text("memory"), true));
            EXPECT_EQ(utf8(KW_AddonSettings_Get(kThis, text("m"), false)), "memory");
            EXPECT_EQ(utf8(KW_AddonSettings_Get(kThis, text("k"), true)), "file");
            EXPECT_EQ(KW_AddonSettings_GetCount(kThis), 1);

            temp.write(kAllFile, exchanged("$k: 5\n$l: 6\n$"));
            long number = 7;
            EXPECT_FALSE(KW_AddonSettings_GetLong(kAll, text("k"), &number, true));
            EXPECT_EQ(number, 7);
            EXPECT_EQ(KW_AddonSettings_GetLong(kAll, text("k"), true), 0);
            EXPECT_EQ(KW_AddonSettings_GetLong(kAll, text("k"), false), 5);
            temp.write(kAllFile, exchanged("$k: 8\n"));
            KW_AddonSettings_LoadSetSave(kAll, text("l"), text("new"), true);
            EXPECT_EQ(temp.read(kAllFile), exchanged("$k: 8\n$l: new\n"));
            std::exit(HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

}  // namespace

// In the place of the system's own.
extern "C" {
int fsync(int file) {
    errno = EIO;
    return sFlushFails ? -1 : static_cast<int>(syscall(SYS_fsync, file));
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned int flags) {
    errno = EBUSY;
    return sRenameFails ? -1
                        : static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}
int renameat(int fromFolder, const char* from, int toFolder, const char* to) {
    return renameat2(fromFolder, from, toFolder, to, 0);
}
passwd* getpwuid(uid_t) {
    return nullptr;
}
}

#include "tests/update/OfflineUpdateFixture.h"

#include "platform/host/SettingsFolder.h"
#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <limits>

namespace {

using platform::DialogControl;
using platform::UserAction;

constexpr long kDay = 24L * 60 * 60;
constexpr std::size_t kLargest = 16U << 20;  // bytes of a versions file

using UpdateCheck = OfflineUpdateFixture;

std::string secondsAgo(long seconds) {
    return std::to_string(std::time(nullptr) - seconds);
}

/// A file of this size that begins with a newer line.
std::string newerLineIn(std::size_t size, std::string line) {
    return line.append(size - line.size(), ' ');
}

// ---- When a check is made

TEST(UpdateInterval, IsFourteenDays) {
    constexpr std::time_t kNow = 1'542'900'000;
    const std::pair<long, bool> cases[] = {
        {0, true},
        {std::numeric_limits<long>::min(), true},
        {kNow - 1'209'600, true},
        {kNow - 1'209'599, false},
        {std::numeric_limits<long>::max(), false},
    };
    for (const auto& [last, due] : cases)
        EXPECT_EQ(KW_AddonUpdate_IsCheckDue(kNow, last), due) << last;
}

TEST_F(UpdateCheck, IsMadeAutomaticallyWhenTheSettingIsOneAndFourteenDaysHavePassed) {
    const struct {
        std::string setting;
        std::string time;
        bool made;
    } cases[] = {
        {"", "0", false},  // switched on by this run, which makes no check
        {" 1x", "0", true}, {"x1", "0", true},       {"0", "0", false},
        {"11", "0", false}, {"yes", "0", false},     {"1", secondsAgo(14 * kDay - 60), false},
        {"1", "", true},    {"1", "garbage", false},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.setting + ", " + each.time);
        reset();
        downloads_.clear();
        store("AutoUpdate", each.setting);
        store("LastUpdateCheck_220", each.time);
        EXPECT_TRUE(KW_AddonUpdate_AutoUpdate(text(kOwnLine), text("Tessaro")));
        EXPECT_EQ(!downloads_.empty(), each.made);
        EXPECT_EQ(stored("AutoUpdate"), each.setting.empty() ? "1" : each.setting);
        EXPECT_EQ(stored("LastUpdateCheck_220") == each.time, !each.made);
    }
}

// ---- How it starts

TEST_F(UpdateCheck, DownloadsTheVersionsFileIntoTheDataFolderBehindAnUnseenDialog) {
    for (const bool onlyPlus : {true, false}) {
        reset();
        sett_ADDON_ONLY_PLUS_VERSION = onlyPlus;
        check(true);
        sett_ADDON_ONLY_PLUS_VERSION = false;
        EXPECT_EQ(downloads_.back().url,
                  std::string("http://update.tessaro.example/update_plugins/versions") +
                      (onlyPlus ? "_plus.txt" : "16.txt"));
        EXPECT_EQ(downloads_.back().destination, folder_.path("__updcf__.tmp"));
        EXPECT_EQ(downloads_.back().userData, nullptr);
        ASSERT_NE(dialog(), nullptr);
        EXPECT_EQ(dialog()->resID, 32755);
        EXPECT_FALSE(dialog()->visible);
        EXPECT_EQ(host_.calls.back(),
                  "RegisterModelessWindow " + std::to_string(sIDUpdateDialog) + " 7 no callback null guid");
    }
    EXPECT_TRUE(presenter_.log.empty());
}

TEST_F(UpdateCheck, NeedsAVersionLineAndADataFolder) {
    for (const KW_String& none : {KW_String(), text("")})
        EXPECT_FALSE(KW_AddonUpdate_CheckForUpdate(true, none, text("Tessaro")));
    EXPECT_EQ(stored("LastUpdateCheck_220"), "");
    store("LastUpdateCheck_220", secondsAgo(60));
    EXPECT_TRUE(KW_AddonUpdate_CheckForUpdate(false, text(""), text("Tessaro"))) << "not due";

    // The data folder of the environment counts from a folder that is gone.
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(TemporaryFolder().path());
    setenv("TESSARO_DATA_DIR", "data", 1);
    platform::setSettingsFolder(IO::Location());
    EXPECT_FALSE(check(true));
    unsetenv("TESSARO_DATA_DIR");
    std::filesystem::current_path(before);
    EXPECT_TRUE(downloads_.empty());
}

TEST_F(UpdateCheck, TellsTheUserWhenTheDownloadCannotStart) {
    downloadStarts_ = false;
    presenter_.then(UserAction::answer(1));
    EXPECT_TRUE(check(false));
    EXPECT_EQ(alertText(), suiteText(33));
    EXPECT_EQ(sUpdateStatus, kUpdateStatus_None);
    EXPECT_TRUE(DialogControl::instance().openDialogs().empty());
    EXPECT_EQ(stored("LastUpdateCheck_220"), "");

    downloadStarts_ = true;
    check(true);
    EXPECT_EQ(downloads_.size(), 1u);
}

TEST_F(UpdateCheck, ReplacesAnEarlierResultAndKeepsTheLibraryNameOfTheLastOneThatHadOne) {
    const struct {
        KW_String name;
        bool hasLibrary;
        std::string kept;
    } cases[] = {{text("Tessaro"), true, "Tessaro"}, {KW_String(), false, "Tessaro"}, {text(""), true, ""}};
    for (const auto& each : cases) {
        check(true, each.name);
        EXPECT_EQ(DialogControl::instance().openDialogs(), std::vector<short>{sIDUpdateDialog});
        EXPECT_EQ(sHasLibrary, each.hasLibrary);
        EXPECT_EQ(utf8(sUpdateAddonLibName), each.kept);
        finish("");
    }
}

// ---- How it ends

TEST_F(UpdateCheck, ShowsAnUpdateAlwaysAndTheRestToTheUserWhoAsked) {
    const std::string wide = utf16(kNewerLine);
    const struct {
        bool byUser;
        std::string file;
        bool available;
    } cases[] = {
        {true, kNewerLine, true},
        {false, kNewerLine, true},
        {true, "", false},
        {false, "", false},
        // in the encoding it looks like
        {true, wide, true},
        {true, "\xFF\xFE" + wide, true},
        {true, "\xEF\xBB\xBF" + std::string(kNewerLine), true},
        {true, "\x8E caff\x8F\n" + std::string(kNewerLine), true},
        {true, newerLineIn(kLargest, kNewerLine), true},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(&each - cases);
        reset();
        store("LastUpdateCheck_220", "0");
        check(each.byUser);
        finish(each.file);
        const bool shown = each.byUser || each.available;
        EXPECT_EQ(sUpdateStatus, each.available ? 3 : 2);
        EXPECT_EQ(dialog() != nullptr && dialog()->visible, shown);
        EXPECT_EQ(DialogControl::instance().openDialogs().size(), shown ? 1u : 0u);
        EXPECT_FALSE(folder_.has("__updcf__.tmp"));
        const std::string id = std::to_string(sIDUpdateDialog);
        DGModelessClose(sIDUpdateDialog);
        EXPECT_EQ(host_.calls.back(), "UnregisterModelessWindow " + id);
    }
    EXPECT_TRUE(presenter_.alerts.empty());
}

TEST_F(UpdateCheck, TellsTheUserOfWhateverFailedWhoeverAsked) {
    const struct {
        bool closesTheDialog;
        std::function<void()> happen;
    } failures[] = {
        {true, [] { message(KW_URL_Failed); }},
        {false, [] { message(KW_URL_Finished); }},  // the file is gone
        {false, [this] { finish(newerLineIn(kLargest + 1, kNewerLine)); }},
        {false,
         [this] {
             sCurrentAddonVersion = text("TessaroLibrary 22.0 (AC220) 03/08/2018");  // invalid
             finish(kNewerLine);
         }},
    };
    for (const bool byUser : {true, false}) {
        for (const auto& failure : failures) {
            SCOPED_TRACE(&failure - failures);
            reset();
            presenter_.alerts.clear();
            store("LastUpdateCheck_220", "0");
            check(byUser);
            presenter_.then(UserAction::answer(1));
            failure.happen();
            EXPECT_EQ(alertText(), suiteText(33));
            EXPECT_EQ(dialog() == nullptr, failure.closesTheDialog);
            EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
            EXPECT_GT(storedCheckTime(), 0);
            EXPECT_FALSE(folder_.has("__updcf__.tmp"));
        }
    }
}

// ---- Two at a time, too late, too early

TEST_F(UpdateCheck, IsNotStartedWhileAnotherOneRunsWhichAnswersTheUserWhoEverAsked) {
    check(false);
    const short running = sIDUpdateDialog;
    for (const bool byUser : {true, false})
        EXPECT_TRUE(KW_AddonUpdate_CheckForUpdate(byUser, text("Other 1.0.0.0 (AC220) 01/01/2018"), {}));
    EXPECT_EQ(downloads_.size(), 1u);
    EXPECT_EQ(sIDUpdateDialog, running);
    finish("");
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->visible);
    EXPECT_TRUE(sHasLibrary);
}

TEST_F(UpdateCheck, DropsAResultForWhichNobodyWaits) {
    for (const char* const file : {kNewerLine, ""}) {
        check(true);
        DGModelessClose(sIDUpdateDialog);
        finish(file);
        EXPECT_FALSE(folder_.has("__updcf__.tmp"));
    }
    const auto cancel = [] {
        KW_AddonUpdate_ResultUpdate_Handler(DG_MSG_CLICK, sIDUpdateDialog, 2, 0, 0);
        EXPECT_TRUE(sUpdateCancelled);
    };
    check(true);
    cancel();
    EXPECT_EQ(message(KW_URL_Opened), 0) << "a cancel before the connection opens is lost";
    cancel();
    EXPECT_EQ(message(KW_URL_Progress), 1);
    message(KW_URL_Failed);
    EXPECT_TRUE(presenter_.log.empty());
    EXPECT_TRUE(DialogControl::instance().openDialogs().empty());
    EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
}

TEST_F(UpdateCheck, CanBeAskedForWhileTheAlertOfAFailedOneIsOpen) {
    check(true);
    presenter_.thenLook([] { check(true); }).then(UserAction::answer(1));
    message(KW_URL_Failed);
    EXPECT_EQ(downloads_.size(), 2u);
    finish(kNewerLine);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->visible);
}

}  // namespace

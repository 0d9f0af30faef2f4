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

class UpdateCheck : public OfflineUpdateFixture {};

bool autoUpdate() {
    return KW_AddonUpdate_AutoUpdate(text("TessaroLibrary 22.0.4.2200 (AC220) 03/08/2018"), text("Tessaro"));
}

std::string secondsAgo(long seconds) {
    return std::to_string(std::time(nullptr) - seconds);
}

/// While it lives the host has no data folder: the one of the environment counts from a folder that is gone.
class WithoutDataFolder {
public:
    WithoutDataFolder() : before_(std::filesystem::current_path()) {
        const TemporaryFolder gone;
        std::filesystem::current_path(gone.path());
        setenv("TESSARO_DATA_DIR", "data", 1);
        IO::FileSystem::GetSpecialLocation(IO::FileSystem::SuiteSettingsFolder, &folder_);
        platform::setSettingsFolder(IO::Location());
    }
    ~WithoutDataFolder() {
        unsetenv("TESSARO_DATA_DIR");
        std::filesystem::current_path(before_);
        platform::setSettingsFolder(folder_);
    }
    WithoutDataFolder(const WithoutDataFolder&) = delete;
    WithoutDataFolder& operator=(const WithoutDataFolder&) = delete;

private:
    std::filesystem::path before_;
    IO::Location folder_;
};

// ---- When a check is made

TEST_F(UpdateCheck, IsSwitchedOnAndNotMadeByTheRunThatFindsTheSettingEmpty) {
    store("AutoUpdate", "");
    EXPECT_TRUE(autoUpdate());
    EXPECT_EQ(stored("AutoUpdate"), "1");
    EXPECT_TRUE(downloads_.empty());
    EXPECT_TRUE(autoUpdate());
    EXPECT_EQ(downloads_.size(), 1u);
}

TEST(UpdateInterval, IsFourteenDays) {
    constexpr std::time_t kNow = 1'542'900'000;
    const std::pair<long, bool> cases[] = {
        {0, true},
        {1, true},
        {-1, true},
        {std::numeric_limits<long>::min(), true},
        {kNow - 1'209'600, true},
        {kNow - 1'209'599, false},
        {kNow + 1, false},
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
        {"1", "0", true},
        {"01", "0", true},
        {" 1 ", "0", true},
        {"1x", "0", true},
        {"x1", "0", true},
        {"0", "0", false},
        {"7", "0", false},
        {"-1", "0", false},
        {"11", "0", false},
        {"yes", "0", false},
        {"1", secondsAgo(14 * kDay - 60), false},
        {"1", secondsAgo(14 * kDay + 1), true},
        {"1", secondsAgo(-kDay), false},
        {"1", "", true},
        {"1", "garbage", false},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.setting + ", " + each.time);
        KW_AddonUpdate_ResetState();
        downloads_.clear();
        store("AutoUpdate", each.setting);
        store("LastUpdateCheck_220", each.time);
        EXPECT_TRUE(autoUpdate());
        EXPECT_EQ(!downloads_.empty(), each.made);
        EXPECT_EQ(stored("AutoUpdate"), each.setting);
        if (!each.made) {
            EXPECT_EQ(stored("LastUpdateCheck_220"), each.time);
            EXPECT_EQ(sUpdateStatus, kUpdateStatus_None);
        }
    }
}

TEST_F(UpdateCheck, IsMadeForTheUserAtAnyTimeAndRestartsTheClock) {
    store("LastUpdateCheck_220", secondsAgo(60));
    const long before = std::time(nullptr);
    EXPECT_TRUE(check(true));
    EXPECT_GE(storedCheckTime(), before);
    EXPECT_LE(storedCheckTime(), std::time(nullptr));
    EXPECT_EQ(stored("AutoUpdate"), "");
}

// ---- How it starts

TEST_F(UpdateCheck, DownloadsTheVersionsFileIntoTheDataFolderBehindAnUnseenDialog) {
    for (const bool onlyPlus : {true, false}) {
        KW_AddonUpdate_ResetState();
        sett_ADDON_ONLY_PLUS_VERSION = onlyPlus;
        check(true);
        sett_ADDON_ONLY_PLUS_VERSION = false;
        EXPECT_EQ(downloads_.back().url,
                  std::string("http://update.tessaro.example/update_plugins/versions") +
                      (onlyPlus ? "_plus.txt" : "16.txt"));
        EXPECT_EQ(downloads_.back().destination, folder_.path("__updcf__.tmp"));
        EXPECT_EQ(downloads_.back().userData, nullptr);
        EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
        ASSERT_NE(dialog(), nullptr);
        EXPECT_EQ(dialog()->resID, 32755);
        EXPECT_FALSE(dialog()->visible);
        EXPECT_EQ(host_.calls.back(), "RegisterModelessWindow 7 no callback null guid");
    }
    EXPECT_TRUE(presenter_.log.empty());
}

TEST_F(UpdateCheck, NeedsAVersionLine) {
    for (const KW_String& none : {KW_String(), text("")}) {
        EXPECT_FALSE(KW_AddonUpdate_CheckForUpdate(true, none, text("Tessaro")));
        EXPECT_FALSE(KW_AddonUpdate_CheckForUpdate(false, none, text("Tessaro")));
    }
    EXPECT_TRUE(downloads_.empty());
    EXPECT_EQ(stored("LastUpdateCheck_220"), "");
    store("LastUpdateCheck_220", secondsAgo(60));
    EXPECT_TRUE(KW_AddonUpdate_CheckForUpdate(false, text(""), text("Tessaro"))) << "not due";
}

TEST_F(UpdateCheck, NeedsADataFolder) {
    const WithoutDataFolder none;
    EXPECT_FALSE(check(true));
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

TEST_F(UpdateCheck, KeepsTheLibraryNameOfTheLastCheckThatHadOne) {
    const struct {
        KW_String name;
        bool hasLibrary;
        std::string kept;
    } cases[] = {{KW_String(), false, ""},
                 {text("Tessaro"), true, "Tessaro"},
                 {KW_String(), false, "Tessaro"},
                 {text(""), true, ""}};
    for (const auto& each : cases) {
        check(true, each.name);
        EXPECT_EQ(sHasLibrary, each.hasLibrary);
        EXPECT_EQ(utf8(sUpdateAddonLibName), each.kept);
        finish("");
    }
}

// ---- How it ends

TEST_F(UpdateCheck, ShowsAnUpdateAlwaysAndTheRestToTheUserWhoAsked) {
    const struct {
        bool byUser;
        std::string file;
        short status;
        bool shown;
    } cases[] = {
        {true, kNewerLine, 3, true},
        {false, kNewerLine, 3, true},
        {true, "", 2, true},
        {false, "", 2, false},
        {true, "<html>404</html>", 2, true},
        {false, "<html>404</html>", 2, false},
    };
    for (const auto& each : cases) {
        KW_AddonUpdate_ResetState();
        store("LastUpdateCheck_220", "0");
        check(each.byUser);
        finish(each.file);
        EXPECT_EQ(sUpdateStatus, each.status) << each.file;
        EXPECT_EQ(dialog() != nullptr && dialog()->visible, each.shown) << each.file;
        EXPECT_EQ(DialogControl::instance().openDialogs().size(), each.shown ? 1u : 0u) << each.file;
        EXPECT_FALSE(folder_.has("__updcf__.tmp"));
        DGModelessClose(sIDUpdateDialog);
    }
    EXPECT_TRUE(presenter_.alerts.empty());
    EXPECT_EQ(std::count(host_.calls.begin(), host_.calls.end(), "UnregisterModelessWindow"), 6);
}

TEST_F(UpdateCheck, ReadsTheFileInTheEncodingItLooksLike) {
    const std::string wide = utf16(kNewerLine);
    for (const std::string& file : {wide, "\xFF\xFE" + wide, "\xEF\xBB\xBF" + std::string(kNewerLine),
                                    "\x8E caff\x8F\n" + std::string(kNewerLine)}) {
        check(true);
        finish(file);
        EXPECT_EQ(sUpdateStatus, kUpdateStatus_Available);
    }
}

TEST_F(UpdateCheck, TellsTheUserOfWhateverFailedWhoeverAsked) {
    const struct {
        bool closesTheDialog;
        std::function<void()> happen;
    } failures[] = {
        {true, [] { fail(); }},
        {true,
         [] {
             message(KW_URL_Opened);
             fail();
         }},
        {false,  // the file is gone
         [] {
             message(KW_URL_Opened);
             message(KW_URL_Finished);
         }},
        {false,
         [] {
             const WithoutDataFolder none;
             message(KW_URL_Finished);
         }},
        {false,
         [this] {
             sCurrentAddonVersion = text("TessaroLibrary 22.0 (AC220) 03/08/2018");  // invalid
             finish(kNewerLine);
         }},
    };
    for (const bool byUser : {true, false}) {
        for (const auto& failure : failures) {
            SCOPED_TRACE(&failure - failures);
            KW_AddonUpdate_ResetState();
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
    for (const bool userFirst : {true, false}) {
        KW_AddonUpdate_ResetState();
        store("LastUpdateCheck_220", "0");
        downloads_.clear();
        check(userFirst);
        const short running = sIDUpdateDialog;
        for (const bool byUser : {!userFirst, userFirst}) {
            EXPECT_TRUE(
                KW_AddonUpdate_CheckForUpdate(byUser, text("Other 1.0.0.0 (AC220) 01/01/2018"), KW_String()));
        }
        EXPECT_EQ(downloads_.size(), 1u);
        EXPECT_EQ(sIDUpdateDialog, running);
        finish("");
        ASSERT_NE(dialog(), nullptr);
        EXPECT_TRUE(dialog()->visible);
        EXPECT_TRUE(sHasLibrary);
    }
}

TEST_F(UpdateCheck, ReplacesAnEarlierResultOnTheScreen) {
    check(true);
    finish(kNewerLine);
    const short earlier = sIDUpdateDialog;
    check(true);
    EXPECT_EQ(downloads_.size(), 2u);
    EXPECT_EQ(DialogControl::instance().find(earlier), nullptr);
    finish(kNewerLine);
    EXPECT_EQ(DialogControl::instance().openDialogs(), std::vector<short>{sIDUpdateDialog});
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
    fail();
    EXPECT_TRUE(presenter_.log.empty());
    EXPECT_TRUE(DialogControl::instance().openDialogs().empty());
    EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
}

TEST_F(UpdateCheck, CanBeAskedForWhileTheAlertOfAFailedOneIsOpen) {
    check(true);
    presenter_.thenLook([this] { check(true); }).then(UserAction::answer(1));
    fail();
    EXPECT_EQ(downloads_.size(), 2u);
    finish(kNewerLine);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->visible);
}

}  // namespace

#include "tests/update/OfflineUpdateFixture.h"

#include "settings/AddonIdentity.h"
#include "settings/KW_AddonSettings.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
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
        IO::FileSystem::SetSpecialLocation(IO::FileSystem::SuiteSettingsFolder, IO::Location());
    }
    ~WithoutDataFolder() {
        unsetenv("TESSARO_DATA_DIR");
        std::filesystem::current_path(before_);
    }
    WithoutDataFolder(const WithoutDataFolder&) = delete;
    WithoutDataFolder& operator=(const WithoutDataFolder&) = delete;

private:
    std::filesystem::path before_;
};

// ---- When a check is made

TEST_F(UpdateCheck, IsSwitchedOnAndNotMadeByTheVeryFirstRun) {
    EXPECT_TRUE(autoUpdate());
    EXPECT_EQ(stored("AutoUpdate"), "1");
    EXPECT_TRUE(downloads_.empty());
    EXPECT_TRUE(autoUpdate());
    EXPECT_EQ(downloads_.size(), 1u);
}

TEST_F(UpdateCheck, IsMadeAutomaticallyWhenTheSettingIsOne) {
    const std::pair<const char*, bool> values[] = {{"1", true},    {"01", true}, {" 1 ", true}, {"1x", true},
                                                   {"0", false},   {"7", false}, {"-1", false}, {"11", false},
                                                   {"yes", false}, {"x1", true}};
    for (const auto& [value, made] : values) {
        KW_AddonUpdate_ResetState();
        downloads_.clear();
        store("AutoUpdate", value);
        store("LastUpdateCheck_220", "0");
        EXPECT_TRUE(autoUpdate());
        EXPECT_EQ(!downloads_.empty(), made) << value;
        EXPECT_EQ(stored("AutoUpdate"), value);
    }
}

TEST_F(UpdateCheck, IsTreatedAsNeverSwitchedWhenTheSettingIsEmpty) {
    store("AutoUpdate", "");
    EXPECT_TRUE(autoUpdate());
    EXPECT_EQ(stored("AutoUpdate"), "1");
    EXPECT_TRUE(downloads_.empty());
}

TEST(UpdateInterval, IsFourteenDays) {
    constexpr std::time_t kNow = 1'542'900'000;
    const std::pair<long, bool> cases[] = {
        {0, true},
        {kNow - 1'209'599, false},
        {kNow - 1'209'600, true},
        {kNow - 1'209'601, true},
        {kNow, false},
        {kNow + 1, false},
        {kNow + 100 * 365 * kDay, false},
        {std::numeric_limits<long>::max(), false},
        {1, true},
        {-1, true},
        {std::numeric_limits<long>::min(), true},
    };
    for (const auto& [last, due] : cases)
        EXPECT_EQ(KW_AddonUpdate_IsCheckDue(kNow, last), due) << last;
}

TEST_F(UpdateCheck, IsMadeAutomaticallyOnceInFourteenDays) {
    store("AutoUpdate", "1");
    const std::pair<std::string, bool> cases[] = {
        {secondsAgo(13 * kDay), false},
        {secondsAgo(14 * kDay - 60), false},
        {secondsAgo(14 * kDay + 1), true},
        {secondsAgo(400 * kDay), true},
        {secondsAgo(-kDay), false},
        {"", true},
        {"0", true},
        {"garbage", false},
    };
    for (const auto& [time, made] : cases) {
        KW_AddonUpdate_ResetState();
        downloads_.clear();
        store("LastUpdateCheck_220", time);
        EXPECT_TRUE(autoUpdate());
        EXPECT_EQ(!downloads_.empty(), made) << time;
        if (!made) {
            EXPECT_EQ(stored("LastUpdateCheck_220"), time);
            EXPECT_EQ(sUpdateStatus, kUpdateStatus_None);
        }
    }
}

TEST_F(UpdateCheck, IsMadeForTheUserAtAnyTimeAndRestartsTheClock) {
    store("LastUpdateCheck_220", secondsAgo(60));
    const long before = std::time(nullptr);
    EXPECT_TRUE(check(true));
    EXPECT_EQ(downloads_.size(), 1u);
    EXPECT_GE(storedCheckTime(), before);
    EXPECT_LE(storedCheckTime(), std::time(nullptr));
    EXPECT_EQ(stored("AutoUpdate"), "");
}

// ---- How it starts

TEST_F(UpdateCheck, DownloadsTheVersionsFileIntoTheDataFolder) {
    EXPECT_TRUE(check(true));
    ASSERT_EQ(downloads_.size(), 1u);
    EXPECT_EQ(downloads_[0].url, "http://update.tessaro.example/update_plugins/versions16.txt");
    EXPECT_EQ(downloads_[0].destination, folder_.path("__updcf__.tmp"));
    EXPECT_EQ(downloads_[0].userData, nullptr);
}

TEST_F(UpdateCheck, DownloadsTheListOfPlusVersionsForAnAddOnThatHasOnlyThese) {
    sett_ADDON_ONLY_PLUS_VERSION = true;
    EXPECT_TRUE(check(true));
    sett_ADDON_ONLY_PLUS_VERSION = false;
    ASSERT_EQ(downloads_.size(), 1u);
    EXPECT_EQ(downloads_[0].url, "http://update.tessaro.example/update_plugins/versions_plus.txt");
}

TEST_F(UpdateCheck, OpensItsDialogUnseenWhileItRuns) {
    check(false);
    EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_EQ(dialog()->resID, 32755);
    EXPECT_FALSE(dialog()->visible);
    EXPECT_TRUE(presenter_.log.empty());
    EXPECT_EQ(host_.calls, std::vector<std::string>{"RegisterModelessWindow 7 no callback null guid"});
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
    std::string utf16;
    for (const char byte : std::string(kNewerLine))
        utf16 += {byte, '\0'};
    for (const std::string& file : {utf16, "\xFF\xFE" + utf16, "\xEF\xBB\xBF" + std::string(kNewerLine),
                                    "\x8E caff\x8F\n" + std::string(kNewerLine)}) {
        check(true);
        finish(file);
        EXPECT_EQ(sUpdateStatus, kUpdateStatus_Available);
    }
}

TEST_F(UpdateCheck, TellsTheUserOfAFailedDownloadWhoeverAsked) {
    for (const bool byUser : {true, false}) {
        for (const bool opened : {true, false}) {
            KW_AddonUpdate_ResetState();
            presenter_.alerts.clear();
            store("LastUpdateCheck_220", "0");
            check(byUser);
            if (opened) message(KW_URL_Opened);
            presenter_.then(UserAction::answer(1));
            fail();
            EXPECT_EQ(alertText(), suiteText(33));
            EXPECT_EQ(dialog(), nullptr);
            EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
            EXPECT_GT(storedCheckTime(), 0);
        }
    }
}

TEST_F(UpdateCheck, TellsTheUserWhenTheFileIsGone) {
    check(true);
    message(KW_URL_Opened);
    presenter_.then(UserAction::answer(1));
    message(KW_URL_Finished);
    EXPECT_EQ(alertText(), suiteText(33));
    EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
}

TEST_F(UpdateCheck, TellsTheUserWhenTheDataFolderIsGone) {
    check(true);
    const WithoutDataFolder none;
    presenter_.then(UserAction::answer(1));
    message(KW_URL_Finished);
    EXPECT_EQ(alertText(), suiteText(33));
}

TEST_F(UpdateCheck, TellsTheUserWhenTheOwnLineIsInvalid) {
    EXPECT_TRUE(
        KW_AddonUpdate_CheckForUpdate(true, text("TessaroLibrary 22.0 (AC220) 03/08/2018"), KW_String()));
    presenter_.then(UserAction::answer(1));
    finish(kNewerLine);
    EXPECT_EQ(alertText(), suiteText(33));
    EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
    EXPECT_FALSE(folder_.has("__updcf__.tmp"));
}

// ---- Two at a time, too late, too early

TEST_F(UpdateCheck, IsNotStartedWhileAnotherOneRuns) {
    check(true);
    const short running = sIDUpdateDialog;
    EXPECT_TRUE(KW_AddonUpdate_CheckForUpdate(true, text("Other 1.0.0.0 (AC220) 01/01/2018"), KW_String()));
    EXPECT_TRUE(KW_AddonUpdate_CheckForUpdate(false, text("Other 1.0.0.0 (AC220) 01/01/2018"), KW_String()));
    EXPECT_EQ(downloads_.size(), 1u);
    EXPECT_EQ(sIDUpdateDialog, running);
    finish("");
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->visible) << "the user still waits for the answer";
    EXPECT_TRUE(sHasLibrary);
}

TEST_F(UpdateCheck, AnswersTheUserWhoAsksWhileAnAutomaticOneRuns) {
    check(false);
    check(true);
    finish("");
    EXPECT_EQ(downloads_.size(), 1u);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->visible);
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
    check(true);
    message(KW_URL_Opened);
    EXPECT_EQ(KW_AddonUpdate_ResultUpdate_Handler(DG_MSG_CLICK, sIDUpdateDialog, 2, 0, 0), 2);
    EXPECT_EQ(message(KW_URL_Progress), 1);
    fail();
    EXPECT_TRUE(presenter_.log.empty());
    EXPECT_TRUE(DialogControl::instance().openDialogs().empty());
    EXPECT_EQ(sUpdateStatus, kUpdateStatus_Running);
}

TEST_F(UpdateCheck, GoesOnAfterACancelBeforeTheConnectionOpens) {
    check(true);
    KW_AddonUpdate_ResultUpdate_Handler(DG_MSG_CLICK, sIDUpdateDialog, 2, 0, 0);
    EXPECT_TRUE(sUpdateCancelled);
    EXPECT_EQ(message(KW_URL_Opened), 0);
    EXPECT_FALSE(sUpdateCancelled);
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

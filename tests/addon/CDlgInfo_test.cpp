#include "addon/CDlgInfo.h"

#include "files/KW_Location.h"
#include "language/KW_Language.h"
#include "platform/host/LaunchHandling.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/ScriptedPresenter.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>

namespace {

using platform::DialogControl;
using platform::UserAction;
using support::utf8;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr short kDialog = 32501;
constexpr short kSave = 16;

const char* const kInternationalReport =
    "TessaroLibrary\nVersion: 22.0.4.2200\nBuild date: 03/08/2018\nSystem: Mactel\nArchiCAD 22\n\n";
class CDlgInfoTest : public testing::Test {
protected:
    ~CDlgInfoTest() override { gKW_Language = KW_Language_International; }

    static std::string itemText(short item) {
        return GS::UniStringToUtf8(DialogControl::instance().find(kDialog)->find(item)->text);
    }
    ScriptedPresenter& save(const std::string& path) {
        return user_.then(UserAction::click(kDialog, kSave)).then(UserAction::chooseFile(path));
    }
    /// Ends the script and runs the dialog.
    bool run() {
        user_.then(UserAction::click(kDialog, 1));
        return CDlgInfo().ShowDialog();
    }

    TemporaryFolder folder_;
    ScriptedPresenter user_;
};

TEST_F(CDlgInfoTest, CancelEndsTheDialogWithFalseAndTheRecordIsFilledOnlyByShowing) {
    CDlgInfo dialog;
    EXPECT_EQ(dialog.dialogID, 0);
    EXPECT_EQ(dialog.version.hostVersion, 0);
    user_
        .thenLook([&] {
            EXPECT_EQ(dialog.dialogID, kDialog);
            EXPECT_EQ(DialogControl::instance().find(kDialog)->focus, DG_NO_ITEM);
        })
        .then(UserAction::click(kDialog, 2));
    EXPECT_FALSE(dialog.ShowDialog());
    EXPECT_EQ(dialog.dialogID, 0);
    EXPECT_EQ(utf8(dialog.version.versionText), "22.0.4.2200");
    EXPECT_EQ(dialog.version.versionNumbers[3], 2200);
    dialog.Reset();
    EXPECT_EQ(utf8(dialog.version.versionText), "");
    EXPECT_EQ(dialog.version.versionNumbers[3], 0);
}

TEST_F(CDlgInfoTest, TheReportHoldsTheFiveLinesAndAnEmptyOneAndNothingOfALongerFile) {
    folder_.write("b.TXT", std::string(10000, 'x'));
    save(folder_.path("a.txt"));
    save(folder_.path("b.TXT"));
    EXPECT_TRUE(run());
    EXPECT_EQ(folder_.read("a.txt"), kInternationalReport);
    EXPECT_EQ(folder_.read("b.TXT"), kInternationalReport);
    EXPECT_EQ(folder_.count(), 2);
    EXPECT_THAT(user_.alerts, IsEmpty());
}

TEST_F(CDlgInfoTest, TheReportIsWrittenInTheCurrentLanguageInUtf8) {
    for (const short language : {short{5}, short{6}, short{0}}) {
        gKW_Language = language;
        save(folder_.path("report.txt"));
        std::string shown;
        user_.thenLook([&] {
            for (const short item : {4, 5, 6, 7, 8})
                shown += itemText(item) + "\n";
        });
        EXPECT_TRUE(run());
        EXPECT_EQ(folder_.read("report.txt"), shown + "\n") << "language " << language;
    }
    EXPECT_THAT(
        folder_.read("report.txt"),
        StartsWith("TessaroLibrary\nVersione: 22.0.4.2200\nData di compilazione: 03/08/2018\nSistema"));
}

TEST_F(CDlgInfoTest, ANameWithoutTheExtensionTxtIsRefusedAndAskedForAgain) {
    folder_.makeFolder("a.b");
    folder_.makeFolder("c.txt");
    const std::string refused[] = {"report.txt.bak", "report.", "a.b/report", "report",
                                   "c.txt/report",   "txt",     "report.txt "};
    user_.then(UserAction::click(kDialog, kSave));
    for (const std::string& name : refused)
        user_.then(UserAction::chooseFile(folder_.path(name))).then(UserAction::answer(1));
    user_.then(UserAction::chooseFile(folder_.path("a.b/.Txt")));
    // The same once more, given up.
    user_.then(UserAction::click(kDialog, kSave))
        .then(UserAction::chooseFile(folder_.path("report")))
        .then(UserAction::answer(1))
        .then(UserAction::close());
    EXPECT_TRUE(run());
    EXPECT_EQ(user_.alerts.size(), std::size(refused) + 1);
    EXPECT_EQ(user_.choosers.size(), std::size(refused) + 3);
    for (const std::string& name : refused)
        EXPECT_FALSE(folder_.has(name)) << name;
    EXPECT_EQ(folder_.read("a.b/.Txt"), kInternationalReport);
    EXPECT_EQ(folder_.count(), 2);
}

TEST_F(CDlgInfoTest, AFileThatCannotBeWrittenIsToldAndTheDialogStays) {
    folder_.makeFolder("folder.txt");
    std::filesystem::create_symlink("/dev/full", folder_.path("full.txt"));
    const std::string unwritable[] = {"folder.txt", "missing/report.txt", "full.txt"};
    for (const std::string& name : unwritable)
        save(folder_.path(name)).then(UserAction::answer(1));
    EXPECT_TRUE(run());
    EXPECT_EQ(user_.alerts.size(), std::size(unwritable));
    for (const platform::AlertState& alert : user_.alerts)
        EXPECT_THAT(GS::UniStringToUtf8(alert.texts[1]), StartsWith("The file could not be written."));
}

TEST_F(CDlgInfoTest, AFullDiskLeavesTheOldReportAlone) {
    folder_.write("report.txt", "old report");
    CDlgInfo dialog;
    KW_List<KW_String> lines;
    dialog.BuildData(lines);
    KW_Location file(IO::Location::FromPosixPath(folder_.path("report.txt")));
    {
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 0);
        EXPECT_FALSE(dialog.WriteData(file, lines));
    }
    EXPECT_EQ(folder_.read("report.txt"), "old report");
    EXPECT_TRUE(dialog.WriteData(file, lines));
    lines.Reset();
    EXPECT_TRUE(dialog.WriteData(file, lines));
    EXPECT_EQ(folder_.read("report.txt"), "") << "no lines give an empty file";
}

TEST_F(CDlgInfoTest, TheUpdatePageOpensInTheBrowserAndTheDialogStays) {
    std::vector<std::string> opened;
    int answer = 0;
    platform::setLaunchHandler([&](const platform::LaunchRequest& request) {
        opened.push_back(request.target);
        return answer;
    });
    user_.then(UserAction::click(kDialog, 15))
        .thenLook([&] { answer = 1; })
        .then(UserAction::click(kDialog, 15));
    EXPECT_TRUE(run());
    platform::setLaunchHandler({});
    const std::string page = "http://update.tessaro.example/update/update.html";
    EXPECT_THAT(opened, ElementsAre(page, page));
    EXPECT_THAT(user_.alerts, IsEmpty()) << "a failing launch is not reported";
}

}  // namespace

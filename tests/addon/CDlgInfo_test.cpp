#include "addon/CDlgInfo.h"

#include "files/KW_Location.h"
#include "language/KW_Language.h"
#include "platform/Launching.h"
#include "tests/support/ScriptedPresenter.h"
#include "tests/support/TemporaryFolder.h"

#include <sys/resource.h>
#include <csignal>

#include <gmock/gmock.h>

namespace {

using platform::DialogControl;
using platform::UserAction;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr short kDialog = 32501;
constexpr short kSave = 16;

const char* const kInternationalReport =
    "TessaroLibrary\nVersion: 22.0.4.2200\nBuild date: 03/08/2018\nSystem: Mactel\nArchiCAD 22\n\n";
const char* const kItalianReport =
    "TessaroLibrary\nVersione: 22.0.4.2200\nData di compilazione: 03/08/2018\nSistema: Mactel\nArchiCAD "
    "22\n\n";

std::string utf8(const KW_String& text) {
    return text.data == nullptr ? "null" : text.ToCStr(KW_String::Encoding_UTF8).data;
}

/// No file may become larger than `bytes` while this lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : oldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{bytes, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, oldHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit old_{};
    void (*oldHandler_)(int);
};

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
    std::string alertTexts(std::size_t index) const {
        std::string joined;
        for (const GS::UniString& text : user_.alerts.at(index).texts)
            joined += GS::UniStringToUtf8(text) + "|";
        return joined;
    }

    TemporaryFolder folder_;
    ScriptedPresenter user_;
};

TEST_F(CDlgInfoTest, ShowsProductVersionDateSystemAndHost) {
    gKW_Language = 0;
    user_.thenLook([] {
        const platform::DialogState& state = *DialogControl::instance().find(kDialog);
        EXPECT_EQ(GS::UniStringToUtf8(state.title), "TessaroLibrary");
        EXPECT_EQ(state.width, 705);
        EXPECT_EQ(state.height, 503);
        EXPECT_EQ(state.focus, DG_NO_ITEM);
        EXPECT_EQ(itemText(1), "OK");
        EXPECT_EQ(itemText(2), "Annulla");
        EXPECT_TRUE(state.find(2)->visible);
        EXPECT_EQ(itemText(4), "TessaroLibrary");
        EXPECT_EQ(itemText(5), "Versione: 22.0.4.2200");
        EXPECT_EQ(itemText(6), "Data di compilazione: 03/08/2018");
        EXPECT_EQ(itemText(7), "Sistema: Mactel");
        EXPECT_EQ(itemText(8), "ArchiCAD 22");
        for (const short item : {11, 12, 13})
            EXPECT_EQ(itemText(item), "");
        EXPECT_EQ(itemText(16), "Salva rapporto");
    });
    EXPECT_TRUE(run());
}

TEST_F(CDlgInfoTest, CancelEndsTheDialogWithFalseAndTheRecordIsFilledOnlyByShowing) {
    CDlgInfo dialog;
    EXPECT_EQ(dialog.dialogID, 0);
    EXPECT_EQ(utf8(dialog.version.name), "");
    EXPECT_EQ(dialog.version.hostVersion, 0);
    user_.thenLook([&] { EXPECT_EQ(dialog.dialogID, kDialog); }).then(UserAction::click(kDialog, 2));
    EXPECT_FALSE(dialog.ShowDialog());
    EXPECT_EQ(dialog.dialogID, 0);
    EXPECT_EQ(utf8(dialog.version.versionText), "22.0.4.2200");
    EXPECT_EQ(dialog.version.versionNumbers[3], 2200);
    dialog.Reset();
    EXPECT_EQ(utf8(dialog.version.versionText), "");
    EXPECT_EQ(dialog.version.versionNumbers[3], 0);
}

TEST_F(CDlgInfoTest, TheReportHoldsTheFiveLinesAndAnEmptyOne) {
    save(folder_.path("a.txt"))
        .then(UserAction::click(kDialog, kSave))
        .then(UserAction::chooseFile(folder_.path("b.TXT")));
    EXPECT_TRUE(run());
    EXPECT_EQ(folder_.read("a.txt"), kInternationalReport);
    EXPECT_EQ(folder_.read("b.TXT"), kInternationalReport);
    EXPECT_THAT(user_.alerts, IsEmpty());
    EXPECT_EQ(user_.log[1], "chooser save [Save report] [] [TessaroLibrary report.txt]");
    EXPECT_EQ(user_.choosers[0].filters.at(0).description, "Text Files (*.txt)");
    EXPECT_EQ(user_.choosers[0].filters.at(0).extension, "TXT");
}

TEST_F(CDlgInfoTest, TheReportIsWrittenInTheCurrentLanguageInUtf8) {
    const std::pair<short, std::string> cases[] = {{0, kItalianReport}, {5, ""}, {6, ""}};
    for (const auto& [language, expected] : cases) {
        gKW_Language = language;
        save(folder_.path("report.txt"));
        std::string shown;
        user_.thenLook([&] {
            for (const short item : {4, 5, 6, 7, 8})
                shown += itemText(item) + "\n";
        });
        EXPECT_TRUE(run());
        EXPECT_EQ(folder_.read("report.txt"), shown + "\n") << "language " << language;
        if (!expected.empty()) {
            EXPECT_EQ(shown + "\n", expected);
        }
    }
}

TEST_F(CDlgInfoTest, SavingOverALongerFileLeavesNoTraceOfIt) {
    folder_.write("report.txt", std::string(10000, 'x'));
    save(folder_.path("report.txt"));
    EXPECT_TRUE(run());
    EXPECT_EQ(folder_.read("report.txt"), kInternationalReport);
    EXPECT_EQ(folder_.count(), 1);
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
    EXPECT_TRUE(run());

    ASSERT_EQ(user_.alerts.size(), std::size(refused));
    EXPECT_EQ(user_.choosers.size(), std::size(refused) + 1);
    for (std::size_t i = 0; i < std::size(refused); ++i) {
        EXPECT_EQ(
            alertTexts(i),
            "The report was not saved.|The file name must end in \xE2\x80\x9C.txt\xE2\x80\x9D. Please choose "
            "another name.||");
        EXPECT_FALSE(folder_.has(refused[i])) << refused[i];
    }
    EXPECT_EQ(folder_.read("a.b/.Txt"), kInternationalReport);
}

TEST_F(CDlgInfoTest, CancellingWritesAndShowsNothing) {
    user_.then(UserAction::click(kDialog, kSave))
        .then(UserAction::close())
        .then(UserAction::click(kDialog, kSave))
        .then(UserAction::chooseFile(folder_.path("report")))
        .then(UserAction::answer(1))
        .then(UserAction::close());
    EXPECT_TRUE(run());
    EXPECT_EQ(user_.alerts.size(), 1U) << "for the refused name only";
    EXPECT_EQ(folder_.count(), 0);
}

TEST_F(CDlgInfoTest, AFileThatCannotBeWrittenIsToldAndTheDialogStays) {
    folder_.makeFolder("folder.txt");
    std::filesystem::create_symlink("/dev/full", folder_.path("full.txt"));
    const std::string unwritable[] = {"folder.txt", "missing/report.txt", "full.txt"};
    for (const std::string& name : unwritable)
        save(folder_.path(name)).then(UserAction::answer(1));
    EXPECT_TRUE(run());
    ASSERT_EQ(user_.alerts.size(), std::size(unwritable));
    for (std::size_t i = 0; i < std::size(unwritable); ++i) {
        EXPECT_EQ(alertTexts(i).find("The report was not saved.|The file could not be written."), 0U)
            << unwritable[i];
    }
}

TEST_F(CDlgInfoTest, AFullDiskLeavesTheOldReportAlone) {
    folder_.write("report.txt", "old report");
    CDlgInfo dialog;
    KW_List<KW_String> lines;
    dialog.BuildData(lines);
    KW_Location file(IO::Location::FromPosixPath(folder_.path("report.txt")));
    {
        const FileSizeLimit limit(0);
        EXPECT_FALSE(dialog.WriteData(file, lines));
    }
    EXPECT_EQ(folder_.read("report.txt"), "old report");
    EXPECT_TRUE(dialog.WriteData(file, lines));
}

TEST_F(CDlgInfoTest, NoLinesGiveAnEmptyFile) {
    folder_.write("report.txt", "old report");
    KW_List<KW_String> lines;
    KW_Location file(IO::Location::FromPosixPath(folder_.path("report.txt")));
    EXPECT_TRUE(CDlgInfo().WriteData(file, lines));
    EXPECT_EQ(folder_.read("report.txt"), "");
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

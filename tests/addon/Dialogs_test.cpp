#include "addon/CDlgAbout.h"
#include "addon/CDlgInfo.h"
#include "files/KW_Location.h"
#include "language/KW_Language.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/ScriptedPresenter.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using platform::DialogControl;
using platform::UserAction;

/// About and Info; what they show and open is in the console's transcripts.
template <typename Dialog>
void endsWithOkOrWithout(short id) {
    ScriptedPresenter user;
    Dialog dialog;
    for (const bool ok : {true, false}) {
        user.thenLook([&] {
                EXPECT_EQ(dialog.dialogID, id);
                EXPECT_EQ(DialogControl::instance().find(id)->focus, DG_NO_ITEM);
            })
            .then(ok ? UserAction::click(id, 1) : UserAction::close(id));
        EXPECT_EQ(dialog.ShowDialog(), ok);
        EXPECT_EQ(dialog.dialogID, 0);
    }
    for (const short item : {-1, 0, 3, 4, 5, 8})
        EXPECT_EQ(dialog.MsgClick(item), 0) << item;
}

TEST(Dialogs, EndWithTrueForOkAndNoteTheirIDMeanwhile) {
    endsWithOkOrWithout<CDlgAbout>(32500);
    endsWithOkOrWithout<CDlgInfo>(32501);
}

TEST(Report, HoldsTheFiveLinesInTheCurrentLanguageUnderANameWithTheExtensionTxt) {
    const TemporaryFolder folder;
    ScriptedPresenter user;
    folder.makeFolder("c.txt");
    folder.write("a.b/.Txt", std::string(10000, 'x'));
    user.then(UserAction::click(32501, 16));
    for (const char* const refused :
         {"report.txt.bak", "report.", "a.b/report", "report", "c.txt/report", "txt", "report.txt "})
        user.then(UserAction::chooseFile(folder.path(refused))).then(UserAction::answer(1));
    user.then(UserAction::chooseFile(folder.path("a.b/.Txt"))).then(UserAction::click(32501, 1));
    gKW_Language = 5;
    EXPECT_TRUE(CDlgInfo().ShowDialog());
    gKW_Language = KW_Language_International;
    EXPECT_EQ(user.alerts.size(), 7u);
    EXPECT_EQ(folder.read("a.b/.Txt"),
              "TessaroLibrary\nバージョン： 22.0.4.2200\nビルド日： 03/08/2018\nシステム： Mactel\n"
              "ArchiCAD 22\n\n");
    EXPECT_EQ(folder.count(), 2);
}

TEST(Report, ThatCannotBeWrittenIsToldAndLeavesAnOldOneAlone) {
    const TemporaryFolder folder;
    folder.makeFolder("folder.txt");
    folder.write("report.txt", "old report");
    CDlgInfo dialog;
    KW_List<KW_String> lines;
    dialog.BuildData(lines);
    const auto write = [&](const std::string& name) {
        KW_Location file(IO::Location::FromPosixPath(folder.path(name)));
        return dialog.WriteData(file, lines);
    };
    EXPECT_FALSE(write("folder.txt"));
    EXPECT_FALSE(write("missing/report.txt"));
    {
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 0);
        EXPECT_FALSE(write("report.txt"));
    }
    EXPECT_EQ(folder.read("report.txt"), "old report");
    lines.Reset();
    EXPECT_TRUE(write("report.txt"));
    EXPECT_EQ(folder.read("report.txt"), "") << "no lines give an empty file";
}

}  // namespace

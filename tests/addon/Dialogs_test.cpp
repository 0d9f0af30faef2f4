#include "addon/CDlgAbout.h"
#include "addon/CDlgInfo.h"
#include "files/KW_Location.h"
#include "language/KW_Language.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/ScriptedPresenter.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>

namespace {

using platform::DialogControl;
using platform::UserAction;
using support::utf8;
using testing::StartsWith;

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

class Report : public testing::Test {
protected:
    ~Report() override { gKW_Language = KW_Language_International; }

    /// Has the report saved where the user says, and answers alerts, until a file is taken.
    void save(const std::vector<std::string>& names) {
        user_.then(UserAction::click(32501, 16));
        for (const std::string& name : names) {
            if (&name != &names.front()) user_.then(UserAction::answer(1));
            user_.then(UserAction::chooseFile(folder_.path(name)));
        }
        user_.then(UserAction::click(32501, 1));
        EXPECT_TRUE(CDlgInfo().ShowDialog());
    }

    TemporaryFolder folder_;
    ScriptedPresenter user_;
};

TEST_F(Report, HoldsTheFiveLinesInTheCurrentLanguageAndAnEmptyOne) {
    folder_.write("report.txt", std::string(10000, 'x'));
    gKW_Language = 5;
    save({"report.txt"});
    EXPECT_EQ(folder_.read("report.txt"),
              "TessaroLibrary\nバージョン： 22.0.4.2200\nビルド日： 03/08/2018\nシステム： Mactel\n"
              "ArchiCAD 22\n\n");
}

TEST_F(Report, IsRefusedUnderANameWithoutTheExtensionTxt) {
    folder_.makeFolder("a.b");
    folder_.makeFolder("c.txt");
    save({"report.txt.bak", "report.", "a.b/report", "report", "c.txt/report", "txt", "report.txt ",
          "a.b/.Txt"});
    EXPECT_EQ(user_.alerts.size(), 7u);
    EXPECT_THAT(folder_.read("a.b/.Txt"), StartsWith("TessaroLibrary\nVersion: "));
    EXPECT_EQ(folder_.count(), 2);
}

TEST_F(Report, ThatCannotBeWrittenIsToldAndLeavesAnOldOneAlone) {
    folder_.makeFolder("folder.txt");
    folder_.write("report.txt", "old report");
    CDlgInfo dialog;
    KW_List<KW_String> lines;
    dialog.BuildData(lines);
    const auto write = [&](const std::string& name) {
        KW_Location file(IO::Location::FromPosixPath(folder_.path(name)));
        return dialog.WriteData(file, lines);
    };
    EXPECT_FALSE(write("folder.txt"));
    EXPECT_FALSE(write("missing/report.txt"));
    {
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 0);
        EXPECT_FALSE(write("report.txt"));
    }
    EXPECT_EQ(folder_.read("report.txt"), "old report");
    lines.Reset();
    EXPECT_TRUE(write("report.txt"));
    EXPECT_EQ(folder_.read("report.txt"), "") << "no lines give an empty file";
}

}  // namespace

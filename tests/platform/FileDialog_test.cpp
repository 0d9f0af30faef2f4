#include "platform/FileDialog.h"

#include "tests/support/ScriptedPresenter.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <tuple>

namespace {

using platform::UserAction;

IO::Location location(const std::string& path) {
    return IO::Location::FromPosixPath(path);
}

std::string path(const IO::Location& place) {
    GS::UniString text;
    return place.ToPath(&text) == kNoError ? GS::UniStringToUtf8(text) : "no location";
}

TEST(FileDialog, TheUserSeesTheFiltersThatStandAndCanOnlyChoose) {
    FTM::FileTypeManager manager("Module");
    FTM::RootGroup root(manager);
    const FTM::GeneralID text =
        root.AddType({"Testo \x8E (*.txt)", "TXT", 0x47534143, 0x54455854, 145, nullptr, nullptr, true});
    const FTM::GeneralID nameless = root.AddType({nullptr, nullptr, 0, 0, 0, nullptr, nullptr, true});
    FTM::GeneralID forgotten;
    {
        FTM::FileTypeManager other("Module that goes away");
        forgotten = FTM::RootGroup(other).AddType({"Text", "txt", 0, 0, 0, nullptr, nullptr, true});
    }
    ScriptedPresenter user;
    user.then(UserAction::click(0, 1)).then(UserAction::chooseFile(""));
    user.then(UserAction::chooseFile("/b/other.txt", 2)).then(UserAction::chooseFile("/b/other.txt", 1));
    DG::FileDialog dialog(DG::FileDialog::Save);
    for (const FTM::GeneralID filter : {text, nameless, forgotten})
        dialog.AddFilter(filter, 0);
    dialog.SelectFile(location("/elsewhere/report.txt"), true);
    EXPECT_EQ(dialog.GetSelectionCount(), 0);
    ASSERT_TRUE(dialog.Invoke());
    EXPECT_EQ(dialog.GetSelectionCount(), 1);
    EXPECT_EQ(path(dialog.GetSelectedFile(1)), "no location");
    EXPECT_EQ(dialog.GetSelectedFilter(), 1);
    EXPECT_THAT(user.log, testing::ElementsAre("chooser save [] [] [report.txt]",
                                               "refused: a file chooser is waiting for a choice",
                                               "refused: the path is empty",
                                               "refused: the chooser has no filter 3", "chooser closed"));
    const auto& filters = user.choosers.front().filters;
    ASSERT_EQ(filters.size(), 2U);
    EXPECT_EQ(filters[0].description, "Testo \xC3\xA9 (*.txt)");
    EXPECT_EQ(filters[1].description, "");
}

TEST(FileDialog, AChosenPathCountsFromTheFolderThatTheUserSees) {
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {"/a/b", "c.txt", "/a/b/c.txt"},
        {"/a/b", "/x/c.txt", "/x/c.txt"},
        {"", "c.txt", std::filesystem::current_path() / "c.txt"},
        {"", "/caff\xC3\xA8.txt", "/caff\xC3\xA8.txt"},
    };
    for (const auto& [folder, chosen, result] : cases) {
        ScriptedPresenter user;
        user.then(UserAction::chooseFile(chosen));
        DG::FileDialog dialog(DG::FileDialog::Save);
        dialog.SetFolder(location(folder));
        ASSERT_TRUE(dialog.Invoke());
        EXPECT_EQ(path(dialog.GetSelectedFile(0)), result);
    }
}

TEST(FileDialog, CancellingChoosesNothingAlsoAfterAChoice) {
    DG::FileDialog dialog(DG::FileDialog::Save);
    DG::FolderDialog folders;
    folders.SetTitle(GS::UniStringFromUtf8("Cartella"));
    EXPECT_FALSE(dialog.Invoke()) << "nobody to ask";
    ScriptedPresenter user;
    user.then(UserAction::chooseFile("/a.txt")).then(UserAction::abandon());
    EXPECT_TRUE(dialog.Invoke());
    EXPECT_FALSE(dialog.Invoke());
    EXPECT_EQ(dialog.GetSelectionCount(), 0);
    EXPECT_EQ(path(dialog.GetSelectedFile(0)), "no location");
    user.then(UserAction::chooseFile("/libraries/QRN")).then(UserAction::close());
    EXPECT_TRUE(folders.Invoke());
    EXPECT_EQ(path(folders.GetFolder()), "/libraries/QRN");
    EXPECT_FALSE(folders.Invoke());
    EXPECT_EQ(path(folders.GetFolder()), "no location");
    EXPECT_EQ(user.log.end()[-2], "chooser folder [Cartella] [] []");
}

}  // namespace

#include "dialogs/KW_Dialog.h"

#include "files/KW_Location.h"
#include "language/KW_Language.h"
#include "language/KW_Resource.h"
#include "tests/support/ScriptedPresenter.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace {

using platform::UserAction;
using support::text;
using support::utf8;

std::string frameworkText(long index) {
    return utf8(KW_Resource_GetString(static_cast<short>(KW_Resource_Framework + gKW_Language), index));
}

/// Each test begins in the international language and leaves it so.
class KWDialog : public testing::Test {
protected:
    ~KWDialog() override { gKW_Language = KW_Language_International; }
    ScriptedPresenter user;
};

TEST_F(KWDialog, AnAlertHasItsTextsAndOneButtonWithTheCurrentLanguagesLabel) {
    for (short language = 0; language < KW_Language_Count; ++language) {
        gKW_Language = language;
        user.then(UserAction::answer(1)).then(UserAction::close());
        KW_Dialog::ShowAlert(-1, text("uno"), text("d\xC3\xBC"), text("\xE4\xB8\x89"));
        KW_Dialog::ShowAlert(7, text("heading"), KW_String(), text(""));
        EXPECT_EQ(user.log[0], "alert -1 [uno|d\xC3\xBC|\xE4\xB8\x89] [" + frameworkText(64) + "||]");
        EXPECT_EQ(user.log[2], "alert 7 [heading||] [" + frameworkText(64) + "||]");
        user.log.clear();
    }
}

TEST_F(KWDialog, APrefixedMessageChangesTheCaseOfTheFirstCharacterOnly) {
    struct Case {
        const char* text;
        bool firstPrefix;
        const char* separator;
        bool toLower;
        std::string result;
    };
    gKW_Language = 0;
    const std::string error = frameworkText(10);
    const std::string warning = frameworkText(14);
    ASSERT_NE(error, warning);
    const Case cases[] = {
        {"Abc DEF", true, ": ", true, error + ": abc DEF"},
        {"abc DEF", false, ": ", false, warning + ": Abc DEF"},
        {"A", true, " - ", true, error + " - a"},
        {"7 FILES", false, ": ", true, warning + ": 7 FILES"},
        {"\xC3\x88 tardi", true, ": ", true, error + ": \xC3\x88 tardi"},
        {"", true, ": ", true, ""},
        {"abc", true, "", true, ""},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(utf8(KW_Dialog::SetPrefixString(text(each.text), each.firstPrefix, text(each.separator),
                                                  each.toLower)),
                  each.result);
    }
    EXPECT_EQ(utf8(KW_Dialog::SetPrefixString(KW_String(), true, text(": "), true)), "");
    EXPECT_EQ(utf8(KW_Dialog::SetPrefixString(text("abc"), true, KW_String(), true)), "");
}

TEST_F(KWDialog, TheDefaultPathGivesFolderAndName) {
    struct Case {
        const char* path;
        const char* folder;
        const char* name;
    };
    const Case cases[] = {{"/Users/a/report.txt", "/Users/a", "report.txt"},
                          {"report.txt", "", "report.txt"},
                          {"", "", ""},
                          {"/Users/a/", "/Users/a", ""},
                          {"/report.txt", "", "report.txt"}};
    for (const Case& each : cases) {
        user.then(UserAction::close());
        KW_Location file;
        EXPECT_FALSE(KW_Dialog::SaveFile(file, text("Text Files (*.txt)"), text("TXT"), 0x54455854,
                                         text("Save"), text(each.path)));
        const platform::FileChooserState& chooser = user.choosers.back();
        EXPECT_EQ(chooser.kind, platform::FileChooserState::Kind::SaveFile);
        EXPECT_EQ(chooser.title, "Save");
        EXPECT_EQ(chooser.folder, each.folder) << each.path;
        EXPECT_EQ(chooser.name, each.name) << each.path;
        ASSERT_EQ(chooser.filters.size(), 1U);
        EXPECT_EQ(chooser.filters[0].description, "Text Files (*.txt)");
        EXPECT_EQ(chooser.filters[0].extension, "TXT");
    }
}

TEST_F(KWDialog, ACancelledDialogChangesNothing) {
    user.then(UserAction::close()).then(UserAction::close());
    KW_Location file(text("/old"));
    long filter = 5;
    EXPECT_FALSE(KW_Dialog::SaveFile(file, text("Text"), text("TXT"), 0, text("T"), text("")));
    EXPECT_FALSE(KW_Dialog::SaveFile(file, nullptr, nullptr, text("T"), nullptr, &filter));
    EXPECT_EQ(utf8(file), "/old");
    EXPECT_EQ(filter, 5);
}

TEST_F(KWDialog, TheFullFormOffersTheFiltersInOrderAndTellsTheChosenOne) {
    FTM::FileTypeManager manager("Test");
    FTM::RootGroup root(manager);
    KW_List<FTM::GeneralID> filters;
    filters.AddData(root.AddType({"One", "a", 0, 0, 0, nullptr, nullptr, true}), -1);
    filters.AddData(root.AddType({"Two", "b", 0, 0, 0, nullptr, nullptr, true}), -1);

    user.then(UserAction::chooseFile("/z.b", 1)).then(UserAction::chooseFile("/y"));
    KW_Location file;
    const KW_Location name(text("z.b"));
    const KW_Location folder(text("/folder"));
    long filter = -1;
    EXPECT_TRUE(KW_Dialog::SaveFile(file, &name, &folder, text("Title"), &filters, &filter));
    EXPECT_EQ(filter, 1);
    EXPECT_EQ(utf8(file), "/z.b");
    EXPECT_EQ(user.log[0], "chooser save [Title] [/folder] [z.b]");
    EXPECT_EQ(user.choosers[0].filters[0].description, "One");
    EXPECT_EQ(user.choosers[0].filters[1].description, "Two");

    EXPECT_TRUE(KW_Dialog::SaveFile(file, nullptr, nullptr, text(""), nullptr, nullptr));
    EXPECT_EQ(utf8(file), "/y");
    EXPECT_EQ(user.log[2], "chooser save [] [] []");
    user.then(UserAction::chooseFile("/b/report"));
    EXPECT_TRUE(KW_Dialog::SaveFile(file, text("Text"), text("TXT"), 0, text(""), text("/a/x.txt")));
    EXPECT_EQ(utf8(file), "/b/report") << "as the user named it";
}

}  // namespace

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
    return utf8(KW_Resource_GetFrameworkString(index));
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
        KW_Dialog::ShowAlert(7, text("uno"), text("d\xC3\xBC"), text("\xE4\xB8\x89"));
        KW_Dialog::ShowMessage(text("message"));
        EXPECT_EQ(user.log[0], "alert 7 [uno|d\xC3\xBC|\xE4\xB8\x89] [" + frameworkText(64) + "||]");
        EXPECT_EQ(user.log[2], "alert -1 [|message|] [" + frameworkText(64) + "||]");
        user.log.clear();
    }
}

TEST_F(KWDialog, APrefixedMessageChangesTheCaseOfTheFirstCharacterOnly) {
    gKW_Language = 0;
    const std::string error = frameworkText(10);
    const std::string warning = frameworkText(14);
    const struct {
        KW_String text;
        bool firstPrefix;
        KW_String separator;
        bool toLower;
        std::string result;
    } cases[] = {
        {text("Abc DEF"), true, text(": "), true, error + ": abc DEF"},
        {text("abc DEF"), false, text(": "), false, warning + ": Abc DEF"},
        {text("A"), true, text(" - "), true, error + " - a"},
        {text("\xC3\x88 tardi"), true, text(": "), true, error + ": \xC3\x88 tardi"},
        {text(""), true, text(": "), true, ""},
        {text("abc"), true, text(""), true, ""},
        {KW_String(), true, text(": "), true, ""},
        {text("abc"), true, KW_String(), true, ""},
    };
    for (const auto& each : cases)
        EXPECT_EQ(utf8(KW_Dialog::SetPrefixString(each.text, each.firstPrefix, each.separator, each.toLower)),
                  each.result);
}

TEST_F(KWDialog, TheDefaultPathGivesFolderAndNameAndACancelledDialogNothing) {
    const struct {
        const char* path;
        const char* shown;
    } cases[] = {{"/Users/a/report.txt", "[/Users/a] [report.txt]"},
                 {"report.txt", "[] [report.txt]"},
                 {"", "[] []"},
                 {"/Users/a/", "[/Users/a] []"},
                 {"/report.txt", "[] [report.txt]"}};
    for (const auto& each : cases) {
        user.log.clear();
        user.then(UserAction::close());
        KW_Location file(text("/old"));
        EXPECT_FALSE(KW_Dialog::SaveFile(file, text("Text Files (*.txt)"), text("TXT"), 0x54455854,
                                         text("Save"), text(each.path)));
        EXPECT_EQ(user.log[0], std::string("chooser save [Save] ") + each.shown);
        EXPECT_EQ(utf8(file), "/old");
        ASSERT_EQ(user.choosers.back().filters.size(), 1U);
        EXPECT_EQ(user.choosers.back().filters[0].description, "Text Files (*.txt)");
        EXPECT_EQ(user.choosers.back().filters[0].extension, "TXT");
    }
}

TEST_F(KWDialog, TheFullFormOffersTheFiltersInOrderAndTellsTheChosenOne) {
    FTM::FileTypeManager manager("Test");
    FTM::RootGroup root(manager);
    KW_List<FTM::GeneralID> filters;
    for (const char* const name : {"One", "Two"})
        filters.AddData(root.AddType({name, "a", 0, 0, 0, nullptr, nullptr, true}), -1);
    const KW_Location name(text("z.b"));
    const KW_Location folder(text("/folder"));
    KW_Location file;
    long filter = 5;
    user.then(UserAction::close()).then(UserAction::chooseFile("/z.b", 1)).then(UserAction::chooseFile("/y"));
    EXPECT_FALSE(KW_Dialog::SaveFile(file, &name, &folder, text("Title"), &filters, &filter));
    EXPECT_EQ(filter, 5);
    EXPECT_TRUE(KW_Dialog::SaveFile(file, &name, &folder, text("Title"), &filters, &filter));
    EXPECT_EQ(filter, 1);
    EXPECT_EQ(utf8(file), "/z.b");
    EXPECT_EQ(user.log[0], "chooser save [Title] [/folder] [z.b]");
    EXPECT_EQ(user.choosers[0].filters[0].description, "One");
    EXPECT_EQ(user.choosers[0].filters[1].description, "Two");
    EXPECT_TRUE(KW_Dialog::SaveFile(file, nullptr, nullptr, text(""), nullptr, nullptr));
    EXPECT_EQ(utf8(file), "/y") << "as the user named it";
    EXPECT_EQ(user.log[4], "chooser save [] [] []");
}

}  // namespace

#include "platform/host/SettingsFolder.h"
#include "tests/support/DataFolder.h"
#include "tests/support/Text.h"
#include "tests/update/VersionText.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <gtest/gtest.h>

namespace {

using support::text;
using support::utf8;

// ---- Grammar

int kindOf(const std::string& line) {
    KW_List<KW_String> tokens;
    text(line).SplitBySpaces(tokens);
    return KW_AddonUpdate_CheckVersionFormat(tokens);
}

TEST(VersionGrammar, GivesEachLineItsKind) {
    const struct {
        const char* before;
        const char* after;
        int kind;
        std::vector<std::string> right;  // what stands between them
        std::vector<std::string> wrong;
    } cases[] = {
        {"",
         "",
         KW_AddonUpdate_AddonLine,
         {"TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018 ita int", "T\t22.0.5.2210 \t (AC220) 15-10-2018"},
         {"", "Tessaro", "a Tessaro 01/10/2018"}},
        // a library line, also before it is an add-on line: token 2 is a date of exactly ten characters
        {"", "", KW_AddonUpdate_LibraryLine, {" 01/10/2018", "T 01/10/2018 (AC220) 15/10/2018"}, {}},
        {"Tessaro ",
         "",
         KW_AddonUpdate_LibraryLine,
         {"01/10/2018", "01-10/2018 NoSuite"},
         {"1/10/2018", "01/10/20189", "01.10.2018", "01/10.2018", "0x/10/2018", "01/1x/2018", "01/10/201x",
          "01/10/２018"}},
        // four numbers or more, of which four are looked at; a number without digits is one
        {"T ",
         " (AC220) 15/10/2018",
         KW_AddonUpdate_AddonLine,
         {"22.0.5.", "...", "1.2.3.4.beta", "99999999999999999999.0.0.0"},
         {"22.0.5", "..", "1.2.3.4b", "a.2.3.4", "1.-2.3.4", "1.2.3\xC2\xB2.4"}},
        {"T 1.2.3.4 ",
         " 15/10/2018",
         KW_AddonUpdate_AddonLine,
         {"(AC22)", "(AC)"},
         {"(AC", "AC220)", "(ac220)", "(AC22x)", "(AC2)2)", "(AC220 )"}},
        // the length of an add-on's date does not matter
        {"T 1.2.3.4 (AC220)",
         "",
         KW_AddonUpdate_AddonLine,
         {" 15/10/18", " 15/10/", " 15/10/2018beta"},
         {"", " ", " 15/10", " 15/10/20b8", " 5/10/2018"}},
    };
    for (const auto& each : cases) {
        for (const std::string& right : each.right)
            EXPECT_EQ(kindOf(each.before + right + each.after), each.kind) << right;
        for (const std::string& wrong : each.wrong)
            EXPECT_EQ(kindOf(each.before + wrong + each.after), KW_AddonUpdate_NoVersionLine) << wrong;
    }
    KW_List<KW_String> tokens;
    EXPECT_EQ(KW_AddonUpdate_CheckVersionFormat(tokens), KW_AddonUpdate_NoVersionLine);
    tokens.AddData(KW_String(), -1);
    tokens.AddData(KW_String(), -1);
    EXPECT_EQ(KW_AddonUpdate_CheckVersionFormat(tokens), KW_AddonUpdate_NoVersionLine) << "null strings";
}

// ---- Records

std::string shown(const KW_AddonUpdate_Addon& addon) {
    std::string all = utf8(addon.name) + ", " + utf8(addon.versionText) + ":";
    for (const short number : addon.versionNumbers)
        all += " " + std::to_string(number);
    all +=
        ", for " + std::to_string(addon.hostVersion) + ", " + utf8(addon.dateText) + ": " + utf8(addon.date);
    for (long i = 0; i < addon.languages.count; ++i)
        all += " " + std::to_string(addon.languages[i]);
    return all + (addon.inSE ? "" : " NoSE") + (addon.inSuite ? "" : " NoSuite") + " [" + utf8(addon.text) +
           "]";
}

std::string shown(const KW_AddonUpdate_Library& library) {
    return utf8(library.name) + ", " + utf8(library.dateText) + ": " + utf8(library.date) +
           (library.inSuite ? "" : " NoSuite") + " [" + utf8(library.text) + "]";
}

TEST(Records, AreFilledAnewFromEachLineButForTheirText) {
    const std::pair<const char*, const char*> addons[] = {
        {"T 1.2.3.4.5 (AC220) 03/08/2018 ita int fra ger spa jap rus",
         "T, 1.2.3.4.5: 1 2 3 4, for 22, 03/08/2018: 20180803 0 1 2 3 4 5 6 [kept]"},
        {"T 5.6 (AC22) 03-08-18 RUS Ita NoSE ita",
         "T, 5.6: 5 6 0 0, for 2, 03-08-18: 180803 6 0 0 NoSE [kept]"},
        {"T 32767.32768.65535.65537 (AC2) 03/08/2018 int xyz NoSuite ger",
         "T, 32767.32768.65535.65537: 32767 -32768 -1 1, for 0, 03/08/2018: 20180803 1 3 NoSuite [kept]"},
        {"T 007.0.0.18446744073709551617 (AC2310) 03/08/2018x nose NOSUITE itax it",
         "T, 007.0.0.18446744073709551617: 7 0 0 1, for 231, 03/08/2018x: 20180803 [kept]"},
        {"T ... (AC) 5/10", "T, ...: 0 0 0 0, for 0, 5/10: 05/ [kept]"},
        {"x 1.2 (A", "x, 1.2: 1 2 0 0, for 0, null:  [kept]"},
        {" ", "null, null: 0 0 0 0, for 0, null:  [kept]"},
        {"", ", : 0 0 0 0, for 0, :  NoSE []"},
    };
    KW_AddonUpdate_Addon addon;
    EXPECT_EQ(shown(addon), std::rbegin(addons)->second) << "a new one is as the empty line makes it";
    addon.text = text("kept");
    for (const auto& [line, expected] : addons) {
        KW_AddonUpdate_SplitAddonVersion(text(line), addon);
        EXPECT_EQ(shown(addon), expected);
        KW_AddonUpdate_Addon copy;
        copy.languages.AddData(5, -1);
        copy = addon;
        EXPECT_EQ(shown(copy), expected);
    }
    const std::pair<const char*, const char*> libraries[] = {
        {"T 03/08/2018 ita NoSuite x", "T, 03/08/2018: 20180803 NoSuite [kept]"},
        {"Uno 04-08-2018 NOSUITE", "Uno, 04-08-2018: 20180804 [kept]"},
        {"x", "x, null:  [kept]"},
    };
    KW_AddonUpdate_Library library;
    EXPECT_EQ(shown(library), ", :  []");
    library.text = text("kept");
    for (const auto& [line, expected] : libraries) {
        KW_AddonUpdate_SplitLibVersion(text(line), library);
        EXPECT_EQ(shown(library), expected);
    }
}

TEST(TextLines, AreJoinedAndLeaveTheIndexOnTheLastOne) {
    const struct {
        const char* lines;
        const char* joined;
        long index;
    } cases[] = {
        {"T\n# one\n# two\nnext", "one\ntwo", 2},
        {"T\nnext", "", 0},
        {"T\n#\n# \n# one\n#\n# two\nnext", "one\n\ntwo", 5},
        {"T\n#one\n#  two\nnext", "ne\n two", 2},
        {"T\n# one", "one", 2},
        {"T", "", 1},
    };
    for (const auto& each : cases) {
        KW_List<KW_String> lines;
        text(each.lines).SplitLines(lines, true, true);
        long index = 0;
        const KW_String joined = KW_AddonUpdate_ReadText(index, lines);
        EXPECT_EQ(joined, text(each.joined)) << each.lines;
        EXPECT_EQ(index, each.index) << each.lines;
    }
}

// ---- Whole files

class VersionsFile : public testing::Test {
protected:
    bool read(const std::string& bytes) {
        folder.write("__updcf__.tmp", bytes);
        return KW_AddonUpdate_ReadVersionsFile(messages, addons, libraries);
    }
    /// One line for each record.
    std::string entries() const {
        std::string all;
        for (long i = 0; i < messages.count; ++i)
            all += "message " + utf8(messages[i].firstDate) + "-" + utf8(messages[i].secondDate) + " [" +
                   utf8(messages[i].text) + "] [" + utf8(messages[i].url) + "]\n";
        for (long i = 0; i < addons.count; ++i)
            all += shown(addons[i]) + "\n";
        for (long i = 0; i < libraries.count; ++i)
            all += shown(libraries[i]) + "\n";
        return all;
    }

    DataFolder folder;
    KW_List<KW_AddonUpdate_Message> messages;
    KW_List<KW_AddonUpdate_Addon> addons;
    KW_List<KW_AddonUpdate_Library> libraries;
};

TEST_F(VersionsFile, IsReadIntoRecordsWhateverItsLineEnds) {
    ASSERT_TRUE(
        read("* list of versions\r\n"
             "# stray text\r"
             "MESSAGE 01/09/2018 31/12/2018\r\n"
             "# See http://www.tessaro.example/news\r"
             "# and http://elsewhere.example\n"
             "\n"
             "TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018 ita int\r"
             "# Faster.\r\n"
             "#\n"
             "# Smaller.\r"
             "TessaroLibrary 22.0.5 (AC220) 15/10/2018\r\n"
             "# belongs to nothing\r"
             "Tessaro 01/10/2018 NoSuite\n"));
    EXPECT_EQ(entries(),
              "message 20180901-20181231 [See ] [http://www.tessaro.example/news\n"
              "and http://elsewhere.example]\n"
              "TessaroLibrary, 22.0.5.2210: 22 0 5 2210, for 22, 15/10/2018: 20181015 0 1"
              " [Faster.\n\nSmaller.]\n"
              "Tessaro, 01/10/2018: 20181001 NoSuite []\n");
    EXPECT_TRUE(folder.has("__updcf__.tmp"));
}

TEST_F(VersionsFile, IsUtf8UnlessAByteOrderMarkSaysOtherwise) {
    ASSERT_TRUE(read("Caffè 01/01/2018"));
    ASSERT_TRUE(read("\xEF\xBB\xBFTè 01/01/2018"));
    ASSERT_TRUE(read("\xFF\xFE" + utf16("P\xF2 01/01/2018")));
    EXPECT_EQ(entries(),
              "Caffè, 01/01/2018: 20180101 []\nTè, 01/01/2018: 20180101 []\nPò, 01/01/2018: 20180101 []\n");
}

TEST_F(VersionsFile, TakesNoticesByTheirFirstToken) {
    ASSERT_TRUE(
        read("MESSAGE\n# text\n"
             "xMESSAGEy 1/2\n# http://only\n"
             "MESSAGE 01/01/2018 02/01/2018 03/01/2018\n"
             "message 01/01/2018\n"
             "x MESSAGE\n"
             "*MESSAGE\n"
             "#MESSAGE\n"));
    EXPECT_EQ(entries(),
              "message - [text] []\n"
              "message 1/- [] [http://only]\n"
              "message 20180101-20180102 [] []\n"
              "message, 01/01/2018: 20180101 []\n");
}

TEST_F(VersionsFile, HoldsNothingWhenEmptyOrUndecodableAndCannotBeReadWhereThereIsNone) {
    EXPECT_FALSE(KW_AddonUpdate_ReadVersionsFile(messages, addons, libraries));
    for (const char* const bytes :
         {"", "\xC3\x28 01/01/2018", "# 01/01/2018\n#T 1.2.3.4 (AC220) 01/01/2018\n", " ", "\n\t\n \r", "*",
          "#", "\xEF\xBB\xBF", "\xFF\xFE", "\xFF\xFEP"})
        EXPECT_TRUE(read(bytes)) << bytes;
    EXPECT_EQ(entries(), "");
    platform::setSettingsFolder(IO::Location::FromPosixPath(folder.path("missing")));
    EXPECT_FALSE(KW_AddonUpdate_ReadVersionsFile(messages, addons, libraries));
}

}  // namespace

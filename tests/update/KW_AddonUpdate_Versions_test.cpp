#include "platform/host/SettingsFolder.h"
#include "tests/support/DataFolder.h"
#include "tests/update/VersionText.h"
#include "update/KW_AddonUpdate_Internal.h"
#include "update/KW_VersionLine.h"

#include <gmock/gmock.h>
#include <random>

namespace {

// ---- Grammar

int kindOf(const std::string& line) {
    KW_List<KW_String> tokens;
    text(line).SplitBySpaces(tokens);
    const int kind = KW_AddonUpdate_CheckVersionFormat(tokens);
    EXPECT_EQ(KW_VersionLine(KW_UnitsOf(text(line))).Kind(), kind) << "in place: " << line;
    return kind;
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

TEST(VersionDate, IsRearrangedFromWhateverCharactersItHas) {
    const std::pair<const char*, const char*> cases[] = {
        {"03/08/2018", "20180803"},
        {"03/08/2018x", "20180803"},
        {"03/08/18", "180803"},
        {"5/10/2018", "0180/5/"},
        {"", ""},
        {"123456", "4512"},
        {"abcdefghij", "ghijdeab"},
    };
    for (const auto& [date, expected] : cases) {
        KW_String written = text(date);
        EXPECT_EQ(utf8(KW_AddonUpdate_FormatDate(written)), expected) << date;
    }
}

// ---- Records

std::string languages(const KW_AddonUpdate_Addon& addon) {
    std::string all;
    for (long i = 0; i < addon.languages.count; ++i)
        all += std::to_string(addon.languages[i]);
    return all;
}

TEST(Records, NoteMarkersBehindTheirFields) {
    const struct {
        const char* markers;
        const char* languages;
        bool inSE;
        bool inSuite;
    } cases[] = {
        {"", "", true, true},
        {"ita int fra ger spa jap rus", "0123456", true, true},
        {"RUS Ita ita", "600", true, true},
        {"NoSE", "", false, true},
        {"NoSuite", "", true, false},
        {"int NoSE xyz NoSuite ger", "13", false, false},
        {"nose NOSUITE itax it", "", true, true},
    };
    KW_AddonUpdate_Addon addon;
    KW_AddonUpdate_Library library;
    for (const auto& each : cases) {
        const std::string line = std::string("T 1.2.3.4 (AC220) 03/08/2018 ") + each.markers;
        KW_AddonUpdate_SplitAddonVersion(text(line), addon);
        KW_AddonUpdate_SplitLibVersion(text(std::string("T 03/08/2018 ") + each.markers), library);
        EXPECT_EQ(languages(addon), each.languages) << line;
        EXPECT_EQ(addon.inSE, each.inSE) << line;
        EXPECT_EQ(addon.inSuite, each.inSuite) << line;
        EXPECT_EQ(library.inSuite, each.inSuite) << line;
    }
}

TEST(Records, KeepSixteenBitsOfTheirNumbers) {
    const struct {
        const char* version;
        const char* host;
        std::vector<short> numbers;
        short hostVersion;
    } cases[] = {
        {"1.2.3.4.5", "(AC22)", {1, 2, 3, 4}, 2},
        {"...", "(AC)", {0, 0, 0, 0}, 0},
        {"32767.32768.65535.65537", "(AC2)", {32767, -32768, -1, 1}, 0},
        {"007.0.0.18446744073709551617", "(AC2310)", {7, 0, 0, 1}, 231},
    };
    for (const auto& each : cases) {
        KW_AddonUpdate_Addon addon;
        KW_AddonUpdate_SplitAddonVersion(
            text(std::string("T ") + each.version + " " + each.host + " 03/08/2018"), addon);
        EXPECT_THAT(addon.versionNumbers, testing::ElementsAreArray(each.numbers)) << each.version;
        EXPECT_EQ(addon.hostVersion, each.hostVersion) << each.host;
    }
}

TEST(Records, AreEmptiedByTheEmptyLineAllButTheirText) {
    for (const KW_String& empty : {KW_String(), text("")}) {
        KW_AddonUpdate_Addon addon;
        addon.text = text("kept");
        KW_AddonUpdate_SplitAddonVersion(text("T 1.2.3.4 (AC220) 03/08/2018 ita NoSuite"), addon);
        EXPECT_EQ(addon.text, text("kept"));
        KW_AddonUpdate_SplitAddonVersion(empty, addon);
        for (const KW_String& field : {addon.name, addon.versionText, addon.date, addon.dateText})
            EXPECT_EQ(field, text("")) << "not the null string";
        EXPECT_THAT(addon.versionNumbers, testing::Each(0));
        EXPECT_EQ(addon.hostVersion, 0);
        EXPECT_EQ(addon.languages.count, 0);
        EXPECT_FALSE(addon.inSE);
        EXPECT_TRUE(addon.inSuite);
    }
}

TEST(Records, AreFilledSafelyFromLinesThatAreNone) {
    for (const char* const line : {"x", "x 1", "x 1.2 (A", "x 1.2 (AC 1/", " ", "x y z 5"}) {
        KW_AddonUpdate_Addon addon;
        KW_AddonUpdate_SplitAddonVersion(text(line), addon);
        EXPECT_EQ(addon.languages.count, 0) << line;
        KW_AddonUpdate_Library library;
        KW_AddonUpdate_SplitLibVersion(text(line), library);
        EXPECT_TRUE(library.inSuite) << line;
    }
}

TEST(Records, AreCopiedWithEverythingInThem) {
    KW_AddonUpdate_Addon original;
    KW_AddonUpdate_SplitAddonVersion(text("T 1.2.3.4 (AC220) 03/08/2018 ita rus NoSE"), original);
    KW_AddonUpdate_Addon copy(original);
    KW_AddonUpdate_Addon assigned;
    assigned.languages.AddData(5, -1);
    assigned = original;
    original.name += "changed";
    original.languages.Reset();
    for (const KW_AddonUpdate_Addon* const each : {&copy, &assigned}) {
        EXPECT_EQ(utf8(each->name), "T");
        EXPECT_EQ(languages(*each), "06");
        EXPECT_THAT(each->versionNumbers, testing::ElementsAre(1, 2, 3, 4));
        EXPECT_FALSE(each->inSE);
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
        for (long i = 0; i < messages.count; ++i) {
            all += "message " + utf8(messages[i].firstDate) + "-" + utf8(messages[i].secondDate) + " [" +
                   utf8(messages[i].text) + "] [" + utf8(messages[i].url) + "]\n";
        }
        for (long i = 0; i < addons.count; ++i) {
            all += "addon " + utf8(addons[i].name) + " " + utf8(addons[i].date) + " " + languages(addons[i]) +
                   " [" + utf8(addons[i].text) + "]\n";
        }
        for (long i = 0; i < libraries.count; ++i) {
            all += "library " + utf8(libraries[i].name) + " " + utf8(libraries[i].date) + " [" +
                   utf8(libraries[i].text) + "]\n";
        }
        return all;
    }

    DataFolder folder;
    KW_List<KW_AddonUpdate_Message> messages;
    KW_List<KW_AddonUpdate_Addon> addons;
    KW_List<KW_AddonUpdate_Library> libraries;
};

const std::string kSample =
    "* list of versions\n"
    "# stray text\n"
    "MESSAGE 01/09/2018 31/12/2018\n"
    "# See http://www.tessaro.example/news\n"
    "# and http://elsewhere.example\n"
    "\n"
    "TessaroLibrary 22.0.5.2210 (AC220) 15/10/2018 ita int\n"
    "# Faster.\n"
    "#\n"
    "# Smaller.\n"
    "TessaroLibrary 22.0.5 (AC220) 15/10/2018\n"
    "# belongs to nothing\n"
    "Tessaro 01/10/2018 NoSuite\n";
const std::string kSampleEntries =
    "message 20180901-20181231 [See ] [http://www.tessaro.example/news\nand http://elsewhere.example]\n"
    "addon TessaroLibrary 20181015 01 [Faster.\n\nSmaller.]\n"
    "library Tessaro 20181001 []\n";

TEST_F(VersionsFile, IsReadIntoRecordsWhateverItsLineEnds) {
    for (const char* const end : {"\n", "\r\n", "\r"}) {
        messages.Reset();
        addons.Reset();
        libraries.Reset();
        ASSERT_TRUE(read(withLineEnds(kSample, end)));
        EXPECT_EQ(entries(), kSampleEntries);
    }
    EXPECT_TRUE(folder.has("__updcf__.tmp"));
}

TEST_F(VersionsFile, IsUtf8UnlessAByteOrderMarkSaysOtherwise) {
    ASSERT_TRUE(read("Caffè 01/01/2018"));
    ASSERT_TRUE(read("\xEF\xBB\xBFTè 01/01/2018"));
    ASSERT_TRUE(read("\xFF\xFE" + utf16("P\xF2 01/01/2018")));
    EXPECT_EQ(entries(), "library Caffè 20180101 []\nlibrary Tè 20180101 []\nlibrary Pò 20180101 []\n");
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
              "library message 20180101 []\n");
}

TEST_F(VersionsFile, HoldsNothingWhenEmptyUndecodableOrOnlyText) {
    EXPECT_TRUE(read(""));
    EXPECT_TRUE(read("\xC3\x28 01/01/2018"));
    EXPECT_TRUE(read("# 01/01/2018\n#T 1.2.3.4 (AC220) 01/01/2018\n"));
    EXPECT_EQ(entries(), "");
}

TEST_F(VersionsFile, CannotBeReadWhereThereIsNone) {
    EXPECT_FALSE(KW_AddonUpdate_ReadVersionsFile(messages, addons, libraries));
    folder.makeFolder("__updcf__.tmp");
    EXPECT_FALSE(KW_AddonUpdate_ReadVersionsFile(messages, addons, libraries));
    platform::setSettingsFolder(IO::Location::FromPosixPath(folder.path("missing")));
    EXPECT_FALSE(KW_AddonUpdate_ReadVersionsFile(messages, addons, libraries));
}

TEST_F(VersionsFile, GivesAnAnswerToAnyBytes) {
    std::mt19937 random(22);
    const std::string pieces[] = {"MESSAGE ", "Tessaro ", "1.2.3.4",  " (AC220) ",    "03/08/2018",
                                  "#",        "\n",       "\r",       "\t",           " ",
                                  "*",        "http://",  "\xFF\xFE", "\xEF\xBB\xBF", std::string(1, '\0'),
                                  "\xC3",     "(AC)",     "....",     "//",           "NoSE"};
    for (int round = 0; round < 2000; ++round) {
        std::string bytes;
        while (random() % 24 != 0) {
            bytes += random() % 5 == 0 ? std::string(1, static_cast<char>(random()))
                                       : pieces[random() % std::size(pieces)];
        }
        ASSERT_TRUE(read(bytes));
        KW_String whole;
        KW_String::TextToString(whole, bytes.data(), static_cast<unsigned int>(bytes.size()), true,
                                KW_String::Encoding_System);
        EXPECT_NE(KW_AddonUpdate_CompareVersions(text("T 1.2.3.4 (AC220) 03/08/2018"), whole),
                  KW_AddonUpdate_OwnLineInvalid);
    }
    EXPECT_GT(messages.count + addons.count + libraries.count, 0);
}

}  // namespace

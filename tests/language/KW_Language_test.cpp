#include "language/KW_Language.h"

#include "tests/language/LanguageFixture.h"

#include <vector>

namespace {

class KW_Language_Test : public LanguageFixture {};

TEST_F(KW_Language_Test, TheStoredLanguageBecomesCurrent) {
    struct Case {
        const char* entries;
        bool found;
        short own;     // index in the add-on without extra languages
        short shared;  // index in the one that supports Japanese and Russian
    };
    for (const Case& each : std::vector<Case>{
             {"", false, 1, 1},
             {"$Language_str: ita\n", true, 0, 0},
             {"$Language_str: FRA\n", true, 2, 2},
             {"$Language_str: jap\n", true, 1, 5},
             {"$Language_str: fr\n", true, 1, 1},
             {"$Language_str: fra \n", true, 1, 1},
             // The older form.
             {"$Language: 0\n", true, 0, 0},
             {"$Language: 5\n", true, 1, 5},
             {"$Language: 6\n", true, 1, 1},
             {"$Language: 3x\n", true, 1, 1},
             {"$Language:  + 2\n", true, 2, 2},
             {"$Language: 3.9\n", true, 3, 3},
             {"$Language: 4294967300\n", true, 4, 4},  // the low 16 bits count
             {"$Language: 32768\n", true, 1, 1},
             {"$Language: -65534\n", true, 1, 1},
             // The present form decides, also when it says nothing known.
             {"$Language: 3\n$Language_str: fra\n", true, 2, 2},
             {"$Language: 3\n$Language_str: xyz\n", true, 1, 1},
         }) {
        writeSettings(languageFile(), each.entries);
        reloadSettings();
        gKW_Language = 4;
        EXPECT_EQ(KW_Language_Exists(), each.found) << each.entries;
        EXPECT_EQ(gKW_Language, 4) << "asking changes nothing";
        EXPECT_EQ(KW_Language_Read(true), each.found) << each.entries;
        EXPECT_EQ(gKW_Language, kSharesLanguage ? each.shared : each.own) << each.entries;
    }
}

TEST_F(KW_Language_Test, OnlyTheAddOnsChoiceOfSettingsCounts) {
    const char* const other = kSharesLanguage ? "TestAddon_220.cfg" : "TessaroPlugins.cfg";
    writeSettings(other, "$Language_str: fra\n$Language: 3\n");
    reloadSettings();
    EXPECT_FALSE(KW_Language_Exists());
    EXPECT_FALSE(KW_Language_Read(true));
    gKW_Language = 4;
    KW_Language_Write();
    EXPECT_EQ(settings(other), "$Language_str: fra\n$Language: 3\n");
    EXPECT_EQ(settings(languageFile()), "$Language_str: spa\n");
}

TEST_F(KW_Language_Test, ReloadingReadsTheSharedSettingsAnewAndOnlyThose) {
    writeSettings(languageFile(), "$Language_str: fra\n");
    EXPECT_FALSE(KW_Language_Read(false));
    EXPECT_EQ(KW_Language_Read(true), kSharesLanguage);
    EXPECT_EQ(gKW_Language, kSharesLanguage ? 2 : 1);
}

TEST_F(KW_Language_Test, WritingStoresTheSuffixAndKeepsWhatElseIsThere) {
    struct Case {
        short index;
        const char* stored;
        short own;
        short shared;
    };
    writeSettings(languageFile(), "$Language: 2\n$Language_str: ita\n$Other: x\n");
    reloadSettings();
    for (const Case& each : std::vector<Case>{
             {3, "ger", 3, 3}, {5, "jap", 1, 5}, {6, "rus", 1, 6}, {7, "int", 1, 1}, {-1, "int", 1, 1}}) {
        gKW_Language = each.index;
        KW_Language_Write();
        EXPECT_EQ(settings(languageFile()),
                  std::string("$Language: 2\n$Language_str: ") + each.stored + "\n$Other: x\n");
        EXPECT_EQ(gKW_Language, kSharesLanguage ? each.shared : each.own) << each.index;
    }
}

}  // namespace

#include "foundation/KW_Text_Scanner.h"

#include "tests/foundation/TestText.h"

namespace {

class KW_Text_ScannerTest : public testing::Test {
protected:
    void set(const Content& units, unsigned long position = 0) {
        scanner.Set(maybe(units));
        scanner.position = position;
    }
    KW_Text_Scanner scanner;
};

TEST_F(KW_Text_ScannerTest, HoldsACopyOfItsText) {
    EXPECT_EQ(scanner.text, nullptr);
    KW_String source = text(u"abc");
    scanner.Set(source);
    source.SetUCharAt(0, 'x');
    EXPECT_EQ(scanner.length, 3u);
    EXPECT_EQ(scanner.text[3], 0);
    EXPECT_EQ(content(scanner.ReadToken(0, true)), u"abc");
    scanner.Set(text(u"d"));
    EXPECT_EQ(scanner.position, 0u);
    scanner.Set(KW_String());
    EXPECT_EQ(scanner.text, nullptr);
    EXPECT_EQ(scanner.length, 0u);
}

TEST_F(KW_Text_ScannerTest, FindsNothingWithoutText) {
    for (const Content& nothing : {Content(), Content(u"")}) {
        set(nothing);
        long value = 7;
        KW_String out = text(u"kept");
        EXPECT_EQ(content(scanner.ReadToken(3, true)), std::nullopt);
        EXPECT_FALSE(scanner.ReadDoubleQuotedString(out, 3, true));
        EXPECT_EQ(content(scanner.ReadLine(true, true)), std::nullopt);
        EXPECT_TRUE(scanner.ReadLong(value, 3, true));
        EXPECT_EQ(value, 0);
        EXPECT_EQ(scanner.FindText("a", 0, true, kSystem), -1);
        EXPECT_EQ(scanner.position, 0u);
    }
}

TEST_F(KW_Text_ScannerTest, ReadsLines) {
    struct Case {
        Content text;
        bool keepEOL;
        std::vector<Content> lines;
        std::vector<unsigned long> positions;
    };
    for (const Case& c : {Case{u"ab\r\ncd", false, {u"ab", u"cd", std::nullopt}, {4, 6, 6}},
                          Case{u"ab\r\ncd", true, {u"ab\r\n", u"cd", std::nullopt}, {4, 6, 6}},
                          Case{u"a\rb\n\nc", false, {u"a", u"b", std::nullopt, u"c"}, {2, 4, 5, 6}},
                          Case{u"\r\r\n", true, {u"\r", u"\r\n", std::nullopt}, {1, 3, 3}},
                          Case{std::u16string(u"ab\0cd\n", 6), true, {u"ab", std::nullopt}, {2, 2}}}) {
        set(c.text);
        for (std::size_t i = 0; i < c.lines.size(); ++i) {
            EXPECT_EQ(content(scanner.ReadLine(c.keepEOL, false)), c.lines[i]);
            EXPECT_EQ(content(scanner.ReadLine(c.keepEOL, true)), c.lines[i]);
            EXPECT_EQ(scanner.position, c.positions[i]);
        }
    }
}

TEST_F(KW_Text_ScannerTest, SkipsAsTheModeSaysBeforeAToken) {
    struct Case {
        short mode;
        Content token;
        unsigned long position;
    };
    for (const Case& c : {Case{0, std::nullopt, 0}, Case{4, std::nullopt, 0}, Case{-1, std::nullopt, 0},
                          Case{1, std::nullopt, 2}, Case{2, u"/*", 6}, Case{3, u"ab*/c/", 20}}) {
        set(u" \t\r\n/* x */ \n ab*/c/ d");
        EXPECT_EQ(content(scanner.ReadToken(c.mode, false)), c.token) << c.mode;
        EXPECT_EQ(scanner.position, 0u) << "looking ahead leaves the cursor, also across a comment";
        EXPECT_EQ(content(scanner.ReadToken(c.mode, true)), c.token) << c.mode;
        EXPECT_EQ(scanner.position, c.position) << c.mode;
    }
}

TEST_F(KW_Text_ScannerTest, PassesOverWhiteSpaceAndBlockComments) {
    struct Case {
        Content text;
        unsigned long first;
        unsigned long cursorWithoutStore;
    };
    for (const Case& c :
         {Case{u"a", 0, 0}, Case{u" \t\r\nx", 4, 0}, Case{u"/**/x", 4, 4}, Case{u"/*/x", 4, 4},
          Case{u" /* a */ /* b */ x", 17, 16}, Case{u"/* never closed", 15, 15}, Case{u"  /*", 4, 0},
          Case{u" / *", 1, 0}, Case{u" //x", 1, 0}, Case{u"  /", 2, 0}, Case{u"   ", 3, 0},
          Case{u"\u00A0", 0, 0}}) {
        for (const bool store : {false, true}) {
            set(c.text);
            EXPECT_EQ(scanner.SkipSpacesTabsEOLsComments(store), c.first) << testing::PrintToString(c.text);
            EXPECT_EQ(scanner.position, store ? c.first : c.cursorWithoutStore);
        }
    }
}

TEST_F(KW_Text_ScannerTest, ReadsIntegers) {
    struct Case {
        Content text;
        short mode;
        bool isInteger;
        long value;
        unsigned long position;
    };
    constexpr long kBefore = 7;
    for (const Case& c :
         {Case{u"  /* x */ 42 rest", 3, true, 42, 12}, Case{u"  /* x */ 42 rest", 1, false, kBefore, 2},
          Case{u"12ab", 0, false, kBefore, 0}, Case{u" \n-5\n", 2, true, -5, 4}, Case{u" 5", 0, true, 0, 0},
          Case{u"- 5", 0, true, 0, 1}, Case{u"--5", 0, false, kBefore, 0}, Case{u"+5", 0, false, kBefore, 0},
          Case{u"   ", 2, true, 0, 3}, Case{u"18446744073709551617", 0, true, 1, 20},
          Case{u"1\u0661", 0, false, kBefore, 0}, Case{std::u16string(u"12\0", 3), 0, false, kBefore, 0}}) {
        set(c.text);
        for (const bool advance : {false, true}) {
            long value = kBefore;
            EXPECT_EQ(scanner.ReadLong(value, c.mode, advance), c.isInteger)
                << testing::PrintToString(c.text);
            EXPECT_EQ(value, c.value) << testing::PrintToString(c.text);
            EXPECT_EQ(scanner.position, advance ? c.position : 0u) << testing::PrintToString(c.text);
        }
    }
}

TEST_F(KW_Text_ScannerTest, ReadsQuotedStrings) {
    struct Case {
        Content text;
        short mode;
        bool found;
        Content string;
        unsigned long position;
    };
    for (const Case& c :
         {Case{u"\"a\\\"b\" c", 0, true, u"a\\\"b", 6}, Case{u"\"\"x", 0, true, std::nullopt, 2},
          Case{u"\"a\\\\\"b\"", 0, true, u"a\\\\\"b", 7}, Case{u" /**/ \"a b\"", 3, true, u"a b", 11},
          Case{u" \"a\"", 0, false, u"kept", 0}, Case{u" x\"a\"", 1, false, u"kept", 1},
          Case{u"  \"never closed", 1, false, u"kept", 2}, Case{u"\"closed\\\"", 0, false, u"kept", 0},
          Case{u"\"", 0, false, u"kept", 0}, Case{u" /**/ x", 3, false, u"kept", 6}}) {
        set(c.text);
        for (const bool advance : {false, true}) {
            KW_String out = text(u"kept");
            EXPECT_EQ(scanner.ReadDoubleQuotedString(out, c.mode, advance), c.found);
            EXPECT_EQ(content(out), c.string) << testing::PrintToString(c.text);
            EXPECT_EQ(scanner.position, advance ? c.position : 0u) << testing::PrintToString(c.text);
        }
    }
}

TEST_F(KW_Text_ScannerTest, FindsText) {
    struct Case {
        const char* what;
        unsigned long start;
        long found;
        unsigned long position;
    };
    for (const Case& c :
         {Case{"cd", 0, 2, 4}, Case{"x", 0, -1, 4}, Case{"cd", 3, -1, 4}, Case{"abcde", 0, -1, 4},
          Case{"cd", 4, -1, 1}, Case{"cd", ~0UL, -1, 1}, Case{"", 0, -1, 1}, Case{nullptr, 0, -1, 1}}) {
        set(u"abcd", 1);
        for (const bool advance : {false, true}) {
            EXPECT_EQ(scanner.FindText(c.what, c.start, advance, kSystem), c.found);
            EXPECT_EQ(scanner.position, advance ? c.position : 1u);
        }
    }
    set(u"na\u00EFve \u4E2D", 6);
    EXPECT_EQ(scanner.FindText("\xC3\xAF", 0, true, kUTF8), 2);
    EXPECT_EQ(scanner.position, 3u) << "a start before the cursor may move it back";
    EXPECT_EQ(scanner.FindText("\x4E\x2D\0", 0, true, kUTF16BE), 6);
    EXPECT_EQ(scanner.FindText("\xFF", 0, true, kUTF8), -1);
}

TEST_F(KW_Text_ScannerTest, TellsWhatAnIntegerIs) {
    for (const Content& integer : {Content(), Content(u"-"), Content(u"-12"), Content(u"007")})
        EXPECT_TRUE(KW_Text_Scanner::IsInteger(maybe(integer)));
    for (const char16_t* other : {u"1-", u"1.5", u"a", u"\uFF11"})
        EXPECT_FALSE(KW_Text_Scanner::IsInteger(text(other)));
}

}  // namespace

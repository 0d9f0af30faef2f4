#include "foundation/KW_Text_Scanner.h"

#include "tests/foundation/TestText.h"

namespace {

struct KW_Text_ScannerTest : testing::Test {
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
    using Case = std::tuple<Content, bool, std::vector<Content>, std::vector<unsigned long>>;
    for (const auto& [held, keepEOL, lines, positions] :
         {Case{u"ab\r\ncd", false, {u"ab", u"cd", std::nullopt}, {4, 6, 6}},
          Case{u"ab\r\ncd", true, {u"ab\r\n", u"cd", std::nullopt}, {4, 6, 6}},
          Case{u"a\rb\n\nc", false, {u"a", u"b", std::nullopt, u"c"}, {2, 4, 5, 6}},
          Case{u"\r\r\n", true, {u"\r", u"\r\n", std::nullopt}, {1, 3, 3}},
          Case{std::u16string(u"ab\0cd\n", 6), true, {u"ab", std::nullopt}, {2, 2}}}) {
        set(held);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_EQ(content(scanner.ReadLine(keepEOL, false)), lines[i]);
            EXPECT_EQ(content(scanner.ReadLine(keepEOL, true)), lines[i]);
            EXPECT_EQ(scanner.position, positions[i]);
        }
    }
}

TEST_F(KW_Text_ScannerTest, SkipsAsTheModeSaysBeforeAToken) {
    using Case = std::tuple<short, Content, unsigned long>;
    for (const auto& [mode, token, position] :
         {Case{0, std::nullopt, 0}, Case{4, std::nullopt, 0}, Case{-1, std::nullopt, 0},
          Case{1, std::nullopt, 2}, Case{2, u"/*", 6}, Case{3, u"ab*/c/", 20}}) {
        set(u" \t\r\n/* x */ \n ab*/c/ d");
        EXPECT_EQ(content(scanner.ReadToken(mode, false)), token) << mode;
        EXPECT_EQ(scanner.position, 0u) << "looking ahead leaves the cursor, also across a comment";
        EXPECT_EQ(content(scanner.ReadToken(mode, true)), token) << mode;
        EXPECT_EQ(scanner.position, position) << mode;
    }
}

TEST_F(KW_Text_ScannerTest, PassesOverWhiteSpaceAndBlockComments) {
    using Case = std::tuple<Content, unsigned long, unsigned long>;
    for (const auto& [held, first, cursorWithoutStore] :
         {Case{u"a", 0, 0}, Case{u" \t\r\nx", 4, 0}, Case{u"/**/x", 4, 4}, Case{u"/*/x", 4, 4},
          Case{u" /* a */ /* b */ x", 17, 16}, Case{u"/* never closed", 15, 15}, Case{u"  /*", 4, 0},
          Case{u" / *", 1, 0}, Case{u" //x", 1, 0}, Case{u"  /", 2, 0}, Case{u"   ", 3, 0},
          Case{u"\u00A0", 0, 0}}) {
        for (const bool store : {false, true}) {
            set(held);
            EXPECT_EQ(scanner.SkipSpacesTabsEOLsComments(store), first) << testing::PrintToString(held);
            EXPECT_EQ(scanner.position, store ? first : cursorWithoutStore);
        }
    }
}

TEST_F(KW_Text_ScannerTest, ReadsIntegers) {
    using Case = std::tuple<Content, short, bool, long, unsigned long>;
    constexpr long kBefore = 7;
    for (const auto& [held, mode, isInteger, expected, position] :
         {Case{u"  /* x */ 42 rest", 3, true, 42, 12}, Case{u"  /* x */ 42 rest", 1, false, kBefore, 2},
          Case{u"12ab", 0, false, kBefore, 0}, Case{u" \n-5\n", 2, true, -5, 4}, Case{u" 5", 0, true, 0, 0},
          Case{u"- 5", 0, true, 0, 1}, Case{u"--5", 0, false, kBefore, 0}, Case{u"+5", 0, false, kBefore, 0},
          Case{u"   ", 2, true, 0, 3}, Case{u"18446744073709551617", 0, true, 1, 20},
          Case{u"1\u0661", 0, false, kBefore, 0}, Case{std::u16string(u"12\0", 3), 0, false, kBefore, 0}}) {
        set(held);
        for (const bool advance : {false, true}) {
            long value = kBefore;
            EXPECT_EQ(scanner.ReadLong(value, mode, advance), isInteger) << testing::PrintToString(held);
            EXPECT_EQ(value, expected) << testing::PrintToString(held);
            EXPECT_EQ(scanner.position, advance ? position : 0u) << testing::PrintToString(held);
        }
    }
}

TEST_F(KW_Text_ScannerTest, ReadsQuotedStrings) {
    using Case = std::tuple<Content, short, bool, Content, unsigned long>;
    for (const auto& [held, mode, found, value, position] :
         {Case{u"\"a\\\"b\" c", 0, true, u"a\\\"b", 6}, Case{u"\"\\\"\"", 0, true, u"\\\"", 4},
          Case{u"\"\"x", 0, true, std::nullopt, 2}, Case{u"\"a\\\\\"b\"", 0, true, u"a\\\\\"b", 7},
          Case{u" /**/ \"a b\"", 3, true, u"a b", 11}, Case{u" \"a\"", 0, false, u"kept", 0},
          Case{u" x\"a\"", 1, false, u"kept", 1}, Case{u"  \"never closed", 1, false, u"kept", 2},
          Case{u"\"closed\\\"", 0, false, u"kept", 0}, Case{u"\"", 0, false, u"kept", 0},
          Case{u" /**/ x", 3, false, u"kept", 6}}) {
        set(held);
        for (const bool advance : {false, true}) {
            KW_String out = text(u"kept");
            EXPECT_EQ(scanner.ReadDoubleQuotedString(out, mode, advance), found);
            EXPECT_EQ(content(out), value) << testing::PrintToString(held);
            EXPECT_EQ(scanner.position, advance ? position : 0u) << testing::PrintToString(held);
        }
    }
}

TEST_F(KW_Text_ScannerTest, FindsText) {
    using Case = std::tuple<const char*, unsigned long, long, unsigned long>;
    for (const auto& [what, start, found, position] :
         {Case{"cd", 0, 2, 4}, Case{"x", 0, -1, 4}, Case{"cd", 3, -1, 4}, Case{"abcde", 0, -1, 4},
          Case{"cd", 4, -1, 1}, Case{"cd", ~0UL, -1, 1}, Case{"", 0, -1, 1}, Case{nullptr, 0, -1, 1}}) {
        set(u"abcd", 1);
        for (const bool advance : {false, true}) {
            EXPECT_EQ(scanner.FindText(what, start, advance, kSystem), found);
            EXPECT_EQ(scanner.position, advance ? position : 1u);
        }
    }
    set(u"na\u00EFve \u4E2D", 6);
    EXPECT_EQ(scanner.FindText("\xC3\xAF", 0, true, kUTF8), 2);
    EXPECT_EQ(scanner.position, 3u) << "a start before the cursor may move it back";
    EXPECT_EQ(scanner.FindText("\x4E\x2D\0", 0, true, kUTF16BE), 6);
    EXPECT_EQ(scanner.FindText("\xFF", 0, true, kUTF8), -1);
}

}  // namespace

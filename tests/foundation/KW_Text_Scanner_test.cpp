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
        for (const short mode : {short{0}, short{1}, short{2}, short{3}, short{-1}}) {
            EXPECT_EQ(content(scanner.ReadToken(mode, true)), std::nullopt);
            EXPECT_FALSE(scanner.ReadDoubleQuotedString(out, mode, true));
        }
        EXPECT_EQ(content(scanner.ReadLine(true, true)), std::nullopt);
        EXPECT_TRUE(scanner.ReadLong(value, 3, true));
        EXPECT_EQ(value, 0);
        EXPECT_EQ(content(out), u"kept");
        EXPECT_EQ(scanner.SkipSpacesTabsEOLsComments(true), 0u);
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
    for (const Case& c : std::vector<Case>{
             {u"ab\r\ncd", false, {u"ab", u"cd", std::nullopt}, {4, 6, 6}},
             {u"ab\r\ncd", true, {u"ab\r\n", u"cd", std::nullopt}, {4, 6, 6}},
             {u"a\rb\n\nc", false, {u"a", u"b", std::nullopt, u"c"}, {2, 4, 5, 6}},
             {u"\r\r\n", true, {u"\r", u"\r\n", std::nullopt}, {1, 3, 3}},
             {std::u16string(u"ab\0cd\n", 6), true, {u"ab", std::nullopt}, {2, 2}},
         }) {
        set(c.text);
        for (std::size_t i = 0; i < c.lines.size(); ++i) {
            const unsigned long before = scanner.position;
            EXPECT_EQ(content(scanner.ReadLine(c.keepEOL, false)), c.lines[i]);
            EXPECT_EQ(scanner.position, before);
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
    for (const Case& c : std::vector<Case>{
             {0, std::nullopt, 0},
             {4, std::nullopt, 0},
             {-1, std::nullopt, 0},
             {1, std::nullopt, 2},
             {2, u"/*", 6},
             {3, u"ab*/c/", 18},
         }) {
        set(u" \t\r\n/* x */ \n ab*/c/ d");
        scanner.position = 0;
        EXPECT_EQ(content(scanner.ReadToken(c.mode, false)), c.token) << c.mode;
        EXPECT_EQ(scanner.position, 0u) << "looking ahead leaves the cursor, also across a comment";
        EXPECT_EQ(content(scanner.ReadToken(c.mode, true)), c.token) << c.mode;
        EXPECT_EQ(scanner.position, c.mode == 3 ? 20u : c.position) << c.mode;
    }
}

TEST_F(KW_Text_ScannerTest, PassesOverWhiteSpaceAndBlockComments) {
    struct Case {
        Content text;
        unsigned long first;
        unsigned long cursorWithoutStore;
    };
    for (const Case& c : std::vector<Case>{
             {u"a", 0, 0},
             {u" \t\r\nx", 4, 0},
             {u"/**/x", 4, 4},
             {u"/*/x", 4, 4},
             {u" /* a */ /* b */ x", 17, 16},
             {u"/* never closed", 15, 15},
             {u"  /*", 4, 0},
             {u" / *", 1, 0},
             {u" //x", 1, 0},
             {u"  /", 2, 0},
             {u"   ", 3, 0},
             {u"\u00A0", 0, 0},
         }) {
        set(c.text);
        EXPECT_EQ(scanner.SkipSpacesTabsEOLsComments(false), c.first) << testing::PrintToString(c.text);
        EXPECT_EQ(scanner.position, c.cursorWithoutStore) << testing::PrintToString(c.text);
        scanner.position = 0;
        EXPECT_EQ(scanner.SkipSpacesTabsEOLsComments(true), c.first);
        EXPECT_EQ(scanner.position, c.first);
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
    for (const Case& c : std::vector<Case>{
             {u"  /* x */ 42 rest", 3, true, 42, 12},
             {u"  /* x */ 42 rest", 1, false, kBefore, 2},
             {u"12ab", 0, false, kBefore, 0},
             {u" \n-5\n", 2, true, -5, 4},
             {u" 5", 0, true, 0, 0},
             {u"- 5", 0, true, 0, 1},
             {u"--5", 0, false, kBefore, 0},
             {u"+5", 0, false, kBefore, 0},
             {u"   ", 2, true, 0, 3},
             {u"18446744073709551617", 0, true, 1, 20},
             {u"1\u0661", 0, false, kBefore, 0},
             {std::u16string(u"12\0", 3), 0, false, kBefore, 0},
         }) {
        set(c.text);
        long value = kBefore;
        EXPECT_EQ(scanner.ReadLong(value, c.mode, false), c.isInteger);
        EXPECT_EQ(value, c.value);
        EXPECT_EQ(scanner.position, 0u);
        value = kBefore;
        EXPECT_EQ(scanner.ReadLong(value, c.mode, true), c.isInteger) << testing::PrintToString(c.text);
        EXPECT_EQ(value, c.value) << testing::PrintToString(c.text);
        EXPECT_EQ(scanner.position, c.position) << testing::PrintToString(c.text);
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
    for (const Case& c : std::vector<Case>{
             {u"\"a\\\"b\" c", 0, true, u"a\\\"b", 6},
             {u"\"\"x", 0, true, std::nullopt, 2},
             {u"\"a\\\\\"b\"", 0, true, u"a\\\\\"b", 7},
             {u" /**/ \"a b\"", 3, true, u"a b", 11},
             {u" \"a\"", 0, false, u"kept", 0},
             {u" x\"a\"", 1, false, u"kept", 1},
             {u"  \"never closed", 1, false, u"kept", 2},
             {u"\"closed\\\"", 0, false, u"kept", 0},
             {u"\"", 0, false, u"kept", 0},
             {u" /**/ x", 3, false, u"kept", 6},
         }) {
        set(c.text);
        KW_String out = text(u"kept");
        EXPECT_EQ(scanner.ReadDoubleQuotedString(out, c.mode, false), c.found)
            << testing::PrintToString(c.text);
        EXPECT_EQ(content(out), c.string);
        EXPECT_EQ(scanner.position, 0u);
        out = text(u"kept");
        EXPECT_EQ(scanner.ReadDoubleQuotedString(out, c.mode, true), c.found);
        EXPECT_EQ(content(out), c.string);
        EXPECT_EQ(scanner.position, c.position) << testing::PrintToString(c.text);
    }
}

TEST_F(KW_Text_ScannerTest, FindsText) {
    struct Case {
        const char* what;
        unsigned long start;
        long found;
        unsigned long position;
    };
    for (const Case& c : std::vector<Case>{
             {"cd", 0, 2, 4},
             {"x", 0, -1, 4},
             {"cd", 3, -1, 4},
             {"abcde", 0, -1, 4},
             {"cd", 4, -1, 1},
             {"cd", ~0UL, -1, 1},
             {"", 0, -1, 1},
             {nullptr, 0, -1, 1},
         }) {
        set(u"abcd", 1);
        EXPECT_EQ(scanner.FindText(c.what, c.start, false, kSystem), c.found);
        EXPECT_EQ(scanner.position, 1u);
        EXPECT_EQ(scanner.FindText(c.what, c.start, true, kSystem), c.found);
        EXPECT_EQ(scanner.position, c.position);
    }
    set(u"na\u00EFve \u4E2D", 6);
    EXPECT_EQ(scanner.FindText("\xC3\xAF", 0, true, kUTF8), 2);
    EXPECT_EQ(scanner.position, 3u) << "a start before the cursor may move it back";
    EXPECT_EQ(scanner.FindText("\x4E\x2D\0", 0, true, kUTF16BE), 6);
    EXPECT_EQ(scanner.FindText("\xFF", 0, true, kUTF8), -1);
}

TEST_F(KW_Text_ScannerTest, TellsWhatAnIntegerIs) {
    for (const char16_t* integer : {u"", u"-", u"0", u"-12", u"007"})
        EXPECT_TRUE(KW_Text_Scanner::IsInteger(text(integer)));
    for (const char16_t* other : {u"--1", u"1-", u"+1", u"1.5", u" 1", u"a", u"\uFF11"})
        EXPECT_FALSE(KW_Text_Scanner::IsInteger(text(other)));
    EXPECT_TRUE(KW_Text_Scanner::IsInteger(KW_String()));
}

TEST_F(KW_Text_ScannerTest, AgreesWithPlainModelsOnRandomText) {
    RandomText random(5);
    for (int round = 0; round < 1500; ++round) {
        const std::u16string units = random.over(u"ab \t\r\n", 60);
        set(units);
        std::size_t at = 0;
        while (at < units.size()) {
            ASSERT_EQ(scanner.position, at);
            if (random.below(2) == 0) {
                std::size_t end = units.find_first_of(u"\r\n", at);
                std::size_t next = end == std::u16string::npos ? units.size() : end + 1;
                if (end != std::u16string::npos && units.compare(end, 2, u"\r\n") == 0) ++next;
                const std::u16string line = units.substr(at, next - at);
                EXPECT_EQ(content(scanner.ReadLine(true, true)).value_or(u""), line);
                at = next;
            } else {
                const auto mode = static_cast<short>(1 + random.below(3));
                const std::size_t start =
                    std::min(units.find_first_not_of(mode == 1 ? u" \t" : u" \t\r\n", at), units.size());
                const std::size_t end = std::min(units.find_first_of(u" \t\r\n", start), units.size());
                EXPECT_EQ(content(scanner.ReadToken(mode, true)).value_or(u""),
                          units.substr(start, end - start));
                at = end;
            }
        }
        const std::u16string what = random.over(u"ab ", 3);
        const std::string narrow(what.begin(), what.end());
        const std::size_t start = random.below(units.size() + 1);
        const std::size_t found =
            start < units.size() && !what.empty() ? units.find(what, start) : std::u16string::npos;
        EXPECT_EQ(scanner.FindText(narrow.c_str(), start, false, kSystem),
                  found == std::u16string::npos ? -1 : static_cast<long>(found));
    }
}

}  // namespace

#include "tests/foundation/TestText.h"

#include <cctype>

namespace {

TEST(KW_String_Edit, CutsPartsCountedFromTheEnd) {
    using Case = std::tuple<Content, unsigned int, unsigned int, Content>;
    for (const auto& [held, count, fromEnd, result] :
         {Case{u"hello", 3, 0, u"llo"}, Case{u"hello", 2, 1, u"ll"}, Case{u"hello", 5, 0, u"hello"},
          Case{u"hello", 0, 5, u""}, Case{u"hello", 6, 0, std::nullopt}, Case{u"hello", 0, 6, std::nullopt},
          Case{u"hello", 0xFFFFFFFB, 1, std::nullopt}, Case{std::nullopt, 0, 0, std::nullopt}}) {
        EXPECT_EQ(content(maybe(held).EndSubstring(count, fromEnd)), result) << count << ' ' << fromEnd;
    }
}

TEST(KW_String_Edit, ReplacesBytesAndStrings) {
    EXPECT_EQ(content(text(u"a-b-").Replace('-', '\x8E')), u"a\u00E9b\u00E9");
    EXPECT_EQ(content(KW_String().Replace('-', '+')), std::nullopt);
    EXPECT_EQ(content(text(u"a.b").Replace(".", "\x8E")), u"a\u00E9b");
    EXPECT_EQ(content(text(u"abc").Replace(KW_String(), text(u"x"))), std::nullopt);
    EXPECT_EQ(content(text(u"abc").Replace("a", nullptr)), std::nullopt);
    EXPECT_EQ(content(KW_String().Replace(text(u"a"), text(u"x"))), std::nullopt);
    const KW_String self = text(u"ab");
    EXPECT_EQ(content(self.Replace(self, self + self)), u"abab");
    EXPECT_EQ(content(text({u"a\0a", 3}).Replace("a", "bb")), std::u16string(u"bb\0bb", 5));
}

TEST(KW_String_Edit, ReplacesLikeAPlainModelOnRandomText) {
    RandomText random{std::mt19937(11)};
    for (int round = 0; round < 4000; ++round) {
        const std::u16string units = random.over(u"ab", round % 8 == 0 ? 400 : 30);
        const std::u16string what = random.over(u"ab", 3);
        const std::u16string with = random.over(u"abc", 4);
        std::u16string expected = units;
        for (std::size_t at = 0; !what.empty() && (at = expected.find(what, at)) < expected.size();)
            expected.replace(at, what.size(), with), at += with.size();
        const KW_String result = text(units).Replace(text(what), text(with));
        ASSERT_EQ(content(result), expected);
        EXPECT_EQ(result.capacity, result.length + 1);
    }
}

TEST(KW_String_Edit, ReplacesARangeInPlace) {
    using Case = std::tuple<Content, unsigned int, unsigned int, Content, bool, Content>;
    for (const auto& [held, from, to, with, done, result] :
         {Case{u"hello", 2, 3, u"XYZ", true, u"hXYZlo"}, Case{u"hello", 4, 99, u"", true, u"hel"},
          Case{u"hello", 4, 0xFFFFFFFF, std::nullopt, true, u"hel"}, Case{u"hello", 1, 5, u"", true, u""},
          Case{u"hello", 5, 5, u"aaaa", true, u"hellaaaa"}, Case{u"hello", 1, 1, u"H", true, u"Hello"},
          Case{u"hello", 0, 3, u"X", false, u"hello"}, Case{u"hello", 3, 2, u"X", false, u"hello"},
          Case{u"hello", 6, 6, u"X", false, u"hello"}, Case{u"", 1, 1, u"X", false, u""},
          Case{std::nullopt, 1, 1, u"X", false, std::nullopt}}) {
        KW_String string = maybe(held);
        const unsigned int capacity = string.capacity;
        EXPECT_EQ(string.Replace(from, to, maybe(with)), done);
        EXPECT_EQ(content(string), result);
        EXPECT_EQ(string.capacity, std::max(capacity, string.data == nullptr ? 0 : string.length + 1));
        expectSound(string);
    }
    KW_String self = text(u"hello");
    EXPECT_TRUE(self.Replace(2, 4, self));
    EXPECT_EQ(content(self), u"hhelloo");
}

TEST(KW_String_Edit, MapsTheCaseOfEveryUnitAsTheCLibraryDoes) {
    for (int unit = 0; unit < 0x10000; ++unit) {
        const auto value = static_cast<unsigned short>(unit);
        const KW_String string(&value, 1u);
        ASSERT_EQ(string.ToLowerCase().UCharAt(0), unit < 256 ? std::tolower(unit) : unit);
        ASSERT_EQ(string.ToUpperCase().UCharAt(0), unit < 256 ? std::toupper(unit) : unit);
    }
    EXPECT_EQ(content(KW_String().ToUpperCase()), std::nullopt);
}

TEST(KW_String_Edit, Trims) {
    using Case = std::tuple<Content, bool, bool, bool, Content>;
    for (const auto& [held, left, right, tabs, result] :
         {Case{u"\t x ", true, true, false, u"\t x"}, Case{u"\t x \t", true, true, true, u"x"},
          Case{u"  x  ", true, false, false, u"x  "}, Case{u"  x  ", false, true, false, u"  x"},
          Case{u" \t ", true, true, true, u""}, Case{u"   ", false, true, false, u""},
          Case{u"\nx\n", true, true, true, u"\nx\n"}, Case{std::nullopt, true, true, true, std::nullopt}}) {
        EXPECT_EQ(content(maybe(held).THIS_Trim(left, right, tabs)), result);
    }
}

TEST(KW_String_Edit, Repeats) {
    EXPECT_EQ(content(KW_String::RepeatedSequence(text(u"ab"), 3)), u"ababab");
    EXPECT_EQ(KW_String::RepeatedSequence(text(u"ab"), 3).capacity, 7u);
    EXPECT_EQ(content(KW_String::RepeatedSequence(text(u"ab"), 0)), u"");
    EXPECT_EQ(content(KW_String::RepeatedSequence(text(u"ab"), -1)), std::nullopt);
    EXPECT_EQ(content(KW_String::RepeatedSequence(text(u""), std::numeric_limits<long>::max())), u"");
    EXPECT_EQ(content(KW_String::RepeatedSequence(KW_String(), 0)), std::nullopt);
}

TEST(KW_String_Edit, CatenatesUpToThreeLimitedTexts) {
    const ExactBytes unterminated("xyz");
    KW_String string = text(u"before");
    string.SetCat("abc", 2, nullptr, 9, "d\x8E", 0);
    EXPECT_EQ(content(string), u"abd\u00E9");
    string.SetCat("abc", 99, unterminated.data, 3, "", 0);
    EXPECT_EQ(content(string), u"abcxyz");
    string.SetCat("", 0, "", 5, nullptr, 0);
    EXPECT_EQ(content(string), std::nullopt);
}

TEST(KW_String_Edit, ReadsAndWritesSingleUnits) {
    KW_String string = text(u"a\u00E9\u4E2D");
    for (const unsigned int at : {0u, 1u, 2u, 3u})
        EXPECT_EQ(string.CharAt(at), "a\x8E?"[at]);
    EXPECT_EQ(string.UCharAt(2), 0x4E2D);
    EXPECT_EQ(KW_String().UCharAt(0), 0);
    string.SetCharAt(0, '\x8E');
    string.SetUCharAt(2, 0x65E5);
    string.SetCharAt(3, 'x');
    string.SetUCharAt(0xFFFFFFFF, 'x');
    EXPECT_EQ(content(string), u"\u00E9\u00E9\u65E5");
}

}  // namespace

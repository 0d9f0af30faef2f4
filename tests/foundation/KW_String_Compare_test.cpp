#include "tests/foundation/TestText.h"

namespace {

TEST(KW_String_Compare, OrdersByUnsignedUnitsWithNullFirst) {
    using Case = std::tuple<Content, Content, int>;
    for (const auto& [first, second, order] :
         {Case{std::nullopt, std::nullopt, 0}, Case{std::nullopt, u"", -1}, Case{u"", std::nullopt, 1},
          Case{u"", u"", 0}, Case{u"abc", u"abd", -1}, Case{u"abc", u"ab", 1}, Case{u"ab", u"abc", -1},
          Case{u"\u8000", u"\u7FFF", 1}, Case{u"A", u"a", -1}}) {
        const KW_String a = maybe(first);
        const KW_String b = maybe(second);
        EXPECT_EQ(KW_String::Compare(a, 0, b, 0, 0), order);
        EXPECT_EQ(a < b, order < 0);
        EXPECT_EQ(a <= b, order <= 0);
        EXPECT_EQ(a > b, order > 0);
        EXPECT_EQ(a >= b, order >= 0);
        EXPECT_EQ(a == b, order == 0);
        EXPECT_EQ(a != b, order != 0);
    }
}

TEST(KW_String_Compare, ComparesPartsFromTheirStartsUpToAZeroUnitInBoth) {
    using Case = std::tuple<unsigned int, unsigned int, unsigned int, int>;
    for (const auto& [start, otherStart, count, order] :
         {Case{1, 1, 4, 0}, Case{1, 1, 5, -1}, Case{1, 1, 0, -1}, Case{5, 6, 0, 0}, Case{5, 5, 0, -1},
          Case{99, 0xFFFFFFFF, 7, 0}})
        EXPECT_EQ(KW_String::Compare(text(u"hello"), start, text(u"yellow"), otherStart, count), order);
    EXPECT_EQ(KW_String::Compare(text({u"a\0b", 3}), 0, text({u"a\0c", 3}), 0, 0), 0);
    EXPECT_EQ(KW_String::Compare(text({u"a\0b", 3}), 0, text(u"a"), 0, 9), 0);
}

TEST(KW_String_Compare, IgnoresTheCaseOfLettersOnly) {
    EXPECT_EQ(KW_String::CompareIgnoreCase(text(u"HELLO"), 1, text(u"hello"), 1, 0), 0);
    EXPECT_EQ(KW_String::CompareIgnoreCase(text(u"_"), 0, text(u"A"), 0, 0), -1)
        << "'_' is before 'a', behind 'A'";
    EXPECT_EQ(KW_String::CompareIgnoreCase(text(u"\u0141"), 0, text(u"A"), 0, 0), 1)
        << "41 is only its low byte";
}

TEST(KW_String_Compare, ComparesCharTextBySignedBytes) {
    using Case = std::tuple<const char*, const char*, int, int>;
    for (const auto& [a, b, exact, ignoringCase] :
         {Case{nullptr, "", -10, -10}, Case{"", nullptr, -10, -10}, Case{"", "", 0, 0},
          Case{"abc", "abd", -1, -1}, Case{"ab", "abc", -1, -1}, Case{"ABC", "abc", -1, 0},
          Case{"\x80", "a", -1, -1}, Case{"\x80", "\xFF", -1, -1}, Case{"\xFF", "", -1, -1}}) {
        EXPECT_EQ(KW_String::Compare(a, b), exact);
        EXPECT_EQ(KW_String::CompareIgnoreCase(a, b), ignoringCase);
        EXPECT_EQ(KW_String::Equals(a, b), exact == 0);
        EXPECT_EQ(KW_String::EqualsIgnoreCase(a, b), ignoringCase == 0);
    }
}

TEST(KW_String_Compare, TakesACountOfZeroAsAllOrAsNothing) {
    using Case = std::tuple<const char*, const char*, unsigned int, bool, bool>;
    for (const auto& [a, b, count, equal, equalIgnoringCase] :
         {Case{"abc", "abd", 2, true, true}, Case{"abc", "abd", 3, false, false},
          Case{"abc", "ABd", 2, false, true}, Case{"abc", "abc", 99, true, true},
          Case{"abc", "abcd", 99, false, false}, Case{"abc", "abc", 0, true, false},
          Case{"abc", "abd", 0, false, false}, Case{nullptr, "abc", 2, false, false}}) {
        EXPECT_EQ(KW_String::Equals(a, b, count), equal) << count;
        EXPECT_EQ(KW_String::EqualsIgnoreCase(a, b, count), equalIgnoringCase) << count;
    }
}

}  // namespace

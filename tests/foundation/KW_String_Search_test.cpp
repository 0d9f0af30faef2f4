#include "tests/foundation/TestText.h"

namespace {

TEST(KW_String_Search, FindsNothingInOrOfNullAndEmptyAndBehindTheEnd) {
    for (const Content& held : {Content(), Content(u""), Content(u"hello")}) {
        for (const Content& sought : {Content(), Content(u""), Content(held == u"hello" ? u"zz" : u"o")}) {
            const KW_String string = maybe(held);
            const KW_String what = maybe(sought);
            for (const unsigned int start : {0u, 5u, 0x80000000u, 0xFFFFFFFFu}) {
                EXPECT_EQ(string.IndexOf(what, start), -1);
                EXPECT_EQ(string.IndexOfIgnoreCase(what, start), -1);
                EXPECT_EQ(string.LastIndexOf(what, start), -1);
                EXPECT_FALSE(string.StartsWith(what, start));
                EXPECT_EQ(string.IndexOf('z', start), -1);
                EXPECT_EQ(string.LastIndexOf('z', start), -1);
            }
            EXPECT_EQ(string.LastIndexOf(what), -1);
            EXPECT_EQ(string.LastIndexOf('z'), -1);
            EXPECT_FALSE(string.EndsWith(what));
        }
    }
}

TEST(KW_String_Search, IgnoresTheCaseOfBothSides) {
    EXPECT_EQ(text(u"say HELLO").IndexOfIgnoreCase(text(u"hElL"), 1), 4);
    EXPECT_EQ(text(u"say hello").IndexOfIgnoreCase(text(u"HELLO"), 5), -1);
    EXPECT_EQ(text(u"\u0161a").IndexOfIgnoreCase(text(u"A"), 0), 1);

    // No more of the text is looked at than that: otherwise this takes minutes.
    const KW_String all = KW_String::RepeatedSequence(text(u"A"), 100000);
    unsigned int matches = 0;
    for (int at = 0; (at = all.IndexOfIgnoreCase(text(u"a"), static_cast<unsigned int>(at))) >= 0; ++at)
        ++matches;
    EXPECT_EQ(matches, all.length);
}

TEST(KW_String_Search, FindsAByteOfTheSystemEncodingButNotZeroNorForwardBehindAZeroUnit) {
    const std::u16string accents = u"\u00E9t\u00E9 \u2022";
    const std::u16string zero(u"a\0b", 3);
    using Case = std::tuple<std::u16string, char, unsigned int, int, int>;
    for (const auto& [held, byte, start, first, last] :
         {Case{accents, '\x8E', 1, 2, 0}, Case{accents, '\x8E', 4, -1, 2}, Case{accents, '\xA5', 0, 4, -1},
          Case{zero, '\0', 0, -1, -1}, Case{zero, '\0', 2, -1, -1}, Case{zero, 'b', 0, -1, -1},
          Case{zero, 'b', 2, 2, 2}}) {
        EXPECT_EQ(text(held).IndexOf(byte, start), first);
        EXPECT_EQ(text(held).LastIndexOf(byte, start), last);
    }
    EXPECT_EQ(text(zero).LastIndexOf('\0'), -1);
    EXPECT_EQ(text(zero).IndexOf(text(u"b"), 0), 2) << "a search for a string goes by the length";
}

TEST(KW_String_Search, AgreesWithAPlainSearchOnRandomText) {
    RandomText random{std::mt19937(7)};
    const auto asInt = [](std::size_t at) { return at == std::u16string::npos ? -1 : static_cast<int>(at); };
    for (int round = 0; round < 4000; ++round) {
        const std::size_t longest = round % 4 == 0 ? 300 : 40;
        const std::u16string units = random.over(round % 2 == 0 ? u"ab" : u"abcdefghijklmnop", longest);
        const std::u16string sought = random.over(round % 2 == 0 ? u"ab" : u"abcdefghijklmnop", 4);
        const auto start = static_cast<unsigned int>(random.below(units.size() + 2));
        const KW_String string = text(units);
        const KW_String what = text(sought);
        const bool possible = !sought.empty() && start < units.size();
        EXPECT_EQ(string.IndexOf(what, start), possible ? asInt(units.find(sought, start)) : -1);
        EXPECT_EQ(string.IndexOfIgnoreCase(what.ToUpperCase(), start), string.IndexOf(what, start));
        EXPECT_EQ(string.LastIndexOf(what, start), possible ? asInt(units.rfind(sought, start)) : -1);
        EXPECT_EQ(string.LastIndexOf(what), sought.empty() ? -1 : asInt(units.rfind(sought)));
        EXPECT_EQ(string.IndexOf('a', start), start < units.size() ? asInt(units.find(u'a', start)) : -1);
        EXPECT_EQ(string.LastIndexOf('a', start),
                  start < units.size() ? asInt(units.rfind(u'a', start)) : -1);
        EXPECT_EQ(string.StartsWith(what, start),
                  possible && units.compare(start, sought.size(), sought) == 0);
        EXPECT_EQ(string.EndsWith(what), !sought.empty() && units.ends_with(sought));
        EXPECT_EQ(string.LastIndexOf('a'), asInt(units.rfind(u'a')));
    }
}

}  // namespace

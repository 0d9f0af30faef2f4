#include "tests/foundation/TestText.h"

namespace {

using Pieces = std::vector<Content>;

Pieces pieces(const Content& held, auto split) {
    KW_List<KW_String> list;
    list.AddData(text(u"before"), -1);
    split(maybe(held), list);
    return contents(list);
}

Pieces split(const Content& held, char separator) {
    return pieces(held, [=](const KW_String& text, auto& list) { text.Split(list, separator); });
}

Pieces splitLines(const Content& held, bool removeEOL) {
    return pieces(held, [=](const KW_String& text, auto& list) { text.SplitLines(list, removeEOL, true); });
}

TEST(KW_String_Split, GivesOnePieceMoreThanThereAreSeparators) {
    EXPECT_EQ(split(u"a,,b,", ','), (Pieces{u"a", std::nullopt, u"b", std::nullopt}));
    EXPECT_EQ(split(u"", ','), (Pieces{std::nullopt}));
    EXPECT_EQ(split(std::nullopt, ','), (Pieces{std::nullopt}));
    EXPECT_EQ(split(u"a\u00E9b", '\x8E'), (Pieces{u"a", u"b"}));
    EXPECT_EQ(split(std::u16string(u"a\0b", 3), '\0'), (Pieces{u"a", u"b"}));
}

TEST(KW_String_Split, GivesLinesWithOrWithoutTheirEnds) {
    using Case = std::tuple<Content, Pieces, Pieces>;
    for (const auto& [held, without, with] :
         {Case{u"a\r\nb", {u"a", u"b"}, {u"a\r\n", u"b"}},
          Case{u"a\nb\n", {u"a", u"b", std::nullopt}, {u"a\n", u"b\n", std::nullopt}},
          Case{u"a\rb\r\r\nc", {u"a", u"b", std::nullopt, u"c"}, {u"a\r", u"b\r", u"\r\n", u"c"}},
          Case{u"\n\r", {std::nullopt, std::nullopt, std::nullopt}, {u"\n", u"\r", std::nullopt}},
          Case{u"a\r", {u"a", std::nullopt}, {u"a\r", std::nullopt}},
          Case{u"", {std::nullopt}, {std::nullopt}}, Case{std::nullopt, {std::nullopt}, {std::nullopt}}}) {
        EXPECT_EQ(splitLines(held, true), without);
        EXPECT_EQ(splitLines(held, false), with);
    }
}

TEST(KW_String_Split, AppendsLinesToAListThatIsNotReset) {
    KW_List<KW_String> list;
    text(u"a\nb").SplitLines(list, true, false);
    KW_String().SplitLines(list, true, false);
    text(u"c").SplitLines(list, true, false);
    EXPECT_EQ(contents(list), (Pieces{u"a", u"b", std::nullopt, u"c"}));
}

TEST(KW_String_Split, TakesARunOfBlanksAndTabsAsOneSeparator) {
    using Case = std::pair<Content, Pieces>;
    for (const auto& [held, between] :
         {Case{u" a  b ", {std::nullopt, u"a", u"b", std::nullopt}}, Case{u"a \t\t b\nc", {u"a", u"b\nc"}},
          Case{u"  ", {std::nullopt, std::nullopt}}, Case{u"", {std::nullopt}},
          Case{std::nullopt, {std::nullopt}}})
        EXPECT_EQ(pieces(held, [](const KW_String& text, auto& list) { text.SplitBySpaces(list); }), between);
}

TEST(KW_String_Split, SplitsAnElementOfTheListThatItFills) {
    KW_List<KW_String> list;
    text(u"a b,c d").Split(list, ',');
    list[1].SplitBySpaces(list);
    EXPECT_EQ(contents(list), (Pieces{u"c", u"d"}));
    list.AddData(text(u"x\ny"), -1);
    list[2].SplitLines(list, true, false);
    EXPECT_EQ(contents(list), (Pieces{u"c", u"d", u"x\ny", u"x", u"y"}));
    list[2].Split(list, '\n');
    EXPECT_EQ(contents(list), (Pieces{u"x", u"y"}));
}

// Each piece and its end. A piece without units is null.
std::u16string joined(const Pieces& pieces, std::u16string_view end) {
    std::u16string all;
    for (const Content& piece : pieces) {
        EXPECT_NE(piece, u"");
        all.append(piece.value_or(u"")).append(end);
    }
    return all;
}

TEST(KW_String_Split, IsUndoneByJoining) {
    RandomText random{std::mt19937(3)};
    for (int round = 0; round < 2000; ++round) {
        const std::u16string units = random.over(u"a,\n\rb", round % 8 == 0 ? 300 : 30);
        EXPECT_EQ(joined(split(units, ','), u","), units + u",");
        EXPECT_EQ(joined(splitLines(units, false), u""), units);
    }
}

}  // namespace

#include "platform/UniString.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace {

GS::UniString uniString(std::u16string_view units) {
    const std::vector<unsigned short> copy(units.begin(), units.end());
    return GS::UniString(copy.data(), static_cast<unsigned int>(copy.size()));
}

std::u16string units(const GS::UniString& string) {
    EXPECT_EQ(string.ToUStr()[string.GetLength()], 0) << "the terminator";
    return std::u16string(string.ToUStr(), string.ToUStr() + string.GetLength());
}

TEST(UniString, IsEmptyWithoutUnits) {
    const unsigned short terminator[] = {0};
    for (const GS::UniString& empty : {GS::UniString(), GS::UniString(nullptr), GS::UniString(nullptr, 3),
                                       GS::UniString(terminator), GS::UniString(terminator, 0)}) {
        EXPECT_TRUE(empty.IsEmpty());
        EXPECT_EQ(units(empty), u"");
        EXPECT_EQ(empty, GS::UniString());
    }
}

TEST(UniString, CopiesUpToTheTerminatorOrByCount) {
    const unsigned short source[] = {'a', 'b', 0, 'c', 0};
    EXPECT_EQ(units(GS::UniString(source)), u"ab");
    EXPECT_EQ(units(GS::UniString(source, 4)), std::u16string(u"ab\0c", 4));
    EXPECT_NE(GS::UniString(source), GS::UniString(source, 1));
}

TEST(UniString, ConvertsUtf8AndMarksWhatIsMalformed) {
    const std::tuple<std::string, std::u16string, std::string> cases[] = {
        {"", u"", ""},
        {"a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80", u"a\u00E9\u4E2D\U0001F600",
         "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80"},
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3), std::string("a\0b", 3)},
        {"a\xFFz", u"a\uFFFDz", "a\xEF\xBF\xBDz"},
        {"\xE4\xB8", u"\uFFFD", "\xEF\xBF\xBD"},
    };
    for (const auto& [utf8, utf16, back] : cases) {
        EXPECT_EQ(units(GS::UniStringFromUtf8(utf8)), utf16);
        EXPECT_EQ(GS::UniStringToUtf8(uniString(utf16)), back);
    }
    EXPECT_EQ(GS::UniStringToUtf8(uniString(u"\xD83Dx")), "\xEF\xBF\xBDx") << "a surrogate alone";
}

}  // namespace

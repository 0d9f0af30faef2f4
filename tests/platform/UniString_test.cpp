#include "platform/UniString.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

std::u16string units(const GS::UniString& string) {
    EXPECT_EQ(string.ToUStr()[string.GetLength()], 0) << "the terminator";
    return std::u16string(string.ToUStr(), string.ToUStr() + string.GetLength());
}

TEST(UniString, CopiesUpToTheTerminatorOrByCount) {
    const unsigned short source[] = {'a', 'b', 0, 'c', 0};
    EXPECT_EQ(units(GS::UniString(source)), u"ab");
    EXPECT_EQ(units(GS::UniString(source, 4)), std::u16string(u"ab\0c", 4));
    EXPECT_NE(GS::UniString(source), GS::UniString(source, 1));
    for (const GS::UniString& empty : {GS::UniString(), GS::UniString(nullptr), GS::UniString(nullptr, 3),
                                       GS::UniString(source + 2), GS::UniString(source, 0)}) {
        EXPECT_TRUE(empty.IsEmpty());
        EXPECT_EQ(units(empty), u"");
        EXPECT_EQ(empty, GS::UniString());
    }
}

TEST(UniString, MarksWhatIsMalformed) {
    const std::pair<const char*, std::u16string> cases[] = {{"a\xFFz", u"a\uFFFDz"}, {"\xE4\xB8", u"\uFFFD"}};
    for (const auto& [utf8, utf16] : cases)
        EXPECT_EQ(units(GS::UniStringFromUtf8(utf8)), utf16);
    const unsigned short halfAPair[] = {0xD83D, 'x'};
    EXPECT_EQ(GS::UniStringToUtf8(GS::UniString(halfAPair, 2)), "\xEF\xBF\xBDx");
}

}  // namespace

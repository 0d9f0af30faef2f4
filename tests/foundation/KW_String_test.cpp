#include "foundation/KW_String.h"

#include <gtest/gtest.h>

namespace {

TEST(KW_String, TellsTheNullStringFromTheEmptyOne) {
    const KW_String null(nullptr, KW_String::Encoding_System);
    const KW_String empty("", KW_String::Encoding_System);
    EXPECT_EQ(null.data, nullptr);
    ASSERT_NE(empty.data, nullptr);
    EXPECT_EQ(empty.length, 0u);
    EXPECT_EQ(empty.capacity, 1u);
    EXPECT_NE(null, empty);
    EXPECT_LT(null, empty);
}

TEST(KW_String, ConvertsBetweenEncodings) {
    const KW_String cafe("Caf\xE9", KW_String::Encoding_WindowsLatin1);
    ASSERT_EQ(cafe.length, 4u);
    EXPECT_EQ(cafe.UCharAt(3), 0xE9);
    const KW_CString utf8 = cafe.ToCStr(KW_String::Encoding_UTF8);
    ASSERT_EQ(utf8.size, 6u);
    EXPECT_STREQ(utf8.data, "Caf\xC3\xA9");
}

TEST(KW_String, SplitsAndReplaces) {
    KW_List<KW_String> pieces;
    KW_String("a,,b,", KW_String::Encoding_System).Split(pieces, ',');
    ASSERT_EQ(pieces.count, 4);
    EXPECT_EQ(pieces[1].data, nullptr);
    EXPECT_EQ(KW_String("aaa", KW_String::Encoding_System).Replace("aa", "b"),
              KW_String("ba", KW_String::Encoding_System));
}

}  // namespace

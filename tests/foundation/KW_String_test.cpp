#include "tests/foundation/TestText.h"

#include <array>
#include <cstring>
#include <new>

namespace {

TEST(KW_String, IsNullWithoutSourceAndEmptyWithAnEmptyOne) {
    const unsigned short noUnits[] = {0};
    EXPECT_EQ(content(KW_String()), std::nullopt);
    EXPECT_EQ(content(KW_String(static_cast<const char*>(nullptr), kSystem)), std::nullopt);
    EXPECT_EQ(content(KW_String(nullptr, 3, kSystem)), std::nullopt);
    EXPECT_EQ(content(KW_String(static_cast<const unsigned short*>(nullptr))), std::nullopt);
    EXPECT_EQ(content(KW_String(nullptr, 3u)), std::nullopt);
    EXPECT_EQ(content(KW_String(noUnits, 0u)), std::nullopt);
    EXPECT_EQ(content(KW_String(static_cast<KW_String*>(nullptr))), std::nullopt);
    EXPECT_EQ(content(KW_String("", kSystem)), u"");
    EXPECT_EQ(content(KW_String(noUnits)), u"");
    EXPECT_EQ(KW_String("", kSystem).capacity, 1u);
    // Nor has it text when its bytes cannot be decoded.
    EXPECT_EQ(content(KW_String("\xC3", kUTF8)), std::nullopt);
    EXPECT_EQ(content(KW_String("a", kNone)), std::nullopt);
    EXPECT_EQ(content(KW_String("a", kUnsupported)), std::nullopt);
}

TEST(KW_String, TakesACountOfBytesOrAllUpToTheTerminator) {
    const ExactBytes bytes(std::string_view("ab\0cd", 5));
    EXPECT_EQ(content(KW_String(bytes.data(), bytes.size(), kSystem)), std::u16string(u"ab\0cd", 5));
    EXPECT_EQ(content(KW_String(bytes.data(), 0, kSystem)), u"ab");
    EXPECT_EQ(content(KW_String(bytes.data(), kSystem)), u"ab");
}

TEST(KW_String, HasExactlyTheCapacityItNeeds) {
    const unsigned short units[] = {'a', 'b', 'c', 0};
    EXPECT_EQ(KW_String("abc", kSystem).capacity, 4u);
    EXPECT_EQ(KW_String(units, 2u).capacity, 3u);
    EXPECT_EQ(KW_String(units).capacity, 4u);
    KW_String roomy = text(u"abc");
    roomy.SetSize(50, true);
    EXPECT_EQ(KW_String(roomy).capacity, 4u);
    EXPECT_EQ((roomy + roomy).capacity, 7u);
    roomy += "xyz";
    EXPECT_EQ(roomy.capacity, 50u);
    KW_String grown = text(u"abc");
    grown += "xyz";
    EXPECT_EQ(grown.capacity, 7u);
}

TEST(KW_String, CopiesDeeply) {
    const KW_String original = text(u"abc");
    KW_String copy(original);
    copy.SetUCharAt(0, 'x');
    EXPECT_EQ(content(original), u"abc");
    KW_String assigned;
    assigned = original;
    assigned.SetUCharAt(0, 'x');
    EXPECT_EQ(content(original), u"abc");
    EXPECT_EQ(content(KW_String(KW_String())), std::nullopt);
    assigned = KW_String();
    EXPECT_EQ(content(assigned), std::nullopt);
}

TEST(KW_String, KeepsItsBufferWhenItIsAssignedShorterText) {
    KW_String string = text(u"a long text");
    const unsigned short* const buffer = string.data;
    string = text(u"abc");
    EXPECT_EQ(string.data, buffer);
    EXPECT_EQ(string.capacity, 12u);
    string = "xy";
    EXPECT_EQ(string.data, buffer);
    EXPECT_EQ(content(string), u"xy");
    string = static_cast<const char*>(nullptr);
    EXPECT_EQ(content(string), std::nullopt);
}

TEST(KW_String, TakesOverTheBufferOfAPointedToString) {
    KW_String source = text(u"abc");
    const unsigned short* const buffer = source.data;
    const KW_String taker(&source);
    EXPECT_EQ(taker.data, buffer);
    EXPECT_EQ(content(taker), u"abc");
    EXPECT_EQ(content(source), std::nullopt);
    expectSound(source);
}

TEST(KW_String, StaysAsItIsWhenSetFails) {
    KW_String string = text(u"abc");
    EXPECT_FALSE(string.Set("\xFF", 1, kUTF8));
    EXPECT_EQ(content(string), u"abc");
    EXPECT_FALSE(string.Set("abc", 3, kUTF16LE));
    EXPECT_EQ(content(string), u"abc");
    EXPECT_TRUE(string.Set("xyz", 2, kSystem));
    EXPECT_EQ(content(string), u"xy");
    EXPECT_TRUE(string.Set(nullptr, 2, kSystem));
    EXPECT_EQ(content(string), std::nullopt);
}

TEST(KW_String, AllocatesOnlyWhatIsMissing) {
    KW_String string;
    EXPECT_TRUE(string.THIS_Alloc(0, true));
    EXPECT_EQ(content(string), std::nullopt);
    EXPECT_TRUE(string.THIS_Alloc(4, true));
    EXPECT_EQ(content(string), u"");
    EXPECT_EQ(string.capacity, 4u);
    string = "abc";
    EXPECT_TRUE(string.THIS_Alloc(4, false));
    EXPECT_EQ(content(string), u"abc") << "the text stays when there is room already";
    EXPECT_TRUE(string.THIS_Alloc(9, true));
    EXPECT_EQ(content(string), u"abc");
    EXPECT_EQ(string.capacity, 9u);
    EXPECT_TRUE(string.THIS_Alloc(10, false));
    EXPECT_EQ(content(string), u"");
    EXPECT_EQ(string.capacity, 10u);
    expectSound(string);
}

TEST(KW_String, GetsExactlyTheSizeThatIsSet) {
    struct Case {
        Content before;
        unsigned int units;
        bool keep;
        Content after;
    };
    for (const Case& c : std::vector<Case>{
             {u"hello", 3, true, u"he"},
             {u"hello", 1, true, u""},
             {u"hello", 6, true, u"hello"},
             {u"hello", 20, true, u"hello"},
             {u"hello", 20, false, u""},
             {std::nullopt, 4, true, u""},
             {std::nullopt, 4, false, u""},
             {u"hello", 0, true, std::nullopt},
             {std::nullopt, 0, false, std::nullopt},
         }) {
        KW_String string = maybe(c.before);
        string.SetSize(c.units, c.keep);
        EXPECT_EQ(content(string), c.after) << c.units;
        EXPECT_EQ(string.capacity, c.units);
        expectSound(string);
    }
}

TEST(KW_String, CopiesARangeCutAtTheEnd) {
    struct Case {
        Content source;
        unsigned int start;
        unsigned int count;
        Content result;
    };
    for (const Case& c : std::vector<Case>{
             {u"hello", 1, 3, u"ell"},
             {u"hello", 1, 99, u"ello"},
             {u"hello", 2, 0xFFFFFFFF, u"llo"},
             {u"hello", 5, 1, u""},
             {u"hello", 2, 0, u""},
             {u"hello", 6, 1, std::nullopt},
             {u"hello", 0xFFFFFFFF, 1, std::nullopt},
             {std::nullopt, 0, 0, std::nullopt},
         }) {
        KW_String string = text(u"something before");
        string.THIS_CopyString(maybe(c.source), c.start, c.count);
        EXPECT_EQ(content(string), c.result);
        KW_String self = maybe(c.source);
        self.THIS_CopyString(self, c.start, c.count);
        EXPECT_EQ(content(self), c.result) << "of itself";
        expectSound(self);
    }
}

TEST(KW_String, AppendsUnitsAndBytes) {
    KW_String string;
    string.THIS_Append(static_cast<const unsigned short*>(nullptr), 3);
    string.THIS_Append(nullptr, 3, kSystem);
    string.THIS_Append("\xFF", 1, kUTF8);
    EXPECT_EQ(content(string), std::nullopt);
    string.THIS_Append("", 0, kSystem);
    EXPECT_EQ(content(string), u"") << "empty bytes are text";
    string.THIS_Append("a\xE9z", 2, kLatin1);
    string.THIS_Append(text(u"xyz").data, 2);
    EXPECT_EQ(content(string), u"a\u00E9xy");
    EXPECT_EQ(string.capacity, 5u);
}

TEST(KW_String, ConcatenatesAlsoWithItself) {
    for (const bool roomy : {false, true}) {
        const auto make = [roomy](std::u16string_view units) {
            KW_String string = text(units);
            if (roomy) string.SetSize(100, true);
            return string;
        };
        KW_String a = make(u"abc");
        a += a;
        EXPECT_EQ(content(a), u"abcabc");
        KW_String b = make(u"abc");
        b.THIS_SetToConcatenatedString(b, b);
        EXPECT_EQ(content(b), u"abcabc");
        KW_String c = make(u"abc");
        c.THIS_SetToConcatenatedString(text(u"1234567"), c);
        EXPECT_EQ(content(c), u"1234567abc");
        KW_String d = make(u"abc");
        d.THIS_SetToConcatenatedString(d, text(u"1234567"));
        EXPECT_EQ(content(d), u"abc1234567");
        KW_String e = make(u"abc");
        e.THIS_Append(e.data + 1, 2);
        EXPECT_EQ(content(e), u"abcbc");
        KW_String f = make(u"abc");
        f.THIS_SetToConcatenatedString(KW_String(), f);
        EXPECT_EQ(content(f), u"abc");
        for (const KW_String* s : {&a, &b, &c, &d, &e, &f})
            expectSound(*s);
    }
}

TEST(KW_String, ReadsBytesFromItsOwnBuffer) {
    KW_String string = text(u"abc");
    string.THIS_Append(reinterpret_cast<const char*>(string.data), 6, kUTF16LE);
    EXPECT_EQ(content(string), u"abcabc");
    string.Set(reinterpret_cast<const char*>(string.data + 2), 4, kUTF16LE);
    EXPECT_EQ(content(string), u"ca");
    string.SetSize(3, true);
    string.Set(reinterpret_cast<const char*>(string.data), 4, kSystem);
    EXPECT_EQ(content(string), std::u16string(u"c\0a\0", 4)) << "longer than the buffer that is read";
    expectSound(string);
}

TEST(KW_String, ConcatenatesNullOnlyToNull) {
    const KW_String null;
    const KW_String empty = text(u"");
    const char* const noText = nullptr;
    EXPECT_EQ(content(null + null), std::nullopt);
    EXPECT_EQ(content(null + empty), u"");
    EXPECT_EQ(content(null + noText), std::nullopt);
    EXPECT_EQ(content(null + ""), u"");
    EXPECT_EQ(content(noText + null), std::nullopt);
    EXPECT_EQ(content(noText + text(u"b")), u"b");
    EXPECT_EQ(content("a" + text(u"b") + "c"), u"abc");
    KW_String string;
    string += empty;
    string += null;
    string += noText;
    EXPECT_EQ(content(string), std::nullopt);
    string += "";
    EXPECT_EQ(content(string), u"");
}

TEST(KW_String, BecomesNullWithoutFreeingRawStorage) {
    std::array<KW_String, 1> slot;
    std::memset(static_cast<void*>(slot.data()), 0xAA, sizeof slot);
    slot[0].THIS_SetToNullString();
    EXPECT_EQ(content(slot[0]), std::nullopt);
    KW_String string = text(u"abc");
    string.THIS_DeallocSetNullString();
    EXPECT_EQ(content(string), std::nullopt);
    expectSound(string);
}

TEST(KW_String, ReportsATextThatNoStringCanHoldAsExhaustedMemory) {
    EXPECT_THROW(KW_String::RepeatedSequence(text(u"abcd"), 1L << 30), std::bad_alloc);
    EXPECT_THROW(KW_String::RepeatedSequence(text(u"ab"), 0x7FFFFFFFFFFFFFFF), std::bad_alloc);
}

TEST(KW_CString, OwnsItsBytes) {
    KW_CString bytes = text(u"abc").ToCStr(kSystem);
    const KW_CString copy(bytes);
    EXPECT_NE(copy.data, bytes.data);
    text(u"z").ToCStr(bytes, kUTF8);
    EXPECT_STREQ(bytes.data, "z");
    EXPECT_EQ(bytes.size, 2u);
    EXPECT_EQ(bytes.encoding, kUTF8);
    EXPECT_STREQ(copy.data, "abc");
    KW_String().ToCStr(bytes, kSystem);
    EXPECT_EQ(bytes.data, nullptr);
    EXPECT_EQ(bytes.size, 0u);
    EXPECT_EQ(bytes.encoding, kSystem);
    const KW_CString none(bytes);
    EXPECT_EQ(none.data, nullptr);
}

}  // namespace

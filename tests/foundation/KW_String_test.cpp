#include "tests/foundation/TestText.h"

#include <array>
#include <cstring>
#include <new>

namespace {

TEST(KW_String, IsNullWithoutSourceAndEmptyWithAnEmptyOne) {
    const unsigned short noUnits[] = {0};
    for (const KW_String& null :
         {KW_String(), KW_String(nullptr, kSystem), KW_String(nullptr, 3, kSystem), KW_String(nullptr, 3u),
          KW_String(static_cast<const unsigned short*>(nullptr)), KW_String(noUnits, 0u),
          KW_String(static_cast<KW_String*>(nullptr)), KW_String("\xC3", kUTF8), KW_String("a", kNone),
          KW_String("a", kUnsupported)}) {
        EXPECT_EQ(content(null), std::nullopt);
    }
    EXPECT_EQ(content(KW_String("", kSystem)), u"");
    EXPECT_EQ(content(KW_String(noUnits)), u"");
    EXPECT_EQ(content(KW_String(text(u"ab").data)), u"ab");
    EXPECT_EQ(KW_String("", kSystem).capacity, 1u);
}

TEST(KW_String, TakesACountOfBytesOrAllUpToTheTerminator) {
    const ExactBytes bytes(std::string_view("ab\0cd", 5));
    EXPECT_EQ(content(KW_String(bytes.data, bytes.size, kSystem)), std::u16string(u"ab\0cd", 5));
    EXPECT_EQ(content(KW_String(bytes.data, 0, kSystem)), u"ab");
    EXPECT_EQ(content(KW_String(bytes.data, kSystem)), u"ab");
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
    KW_String assigned = text(u"x");
    assigned = original;
    copy.SetUCharAt(0, 'x');
    assigned.SetUCharAt(0, 'x');
    EXPECT_EQ(content(original), u"abc");
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
    EXPECT_FALSE(string.Set("\xFF", 1, kUTF8));
    EXPECT_FALSE(string.Set("a", 1, kNone));
    EXPECT_EQ(content(string), u"xy");
    EXPECT_TRUE(string.Set("xyz", 1, kSystem));
    EXPECT_EQ(content(string), u"x");
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

TEST(KW_String, GetsTheSizeThatIsSetAndTheRoomThatIsMissing) {
    using Case = std::tuple<Content, unsigned int, bool, Content>;
    for (const auto& [before, units, keep, after] :
         {Case{u"hello", 3, true, u"he"}, Case{u"hello", 1, true, u""}, Case{u"hello", 6, true, u"hello"},
          Case{u"hello", 6, false, u""}, Case{u"hello", 20, true, u"hello"}, Case{u"hello", 20, false, u""},
          Case{std::nullopt, 4, true, u""}, Case{u"hello", 0, true, std::nullopt},
          Case{std::nullopt, 0, false, std::nullopt}}) {
        KW_String sized = maybe(before);
        sized.SetSize(units, keep);
        EXPECT_EQ(content(sized), after) << units;
        EXPECT_EQ(sized.capacity, units);
        expectSound(sized);
        KW_String allocated = maybe(before);
        const unsigned int capacity = allocated.capacity;
        EXPECT_TRUE(allocated.THIS_Alloc(units, keep));
        EXPECT_EQ(content(allocated), units > capacity ? after : before) << units;
        EXPECT_EQ(allocated.capacity, std::max(capacity, units));
        expectSound(allocated);
    }
}

TEST(KW_String, CopiesARangeOrGivesItAsASubstringCutAtTheEnd) {
    using Case = std::tuple<Content, unsigned int, unsigned int, Content>;
    constexpr unsigned int kHuge = 0xFFFFFFFF;
    for (const auto& [source, start, count, result] :
         {Case{u"hello", 1, 3, u"ell"}, Case{u"hello", 1, 99, u"ello"}, Case{u"hello", 2, kHuge, u"llo"},
          Case{u"hello", 5, 1, u""}, Case{u"hello", 2, 0, u""}, Case{u"hello", 6, 1, std::nullopt},
          Case{u"hello", kHuge, 1, std::nullopt}, Case{std::nullopt, 0, 0, std::nullopt}}) {
        KW_String string = text(u"something before");
        string.THIS_CopyString(maybe(source), start, count);
        EXPECT_EQ(content(string), result);
        KW_String self = maybe(source);
        self.THIS_CopyString(self, start, count);
        EXPECT_EQ(content(self), result) << "of itself";
        expectSound(self);
        const KW_String part = maybe(source).Substring(start, count);
        EXPECT_EQ(content(part), result);
        EXPECT_EQ(part.capacity, part.data == nullptr ? 0 : part.length + 1);
        if (count == kHuge) {
            EXPECT_EQ(content(maybe(source).Substring(start)), result);
        }
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

const char* bytes(const unsigned short* units) {
    return reinterpret_cast<const char*>(units);
}

TEST(KW_String, ChangesAlsoByWhatItHoldsItself) {
    using namespace std::string_literals;
    using Case = std::pair<void (*)(KW_String&), std::u16string>;
    for (const auto& [change, result] :
         {Case{[](KW_String& s) { s += s; }, u"abcabc"},
          Case{[](KW_String& s) { s.THIS_SetToConcatenatedString(s, s); }, u"abcabc"},
          Case{[](KW_String& s) { s.THIS_SetToConcatenatedString(text(u"1234567"), s); }, u"1234567abc"},
          Case{[](KW_String& s) { s.THIS_SetToConcatenatedString(s, text(u"1234567")); }, u"abc1234567"},
          Case{[](KW_String& s) { s.THIS_SetToConcatenatedString(KW_String(), s); }, u"abc"},
          Case{[](KW_String& s) { s.THIS_Append(s.data + 1, 2); }, u"abcbc"},
          Case{[](KW_String& s) { s.THIS_Append(bytes(s.data), 6, kUTF16LE); }, u"abcabc"},
          Case{[](KW_String& s) { s.Set(bytes(s.data + 1), 4, kUTF16LE); }, u"bc"},
          Case{[](KW_String& s) { s.Set(bytes(s.data), 6, kSystem); }, u"a\0b\0c\0"s}}) {
        for (const unsigned int room : {4u, 100u}) {
            KW_String string = text(u"abc");
            string.SetSize(room, true);
            change(string);
            EXPECT_EQ(content(string), result);
            expectSound(string);
        }
    }
}

TEST(KW_String, ConcatenatesNullOnlyToNull) {
    const KW_String null;
    const char* const noText = nullptr;
    EXPECT_EQ(content(null + null), std::nullopt);
    EXPECT_EQ(content(null + text(u"")), u"");
    EXPECT_EQ(content(null + noText), std::nullopt);
    EXPECT_EQ(content(noText + null), std::nullopt);
    EXPECT_EQ(content(noText + ("a" + text(u"b") + "c")), u"abc");
    KW_String string;
    string += text(u"");
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
    text(u"\u00E9").ToCStr(bytes, kUTF8);
    EXPECT_STREQ(bytes.data, "\xC3\xA9");
    EXPECT_EQ(bytes.size, 3u);
    EXPECT_EQ(bytes.encoding, kUTF8);
    EXPECT_STREQ(copy.data, "abc");
    EXPECT_EQ(text(u"").ToCStr(kUTF32BE).size, 4u);
    EXPECT_EQ(text(u"z").ToCStr(kNone).data, nullptr);
    KW_String().ToCStr(bytes, kSystem);
    EXPECT_EQ(KW_CString(bytes).data, nullptr);
    EXPECT_EQ(bytes.size, 0u);
}

}  // namespace

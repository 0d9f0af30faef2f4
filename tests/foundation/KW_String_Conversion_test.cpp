#include "tests/foundation/TestText.h"

#include "foundation/KW_String_Internal.h"

#include <algorithm>
#include <cstring>

namespace {

using namespace std::string_literals;

// The counted bytes decoded, from memory that ends where they end.
Content decoded(const std::string& source, Encoding encoding) {
    const ExactBytes exact(source);
    KW_String string;
    if (!KW_String::CStringToKW_String(string, exact.data, exact.size, encoding, false)) return std::nullopt;
    expectSound(string);
    EXPECT_EQ(string.capacity, string.length + 1);
    return content(string);
}

constexpr auto convert = KW_String::ConvertChangeEncoding;

unsigned int terminatorWidth(Encoding encoding) {
    const bool isWide = encoding >= kUTF16LE && encoding <= kUTF32BE;
    return !isWide ? 1 : encoding >= kUTF32LE ? 4 : 2;
}

// The whole string encoded, without the terminator, which must be there.
std::string encoded(const KW_String& string, Encoding encoding) {
    char* out = nullptr;
    unsigned int size = 0;
    EXPECT_TRUE(KW_String::KW_StringToCString(&out, size, encoding, string, 0, string.length));
    const std::unique_ptr<char[]> owned(out);
    const unsigned int width = terminatorWidth(encoding);
    EXPECT_EQ(std::string(out + size - width, width), std::string(width, '\0'));
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(encoding, string, 0, string.length),
              static_cast<int>(size - width));
    return std::string(out, size - width);
}

TEST(KW_String_Conversion, DecodesAndEncodesEachEncoding) {
    using Case = std::tuple<Encoding, std::string, std::u16string>;
    for (const auto& [encoding, bytes, units] :
         {Case{kUTF7, "Hi Mom -+Jjo--!", u"Hi Mom -\u263A-!"},
          Case{kUTF8, "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80", u"a\u00E9\u4E2D\U0001F600"},
          Case{kUTF16LE, "a\0\x3D\xD8\x00\xDE"s, u"a\U0001F600"},
          Case{kUTF16BE, "\0a\xD8\x3D\xDE\x00"s, u"a\U0001F600"},
          Case{kUTF32LE, "a\0\0\0\x00\xF6\x01\0"s, u"a\U0001F600"},
          Case{kUTF32BE, "\0\0\0a\0\x01\xF6\x00"s, u"a\U0001F600"}, Case{kASCII, "az\x7F", u"az\u007F"},
          Case{kMacRoman, "\xBD\xC6\xDB\xF0", u"\u03A9\u2206\u20AC\uF8FF"},
          Case{kWindows, "\x80\x81\x8D\x8F\x90\x9D\x9F\xE9",
               u"\u20AC\u0081\u008D\u008F\u0090\u009D\u0178\u00E9"},
          Case{kLatin1, "\x80\xE9\xFF", u"\u0080\u00E9\u00FF"}, Case{kSystem, "\x8E", u"\u00E9"},
          Case{static_cast<Encoding>(3), "\x8E", u"\u00E9"},
          Case{static_cast<Encoding>(99), "\x8E", u"\u00E9"},
          Case{static_cast<Encoding>(0xFFFFFFFF), "\x8E", u"\u00E9"}}) {
        EXPECT_EQ(decoded(bytes, encoding), units) << encoding;
        if (encoding != kUTF7) {
            EXPECT_EQ(encoded(text(units), encoding), bytes) << encoding;
        }
        EXPECT_EQ(decoded(encoded(text(units), encoding), encoding), units) << encoding;
    }
}

TEST(KW_String_Conversion, RefusesMalformedBytes) {
    // The other ways to spoil UTF-8 are tried one by one with its detection.
    for (const auto& [encoding, bytes] :
         {std::pair(kUTF8, "aaaaaaaaaaaaaaa\xE4"), std::pair(kUTF7, "a\xE9"), std::pair(kASCII, "abc\x80"),
          std::pair(kUTF16LE, "abc"), std::pair(kUTF16BE, "a")}) {
        KW_String kept = text(u"kept");
        const auto size = static_cast<unsigned int>(std::strlen(bytes));
        EXPECT_FALSE(KW_String::CStringToKW_String(kept, bytes, size, encoding, true)) << encoding;
        EXPECT_EQ(content(kept), u"kept");
        EXPECT_EQ(kept.capacity, 5u);
    }
}

TEST(KW_String_Conversion, WritesAQuestionMarkForEachCharacterThatIsMissing) {
    using Case = std::tuple<Encoding, std::u16string, std::string>;
    for (const auto& [encoding, units, bytes] :
         {Case{kASCII, u"a\u00E9\U0001F600b", "a??b"}, Case{kLatin1, u"\u0178\u00FF\u0100", "?\xFF?"},
          Case{kMacRoman, u"\u4E2D\U0001F600x", "??x"}, Case{kWindows, u"\u0080\u2026", "?\x85"},
          Case{kUTF8, u"a\xDE00\xD83D\xD83D\xDE00z", "a??\xF0\x9F\x98\x80z"},
          Case{kASCII, u"\xD83Dx\xDE00", "?x?"}, Case{kUTF32LE, u"\xDE00", "?\0\0\0"s},
          Case{kUTF7, u"\xDE00", "?"}, Case{kUTF16BE, u"a\xDE00", "\0a\xDE\x00"s}}) {
        EXPECT_EQ(encoded(text(units), encoding), bytes) << encoding;
    }
}

// Each of the first scalar values and many others, in an order that mixes the lengths of their sequences.
TEST(KW_String_Conversion, BringsBackScalarValuesInTheUnicodeEncodings) {
    std::u32string scalars;
    for (char32_t scalar = 0; scalar < 0x110000; scalar += scalar < 0x10100 ? 1 : 61) {
        if (scalar >= 0xD800 && scalar < 0xE000) continue;
        scalars += scalar;
        if (scalar % 3 == 0) scalars += U'a';
    }
    std::u16string units(2 * scalars.size(), u'\0');
    const auto count = static_cast<long>(scalars.size());
    units.resize(static_cast<std::size_t>(
        UTF32toUTF16(scalars.data(), reinterpret_cast<unsigned short*>(units.data()), count, false)));
    for (const Encoding encoding : {kUTF7, kUTF8, kUTF16LE, kUTF16BE, kUTF32LE, kUTF32BE}) {
        EXPECT_TRUE(decoded(encoded(text(units), encoding), encoding) == units) << encoding;
    }
}

TEST(KW_String_Conversion, BringsBackEveryByteOfTheOneByteEncodings) {
    for (const Encoding encoding : {kMacRoman, kSystem, kWindows, kLatin1, kASCII}) {
        const int bound = encoding == kASCII ? 128 : 256;
        std::string all;
        for (int byte = 0; byte < bound; ++byte)
            all.push_back(static_cast<char>(byte));
        const std::u16string units = decoded(all, encoding).value();
        EXPECT_EQ(encoded(text(units), encoding), all) << encoding;
        for (unsigned int unit = 0; unit < 0x10000; ++unit) {
            const std::size_t byte = units.find(static_cast<char16_t>(unit));
            ASSERT_EQ(KW_String::KW_CharToChar(static_cast<unsigned short>(unit), encoding),
                      byte == std::u16string::npos ? '?' : static_cast<char>(byte));
            if (byte != std::u16string::npos) {
                EXPECT_EQ(KW_String::CharToKW_Char(static_cast<char>(byte), encoding), unit);
            }
        }
    }
}

TEST(KW_String_Conversion, ReportsWhyNothingWasConverted) {
    char target[8] = {'x', 'x'};
    EXPECT_EQ(convert(kSystem, nullptr, 0, kUTF8, target, 8, true, true), -3);
    EXPECT_EQ(std::string(target, 2), "\0x"s);
    EXPECT_EQ(convert(kNone, nullptr, 0, kNone, nullptr, 0, true, true), -3);
    EXPECT_EQ(convert(kUnsupported, "a", 0, kNone, target, 8, true, true), -4);
    EXPECT_EQ(convert(kUTF8, "a", 0, kUnsupported, target, 8, true, true), -5);
    EXPECT_EQ(convert(kUTF8, "\xFF", 0, kUTF16LE, target, 8, true, true), -1);
    EXPECT_EQ(convert(kUTF8, "", -1, kUTF16LE, target, 8, true, true), -1) << "0 alone tells an empty text";
    // A destination of no bytes, which must not be touched.
    const std::unique_ptr<char[]> nothing(new char[0]);
    EXPECT_EQ(convert(kUTF8, nullptr, 0, kUTF8, nothing.get(), 0, true, true), -3);
    for (const long size : {0, -5})
        EXPECT_EQ(convert(kUTF8, "a", 1, kUTF8, nothing.get(), size, false, true), -1);
}

TEST(KW_String_Conversion, TakesAnEmptySourceAsATerminator) {
    const std::string zeros(4, '\0');
    for (const Encoding encoding : {kUTF8, kSystem, kUTF16LE, kUTF16BE, kUTF32LE, kUTF32BE}) {
        const unsigned int width = terminatorWidth(encoding);
        for (const Encoding source : {kSystem, kUTF16LE, kUTF32BE}) {
            std::string target(4, 'x');
            EXPECT_EQ(convert(source, zeros.data(), 0, encoding, nullptr, 0, true, true), width);
            EXPECT_EQ(convert(source, zeros.data(), 0, encoding, nullptr, 0, false, true), 0);
            EXPECT_EQ(convert(source, zeros.data(), 0, encoding, target.data(), width - 1L, true, true), -2);
            EXPECT_EQ(target, "xxxx");
            EXPECT_EQ(convert(source, zeros.data(), 0, encoding, target.data(), 4, true, true), width);
            EXPECT_EQ(target, zeros.substr(0, width) + std::string(4 - width, 'x'));
        }
    }
}

TEST(KW_String_Conversion, FindsTheTerminatorOfEachWidth) {
    EXPECT_EQ(content(KW_String("\0a\0\0", kUTF16BE)), u"a");
    EXPECT_EQ(content(KW_String("\x01\x01\0\0b\0\0\0\0\0\0", kUTF32LE)), u"\u0101b");
    char target[8];
    EXPECT_EQ(convert(kUTF8, "ab", -1, kUTF16LE, target, 8, true, true), 6);
}

TEST(KW_String_Conversion, ReadsOnlyWholeUTF32Units) {
    EXPECT_EQ(decoded("abc", kUTF32LE), u"");
    EXPECT_EQ(decoded("a\0\0\0bcd"s, kUTF32LE), u"a");
    EXPECT_EQ(decoded("a\0\0\0\0\0\0\0b\0\0\0"s, kUTF32LE), std::u16string(u"a\0b", 3));
    EXPECT_EQ(decoded("\0\xD8\0\0\xFF\xDF\0\0\0\0\x11\0\xFF\xFF\xFF\xFF"s, kUTF32LE),
              u"\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(KW_String_Conversion, ConvertsUTF32UnitsWithACountOrUpToTheZeroUnit) {
    const unsigned int units[] = {0x1F600, 0xD800, 0x110000, 'a', 0, 'b'};
    unsigned short target[8] = {};
    EXPECT_EQ(UTF32toUTF16(units, nullptr, 0, false), 5);
    EXPECT_EQ(UTF32toUTF16(units, target, -1, false), 5);
    EXPECT_EQ(std::u16string(target, target + 5), u"\xD83D\xDE00\uFFFD\uFFFDa");
    EXPECT_EQ(UTF32toUTF16(units, target, 6, false), 7);
    EXPECT_EQ(target[5], 0);
    EXPECT_EQ(target[6], 'b');
    EXPECT_EQ(UTF32toUTF16(units + 4, target, 0, true), 0);
    const unsigned int reversed[] = {0x61000000, 0x00F60100, 0};
    EXPECT_EQ(UTF32toUTF16(reversed, target, 0, true), 3);
    EXPECT_EQ(std::u16string(target, target + 3), u"a\xD83D\xDE00");
}

TEST(KW_String_Conversion, StopsWhereTheTargetIsFullAndWritesNothingBehindTheResult) {
    // The bytes of the first character and of all.
    using Case = std::tuple<Encoding, std::u16string, long, long>;
    for (const auto& [encoding, units, first, needed] :
         {Case{kUTF8, u"a\u00E9\u4E2D\U0001F600", 1, 10}, Case{kMacRoman, u"a\u00E9z", 1, 3},
          Case{kUTF16LE, u"abc", 2, 6}, Case{kUTF32BE, u"a\U0001F600", 4, 8},
          Case{kUTF7, u"\u4E2D\u4E2D", 5, 8}, Case{kMacRoman, u"more than sixteen before \U0001F600", 1, 26},
          Case{kUTF8, u"\u4E2D\u4E2D\u4E2D and sixteen or more", 3, 29}}) {
        const KW_String source = text(units);
        for (long size = 0; size <= needed + 80; ++size) {
            const std::unique_ptr<char[]> target(new char[static_cast<std::size_t>(size)]);
            for (const bool addTerminator : {false, true}) {
                std::fill_n(target.get(), size, '!');
                const long all = needed + (addTerminator ? terminatorWidth(encoding) : 0);
                const long written =
                    convert(kUTF16LE, reinterpret_cast<const char*>(source.data), source.length * 2L,
                            encoding, target.get(), size, addTerminator, true);
                ASSERT_EQ(written, size < first ? -1 : size < all ? -2 : all) << encoding << ' ' << size;
                if (written < 0) continue;
                ASSERT_EQ(std::count(target.get() + written, target.get() + size, '!'), size - written);
            }
        }
    }
}

TEST(KW_String_Conversion, StopsWithoutLossBeforeWhatIsMissing) {
    using Case = std::tuple<const char*, Encoding, int, int>;
    for (const auto& [source, encoding, measured, written] :
         {Case{"ab\xE4\xB8\xAD", kASCII, 2, -2}, Case{"\xE4\xB8\xAD", kMacRoman, -1, -1},
          Case{"\xC3\xA9", kMacRoman, 1, 1}}) {
        char target[8];
        EXPECT_EQ(convert(kUTF8, source, 0, encoding, nullptr, 8, false, false), measured);
        EXPECT_EQ(convert(kUTF8, source, 0, encoding, target, 8, false, false), written);
    }
}

TEST(KW_String_Conversion, EncodesARangeOrUpToTheTerminator) {
    const KW_String string = text({u"ab\0cd", 5});
    const auto range = [&](unsigned int start, unsigned int count) -> std::string {
        char* out = nullptr;
        unsigned int size = 99;
        const bool done = KW_String::KW_StringToCString(&out, size, kUTF8, string, start, count);
        const std::unique_ptr<char[]> owned(out);
        return done ? std::string(out, size) : out == nullptr && size == 0 ? "failed" : "unsound";
    };
    EXPECT_EQ(range(0, 0), "ab\0"s);
    EXPECT_EQ(range(0, 5), "ab\0cd\0"s);
    EXPECT_EQ(range(3, 99), "cd\0"s) << "never past the end";
    EXPECT_EQ(range(5, 0), "\0"s);
    EXPECT_EQ(range(6, 0), "failed");
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kUTF32LE, string, 1, 0), 4);
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kUTF8, string, 6, 0), -1);
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kNone, string, 0, 0), -1);
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kUTF8, KW_String(), 0, 0), -1);

    // Where the terminator is looked for while it narrows.
    for (const std::size_t end : {63u, 64u, 65u, 79u, 80u, 99u}) {
        std::u16string units(100, u'a');
        units[end] = 0;
        EXPECT_EQ(std::string(text(units).ToCStr(kUTF8).data, end + 1), std::string(end, 'a') + '\0');
        EXPECT_EQ(text(units).ToCStr(kUTF8).size, end + 1);
    }
}

TEST(KW_String_Conversion, LeavesSingleCharactersThatAreNoneAtZeroAndQuestionMark) {
    EXPECT_EQ(KW_String::CharToKW_Char('\xC3', kUTF8), 0);
    EXPECT_EQ(KW_String::KW_CharToChar(0xE9, kUTF8), '?');
    EXPECT_EQ(KW_String::KW_CharToChar(0, kUTF8), 0);
    for (const Encoding encoding : {kUTF16LE, kNone}) {
        EXPECT_EQ(KW_String::CharToKW_Char('a', encoding), 0);
        EXPECT_EQ(KW_String::KW_CharToChar('a', encoding), '?');
    }
}

}  // namespace

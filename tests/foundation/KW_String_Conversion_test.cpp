#include "tests/foundation/TestText.h"

#include "foundation/KW_String_Internal.h"

#include <cstring>

namespace {

using namespace std::string_literals;

// The counted bytes decoded, from memory that ends where they end.
Content decoded(const std::string& source, Encoding encoding) {
    const ExactBytes exact(source);
    KW_String string;
    if (!KW_String::CStringToKW_String(string, exact.data(), exact.size(), encoding, false))
        return std::nullopt;
    expectSound(string);
    EXPECT_EQ(string.capacity, string.length + 1);
    return content(string);
}

// The whole string encoded, without the terminator, which must be there.
std::string encoded(const KW_String& string, Encoding encoding) {
    char* out = nullptr;
    unsigned int size = 0;
    EXPECT_TRUE(KW_String::KW_StringToCString(&out, size, encoding, string, 0, string.length));
    const std::unique_ptr<char[]> owned(out);
    const unsigned int width = encoding >= kUTF32LE && encoding <= kUTF32BE   ? 4
                               : encoding >= kUTF16LE && encoding <= kUTF16BE ? 2
                                                                              : 1;
    EXPECT_GE(size, width);
    EXPECT_EQ(std::string(out + size - width, width), std::string(width, '\0'));
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(encoding, string, 0, string.length),
              static_cast<int>(size - width));
    return std::string(out, size - width);
}

TEST(KW_String_Conversion, DecodesAndEncodesEachEncoding) {
    struct Case {
        Encoding encoding;
        std::string bytes;
        std::u16string units;
    };
    for (const Case& c : std::vector<Case>{
             {kUTF7, "Hi Mom -+Jjo--!", u"Hi Mom -\u263A-!"},
             {kUTF8, "a\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80", u"a\u00E9\u4E2D\U0001F600"},
             {kUTF16LE, "a\0\x3D\xD8\x00\xDE"s, u"a\U0001F600"},
             {kUTF16BE, "\0a\xD8\x3D\xDE\x00"s, u"a\U0001F600"},
             {kUTF32LE, "a\0\0\0\x00\xF6\x01\0"s, u"a\U0001F600"},
             {kUTF32BE, "\0\0\0a\0\x01\xF6\x00"s, u"a\U0001F600"},
             {kASCII, "az\x7F", u"az\u007F"},
             {kMacRoman, "\xBD\xC6\xDB\xF0", u"\u03A9\u2206\u20AC\uF8FF"},
             {kWindows, "\x80\x81\x8D\x8F\x90\x9D\x9F\xE9",
              u"\u20AC\u0081\u008D\u008F\u0090\u009D\u0178\u00E9"},
             {kLatin1, "\x80\xE9\xFF", u"\u0080\u00E9\u00FF"},
             {kSystem, "\x8E", u"\u00E9"},
             {static_cast<Encoding>(3), "\x8E", u"\u00E9"},
             {static_cast<Encoding>(99), "\x8E", u"\u00E9"},
             {static_cast<Encoding>(0xFFFFFFFF), "\x8E", u"\u00E9"},
         }) {
        EXPECT_EQ(decoded(c.bytes, c.encoding), c.units) << c.encoding;
        if (c.encoding != kUTF7) {
            EXPECT_EQ(encoded(text(c.units), c.encoding), c.bytes) << c.encoding;
        }
        EXPECT_EQ(decoded(encoded(text(c.units), c.encoding), c.encoding), c.units) << c.encoding;
    }
}

TEST(KW_String_Conversion, RefusesMalformedBytes) {
    // The other ways to spoil UTF-8 are tried one by one with its detection.
    for (const auto& [encoding, bytes] : std::vector<std::pair<Encoding, std::string>>{
             {kUTF8, "a\x80"},
             {kUTF8, "\xC3"},
             {kUTF8, "aaaaaaaaaaaaaaa\xE4"},
             {kUTF8, "\xED\xA0\x80"},
             {kUTF7, "a\xE9"},
             {kASCII, "abc\x80"},
             {kUTF16LE, "abc"},
             {kUTF16BE, "a"},
         }) {
        EXPECT_EQ(decoded(bytes, encoding), std::nullopt) << encoding << ' ' << testing::PrintToString(bytes);
        KW_String kept = text(u"kept");
        EXPECT_FALSE(KW_String::CStringToKW_String(kept, bytes.data(),
                                                   static_cast<unsigned int>(bytes.size()), encoding, true));
        EXPECT_EQ(content(kept), u"kept");
        EXPECT_EQ(kept.capacity, 5u);
    }
}

TEST(KW_String_Conversion, WritesAQuestionMarkForEachCharacterThatIsMissing) {
    struct Case {
        Encoding encoding;
        std::u16string units;
        std::string bytes;
    };
    for (const Case& c : std::vector<Case>{
             {kASCII, u"a\u00E9\U0001F600b", "a??b"},
             {kLatin1, u"\u0178\u00FF\u0100", "?\xFF?"},
             {kMacRoman, u"\u4E2D\U0001F600x", "??x"},
             {kWindows, u"\u0080\u2026", "?\x85"},
             {kUTF8, u"\xD83D", "?"},
             {kUTF8, u"a\xDE00\xD83D\xD83D\xDE00z", "a??\xF0\x9F\x98\x80z"},
             {kASCII, u"\xD83Dx\xDE00", "?x?"},
             {kUTF32LE, u"\xDE00", "?\0\0\0"s},
             {kUTF7, u"\xDE00", "?"},
         }) {
        EXPECT_EQ(encoded(text(c.units), c.encoding), c.bytes) << c.encoding;
    }
    EXPECT_EQ(encoded(text(u"a\xDE00"), kUTF16BE), "\0a\xDE\x00"s) << "UTF-16 holds any unit";
}

// Every scalar value, in an order that mixes the lengths of their sequences, in texts of a few units.
TEST(KW_String_Conversion, BringsBackEveryScalarValueInTheUnicodeEncodings) {
    std::u16string units;
    for (char32_t scalar = 0; scalar < 0x110000; ++scalar) {
        if (scalar >= 0xD800 && scalar < 0xE000) continue;
        if (scalar < 0x10000) {
            units.push_back(static_cast<char16_t>(scalar));
        } else {
            units.push_back(static_cast<char16_t>(0xD7C0 + (scalar >> 10)));
            units.push_back(static_cast<char16_t>(0xDC00 | (scalar & 0x3FF)));
        }
        if (scalar % 3 == 0) units.push_back(u'a');
    }
    for (const Encoding encoding : {kUTF7, kUTF8, kUTF16LE, kUTF16BE, kUTF32LE, kUTF32BE}) {
        EXPECT_TRUE(decoded(encoded(text(units), encoding), encoding) == units) << encoding;
    }
    // Short texts go another way through the code than long ones.
    for (std::size_t start = 0; start + 40 < units.size(); start += 4001) {
        for (std::size_t count = 1; count < 40; ++count) {
            std::u16string part = units.substr(start, count);
            if ((part.front() & 0xFC00) == 0xDC00) part.erase(0, 1);
            if (!part.empty() && (part.back() & 0xFC00) == 0xD800) part.pop_back();
            if (part.empty()) continue;
            for (const Encoding encoding : {kUTF8, kUTF16BE, kUTF32LE, kUTF32BE}) {
                ASSERT_EQ(decoded(encoded(text(part), encoding), encoding), part) << encoding << ' ' << start;
            }
        }
    }
}

TEST(KW_String_Conversion, BringsBackEveryByteOfTheOneByteEncodings) {
    for (const Encoding encoding : {kMacRoman, kSystem, kWindows, kLatin1, kASCII}) {
        const int bound = encoding == kASCII ? 128 : 256;
        std::string all;
        for (int byte = 0; byte < bound; ++byte)
            all.push_back(static_cast<char>(byte));
        const Content units = decoded(all, encoding);
        ASSERT_TRUE(units) << encoding;
        EXPECT_EQ(units->size(), all.size());
        EXPECT_EQ(encoded(text(*units), encoding), all) << encoding;
        for (int byte = 0; byte < bound; ++byte) {
            const unsigned short unit = KW_String::CharToKW_Char(static_cast<char>(byte), encoding);
            EXPECT_EQ(unit, (*units)[static_cast<std::size_t>(byte)]);
            EXPECT_EQ(KW_String::KW_CharToChar(unit, encoding), static_cast<char>(byte));
        }
        // No other unit may turn into a byte.
        for (unsigned int unit = 0; unit < 0x10000; ++unit) {
            if (units->find(static_cast<char16_t>(unit)) != std::u16string::npos) continue;
            ASSERT_EQ(KW_String::KW_CharToChar(static_cast<unsigned short>(unit), encoding), '?');
        }
    }
}

TEST(KW_String_Conversion, ReportsWhyNothingWasConverted) {
    char target[8] = {'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
    const auto convert = KW_String::ConvertChangeEncoding;
    EXPECT_EQ(convert(kSystem, nullptr, 0, kUTF8, target, 8, true, true), -3);
    EXPECT_EQ(target[0], 0);
    EXPECT_EQ(target[1], 'x');
    EXPECT_EQ(convert(kNone, nullptr, 0, kNone, nullptr, 0, true, true), -3);
    EXPECT_EQ(convert(kNone, "a", 0, kNone, target, 8, true, true), -4);
    EXPECT_EQ(convert(kUnsupported, "a", 0, kUTF8, target, 8, true, true), -4);
    EXPECT_EQ(convert(kUTF8, "a", 0, kNone, target, 8, true, true), -5);
    EXPECT_EQ(convert(kUTF8, "a", 0, kUnsupported, target, 8, true, true), -5);
    EXPECT_EQ(convert(kUTF8, "\xFF", 0, kUTF16LE, target, 8, true, true), -1);
    EXPECT_EQ(convert(kUTF8, "", -1, kUTF16LE, target, 8, true, true), -1)
        << "only a length of 0 tells an empty text";
    // A destination of no bytes, which must not be touched.
    const std::unique_ptr<char[]> nothing(new char[0]);
    EXPECT_EQ(convert(kUTF8, nullptr, 0, kUTF8, nothing.get(), 0, true, true), -3);
    EXPECT_EQ(convert(kUTF8, "a", 1, kUTF8, nothing.get(), 0, false, true), -1);
    EXPECT_EQ(convert(kUTF8, "a", 1, kUTF8, nothing.get(), -5, false, true), -1);
    EXPECT_EQ(convert(kUTF8, "", 0, kUTF8, nothing.get(), 0, false, true), 0);
    EXPECT_EQ(convert(kUTF8, "", 0, kUTF8, nothing.get(), 0, true, true), -2);
}

TEST(KW_String_Conversion, TakesAnEmptySourceAsATerminator) {
    for (const auto& [encoding, width] : std::vector<std::pair<Encoding, long>>{
             {kUTF8, 1}, {kSystem, 1}, {kUTF16LE, 2}, {kUTF16BE, 2}, {kUTF32LE, 4}}) {
        for (const Encoding source : {kSystem, kUTF8, kUTF16LE, kUTF16BE, kUTF32LE, kUTF32BE}) {
            const std::string zeros(4, '\0');
            const auto convert = [&](char* target, long size, bool addTerminator) {
                return KW_String::ConvertChangeEncoding(source, zeros.data(), 0, encoding, target, size,
                                                        addTerminator, true);
            };
            std::string target(static_cast<std::size_t>(width), 'x');
            EXPECT_EQ(convert(nullptr, 0, true), width);
            EXPECT_EQ(convert(nullptr, 0, false), 0);
            EXPECT_EQ(convert(target.data(), width - 1, true), -2);
            EXPECT_EQ(target, std::string(target.size(), 'x'));
            EXPECT_EQ(convert(target.data(), width, true), width);
            EXPECT_EQ(target, std::string(target.size(), '\0'));
        }
    }
}

TEST(KW_String_Conversion, FindsTheTerminatorOfEachWidth) {
    EXPECT_EQ(content(KW_String("\0a\0\0", kUTF16BE)), u"a");
    EXPECT_EQ(content(KW_String("a\0\0", kUTF16LE)), u"a");
    EXPECT_EQ(content(KW_String("\0\0\0a\0\0\0", kUTF32BE)), u"a");
    EXPECT_EQ(content(KW_String("a\0\0\0\0\0\0", kUTF32LE)), u"a");
    EXPECT_EQ(content(KW_String("\x01\x01\0\0b\0\0\0\0\0\0", kUTF32LE)), u"\u0101b");
    char target[8];
    EXPECT_EQ(KW_String::ConvertChangeEncoding(kUTF8, "ab", -1, kUTF16LE, target, 8, true, true), 6);
}

TEST(KW_String_Conversion, ReadsOnlyWholeUTF32Units) {
    for (const Encoding encoding : {kUTF32LE, kUTF32BE}) {
        EXPECT_EQ(decoded("a", encoding), u"");
        EXPECT_EQ(decoded("abc", encoding), u"");
    }
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

TEST(KW_String_Conversion, StopsWhereTheTargetIsFull) {
    // Bytes of the target encoding for text whose characters have the sizes given.
    struct Case {
        Encoding target;
        std::u16string units;
        std::vector<long> sizes;
    };
    for (const Case& c : std::vector<Case>{
             {kUTF8, u"a\u00E9\u4E2D\U0001F600", {1, 2, 3, 4}},
             {kMacRoman, u"a\u00E9z", {1, 1, 1}},
             {kUTF16LE, u"abc", {2, 2, 2}},
             {kUTF16BE, u"abc", {2, 2, 2}},
             {kUTF32BE, u"a\U0001F600", {4, 4}},
         }) {
        const KW_String source = text(c.units);
        long needed = 0;
        for (const long size : c.sizes)
            needed += size;
        for (long room = 0; room <= needed; ++room) {
            const std::unique_ptr<char[]> target(new char[static_cast<std::size_t>(room)]);
            const auto convert = [&](bool addTerminator) {
                return KW_String::ConvertChangeEncoding(kUTF16LE, reinterpret_cast<char const*>(source.data),
                                                        source.length * 2L, c.target, target.get(), room,
                                                        addTerminator, true);
            };
            EXPECT_EQ(convert(false), room < c.sizes[0] ? -1
                                      : room < needed   ? -2
                                                        : needed)
                << c.target << ' ' << room;
            EXPECT_EQ(convert(true), room < c.sizes[0] ? -1 : -2) << c.target << ' ' << room;
        }
    }
    char target[4];
    EXPECT_EQ(
        KW_String::ConvertChangeEncoding(kUTF8, "\xE4\xB8\xAD\xE4\xB8\xAD", 0, kUTF7, target, 4, false, true),
        -1);
    EXPECT_EQ(KW_String::ConvertChangeEncoding(kUTF8, "aa\xE4\xB8\xAD", 0, kUTF7, target, 4, false, true),
              -2);
}

TEST(KW_String_Conversion, StopsWithoutLossBeforeWhatIsMissing) {
    char target[8];
    const auto convert = [](const char* source, Encoding encoding, char* out) {
        return KW_String::ConvertChangeEncoding(kUTF8, source, 0, encoding, out, 8, false, false);
    };
    EXPECT_EQ(convert("ab\xE4\xB8\xAD", kASCII, nullptr), 2) << "measures what comes before";
    EXPECT_EQ(convert("ab\xE4\xB8\xAD", kASCII, target), -2);
    EXPECT_EQ(convert("\xE4\xB8\xAD", kMacRoman, nullptr), -1);
    EXPECT_EQ(convert("\xE4\xB8\xAD", kMacRoman, target), -1);
    EXPECT_EQ(convert("\xC3\xA9", kMacRoman, target), 1);
    EXPECT_EQ(target[0], '\x8E');
}

TEST(KW_String_Conversion, EncodesARangeOrUpToTheTerminator) {
    const KW_String string = text({u"ab\0cd", 5});
    const auto range = [&](unsigned int start, unsigned int count) -> std::string {
        char* out = nullptr;
        unsigned int size = 99;
        const bool done = KW_String::KW_StringToCString(&out, size, kUTF8, string, start, count);
        const std::unique_ptr<char[]> owned(out);
        EXPECT_EQ(done, out != nullptr);
        if (!done) {
            EXPECT_EQ(size, 0u);
        }
        return done ? std::string(out, size) : "failed";
    };
    EXPECT_EQ(range(0, 0), "ab\0"s);
    EXPECT_EQ(range(1, 0), "b\0"s);
    EXPECT_EQ(range(0, 5), "ab\0cd\0"s);
    EXPECT_EQ(range(3, 99), "cd\0"s) << "never past the end";
    EXPECT_EQ(range(3, 0xFFFFFFFF), "cd\0"s);
    EXPECT_EQ(range(5, 0), "\0"s);
    EXPECT_EQ(range(5, 3), "\0"s);
    EXPECT_EQ(range(6, 0), "failed");
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kUTF32LE, string, 1, 0), 4);
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kUTF8, string, 6, 0), -1);
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kNone, string, 0, 0), -1);
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kUTF8, KW_String(), 0, 0), -1);
    EXPECT_EQ(KW_String::KW_StringToCStringLenBytes(kUTF8, text(u""), 0, 0), 0);
}

TEST(KW_String_Conversion, GivesAByteStringWithItsEncoding) {
    const KW_String cafe("Caf\xE9", kWindows);
    const KW_CString utf8 = cafe.ToCStr(kUTF8);
    EXPECT_EQ(std::string(utf8.data, utf8.size), "Caf\xC3\xA9\0"s);
    EXPECT_EQ(utf8.encoding, kUTF8);
    const KW_CString none = cafe.ToCStr(kNone);
    EXPECT_EQ(none.data, nullptr);
    EXPECT_EQ(none.size, 0u);
    EXPECT_EQ(none.encoding, kNone);
    EXPECT_EQ(text(u"").ToCStr(kUTF32BE).size, 4u);
}

TEST(KW_String_Conversion, LeavesSingleCharactersThatAreNoneAtZeroAndQuestionMark) {
    EXPECT_EQ(KW_String::CharToKW_Char('\xC3', kUTF8), 0);
    EXPECT_EQ(KW_String::CharToKW_Char('a', kUTF16LE), 0);
    EXPECT_EQ(KW_String::CharToKW_Char('a', kUTF32BE), 0);
    EXPECT_EQ(KW_String::CharToKW_Char('\x80', kASCII), 0);
    EXPECT_EQ(KW_String::CharToKW_Char('a', kNone), 0);
    EXPECT_EQ(KW_String::KW_CharToChar(0xE9, kUTF8), '?');
    EXPECT_EQ(KW_String::KW_CharToChar('a', kUTF16LE), '?');
    EXPECT_EQ(KW_String::KW_CharToChar('a', kUTF32LE), '?');
    EXPECT_EQ(KW_String::KW_CharToChar(0xD83D, kUTF8), '?');
    EXPECT_EQ(KW_String::KW_CharToChar('a', kNone), '?');
    EXPECT_EQ(KW_String::KW_CharToChar(0, kUTF8), 0);
}

}  // namespace

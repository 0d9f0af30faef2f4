#include "tests/foundation/TestText.h"

namespace {

constexpr auto kUntouched = static_cast<Encoding>(77);

using namespace std::string_literals;

TEST(KW_String_Detection, KnowsTheByteOrderMarks) {
    struct Case {
        std::string bytes;
        unsigned int length;
        Encoding encoding;
    };
    for (const Case& c : std::vector<Case>{
             {"", 0, kUntouched},
             {"\xFE", 0, kUntouched},
             {"\xFE\xFF", 2, kUTF16BE},
             {"\xFF\xFE", 2, kUTF16LE},
             {"\xFF\xFE\0"s, 2, kUTF16LE},
             {"\xFF\xFE\0\0"s, 4, kUTF32LE},
             {"\xFF\xFE\x41\0"s, 2, kUTF16LE},
             {"\xEF\xBB", 0, kUntouched},
             {"\xEF\xBB\xBF", 3, kUTF8},
             {"\x0E\xFE\xFFz", 3, kUnsupported},
             {"\xF7\x64\x4C", 3, kUnsupported},
             {"\xFB\xEE\x28", 3, kUnsupported},
             {"+/v", 0, kUntouched},
             {"+/v7", 0, kUntouched},
             {"+/v8", 4, kUTF7},
             {"+/v8-", 5, kUTF7},
             {"+/v8x", 4, kUTF7},
             {"+/v9-", 4, kUTF7},
             {"+/v+", 4, kUTF7},
             {"+/v/", 4, kUTF7},
             {"\x84\x31\x95\x33", 4, kUnsupported},
             {"\xDD\x73\x66\x73", 4, kUnsupported},
             {"\0\0\xFE\xFF"s, 4, kUTF32BE},
             {"\0\0\xFE"s, 0, kUntouched},
             {"abcd", 0, kUntouched},
         }) {
        const ExactBytes exact(c.bytes);
        Encoding encoding = kUntouched;
        EXPECT_EQ(KW_String::DetectBOM(exact.data(), exact.size(), encoding), c.length)
            << testing::PrintToString(c.bytes);
        EXPECT_EQ(encoding, c.encoding) << testing::PrintToString(c.bytes);
    }
    Encoding encoding = kUntouched;
    EXPECT_EQ(KW_String::DetectBOM(nullptr, 4, encoding), 0u);
}

TEST(KW_String_Detection, GivesTheMarkOfEachEncodingThatHasOne) {
    for (const Encoding encoding : {kUTF8, kUTF16LE, kUTF16BE, kUTF32LE, kUTF32BE}) {
        const KW_CString mark = KW_String::GetBOM(encoding);
        EXPECT_EQ(mark.encoding, encoding);
        Encoding detected = kUntouched;
        EXPECT_EQ(KW_String::DetectBOM(mark.data, mark.size, detected), mark.size);
        EXPECT_EQ(detected, encoding);
    }
    for (const Encoding encoding : {kNone, kUnsupported, kSystem, kUTF7, kMacRoman}) {
        const KW_CString mark = KW_String::GetBOM(encoding);
        EXPECT_EQ(mark.data, nullptr);
        EXPECT_EQ(mark.size, 0u);
        EXPECT_EQ(mark.encoding, encoding);
    }
}

// Written from the ranges of scalar values, not from the table of byte ranges.
bool isWellFormed(const std::string& sequence) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(sequence[i]); };
    for (std::size_t i = 0; i < sequence.size();) {
        const int length = at(i) < 0x80       ? 1
                           : at(i) >> 5 == 6  ? 2
                           : at(i) >> 4 == 14 ? 3
                           : at(i) >> 3 == 30 ? 4
                                              : 0;
        if (length == 0 || i + static_cast<std::size_t>(length) > sequence.size()) return false;
        unsigned int value = length == 1 ? at(i) : at(i) & (0x7Fu >> length);
        for (int k = 1; k < length; ++k) {
            const unsigned char trail = at(++i);
            if (trail >> 6 != 2) return false;
            value = value << 6 | (trail & 0x3F);
        }
        ++i;
        constexpr unsigned int kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (value < kSmallest[length] || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000))
            return false;
    }
    return true;
}

TEST(KW_String_Detection, TellsWellFormedUTF8ForEveryLeadAndBoundary) {
    for (int lead = 0x80; lead < 0x100; ++lead) {
        for (const int second : {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF}) {
            for (const int third : {-1, 0x41, 0x7F, 0x80, 0xBF, 0xC0}) {
                for (const int fourth : {-1, 0x7F, 0x80, 0xBF, 0xC0}) {
                    std::string sequence{static_cast<char>(lead), static_cast<char>(second)};
                    if (third >= 0) sequence.push_back(static_cast<char>(third));
                    if (third >= 0 && fourth >= 0) sequence.push_back(static_cast<char>(fourth));
                    const ExactBytes exact(sequence);
                    ASSERT_EQ(KW_String::IsUTF8(exact.data(), exact.size(), true), isWellFormed(sequence))
                        << testing::PrintToString(sequence);
                    const bool decodes = KW_String(exact.data(), exact.size(), kUTF8).data != nullptr;
                    ASSERT_EQ(decodes, isWellFormed(sequence)) << "the decoder agrees";
                    if (second == 0) continue;
                    const ExactBytes terminated(sequence + '\0');
                    ASSERT_EQ(KW_String::IsUTF8(terminated.data(), true), isWellFormed(sequence));
                }
            }
        }
    }
}

TEST(KW_String_Detection, TakesASCIIForUTF8OnlyWhenNoMoreIsRequired) {
    EXPECT_FALSE(KW_String::IsUTF8("abc", true));
    EXPECT_TRUE(KW_String::IsUTF8("abc", false));
    EXPECT_TRUE(KW_String::IsUTF8("abc\xC3\xA9", true));
    EXPECT_FALSE(KW_String::IsUTF8("", true));
    EXPECT_TRUE(KW_String::IsUTF8("", false));
    EXPECT_FALSE(KW_String::IsUTF8(nullptr, false));
    EXPECT_FALSE(KW_String::IsUTF8(nullptr, 3, false));
    EXPECT_TRUE(KW_String::IsUTF8("\xFF", 0, false));
    EXPECT_FALSE(KW_String::IsUTF8("\xFF", 0, true));
    EXPECT_TRUE(KW_String::IsUTF8("a\0\xC3\xA9"s.data(), 4, true)) << "a zero byte is a character here";
    EXPECT_FALSE(KW_String::IsUTF8("abc\xE2\x82", false));
}

TEST(KW_String_Detection, DecodesATextInTheEncodingItFinds) {
    struct Case {
        std::string bytes;
        bool detect;
        Encoding given;
        Encoding used;
        Content content;
    };
    for (const Case& c : std::vector<Case>{
             {"\xEF\xBB\xBF\xC3\xA9", false, kSystem, kUTF8, u"\u00E9"},
             {"\xEF\xBB\xBF", true, kSystem, kUTF8, u""},
             {"\xFF\xFE\0\0"s, true, kSystem, kUTF32LE, u""},
             {"\xFE\xFF", false, kSystem, kUTF16BE, u""},
             {"\xFE\xFF\x4E\x2D", false, kSystem, kUTF16BE, u"\u4E2D"},
             {"+/v8-+AOk-", true, kSystem, kUTF7, u"\u00E9"},
             {"\x0E\xFE\xFF\x8E", true, kUTF8, kUnsupported, u"\u00E9"},
             {"\xC3\xA9", false, kUTF8, kUTF8, u"\u00E9"},
             {"\x8E", false, kNone, kNone, u"\u00E9"},
             {"\x8E", false, static_cast<Encoding>(5), static_cast<Encoding>(5), u"\u00E9"},
             {"", true, kSystem, kUTF32LE, u""},
             {"", false, kUTF8, kUTF8, u""},
             {"h\0i\0"s, true, kSystem, kUTF16LE, u"hi"},
             {"\0h\0i\0!"s, true, kSystem, kUTF16BE, u"hi!"},
             {"a\0\0\0"s, true, kSystem, kUTF32LE, u"a"},
             {"\0\0\0a\0\0\0b"s, true, kSystem, kUTF32BE, u"ab"},
             {"\0\x10\xFF\xFF"s, true, kSystem, kUTF32BE, u"\xDBFF\xDFFF"},
             {"\0\x11\0A\0\xFF\0A"s, true, kSystem, kUTF16BE, u"\u0011A\u00FFA"},
             {"four", true, kSystem, kUTF8, u"four"},
             {"caf\xC3\xA9", true, kSystem, kUTF8, u"caf\u00E9"},
             {"Caf\xE9", true, kSystem, kNone, u"Caf\u00C8"},
             {"\0\0a\0\0"s, true, kSystem, kUTF8, std::u16string(u"\0\0a\0\0", 5)},
             {"\0\0\xE9\0\0"s, true, kSystem, kNone, std::u16string(u"\0\0\u00C8\0\0", 5)},
             {"\xEF\xBB\xBF\xE9", true, kSystem, kUTF8, u""},
             {"\xFE\xFF\x4E", true, kSystem, kUTF16BE, u""},
             {"\xFF\xFE\xFF", true, kSystem, kUTF16LE, u""},
             {"\xE9", false, kUTF8, kUTF8, u""},
         }) {
        const ExactBytes exact(c.bytes);
        KW_String string = text(u"before");
        EXPECT_EQ(KW_String::TextToString(string, exact.data(), exact.size(), c.detect, c.given), c.used)
            << testing::PrintToString(c.bytes);
        EXPECT_EQ(content(string), c.content) << testing::PrintToString(c.bytes);
        expectSound(string);
    }
}

TEST(KW_String_Detection, TakesATextThatIsNotThereAsNullOrEmpty) {
    KW_String string = text(u"before");
    EXPECT_EQ(KW_String::TextToString(string, nullptr, 0, false, kUTF8), kUTF8);
    EXPECT_EQ(content(string), std::nullopt);
    EXPECT_EQ(KW_String::TextToString(string, nullptr, 5, true, kUTF8), kUTF32LE);
    EXPECT_EQ(content(string), u"");
}

}  // namespace

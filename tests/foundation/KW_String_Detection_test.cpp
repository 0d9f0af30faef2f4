#include "tests/foundation/TestText.h"

namespace {

constexpr auto kUntouched = static_cast<Encoding>(77);

using namespace std::string_literals;

TEST(KW_String_Detection, KnowsTheByteOrderMarks) {
    using Case = std::tuple<std::string, unsigned int, Encoding>;
    for (const auto& [bytes, length, encoding] :
         {Case("\xFE", 0, kUntouched), Case("\xFE\xFF", 2, kUTF16BE), Case("\xFF\xFE\0"s, 2, kUTF16LE),
          Case("\xFF\xFE\0\0"s, 4, kUTF32LE), Case("\xFF\xFE\x41\0"s, 2, kUTF16LE),
          Case("\xEF\xBB", 0, kUntouched), Case("\xEF\xBB\xBF", 3, kUTF8),
          Case("\x0E\xFE\xFFz", 3, kUnsupported), Case("\xF7\x64\x4C", 3, kUnsupported),
          Case("\xFB\xEE\x28", 3, kUnsupported), Case("+/v7", 0, kUntouched), Case("+/v8", 4, kUTF7),
          Case("+/v8-", 5, kUTF7), Case("+/v9-", 4, kUTF7), Case("+/v+", 4, kUTF7), Case("+/v/", 4, kUTF7),
          Case("\x84\x31\x95\x33", 4, kUnsupported), Case("\xDD\x73\x66\x73", 4, kUnsupported),
          Case("\0\0\xFE\xFF"s, 4, kUTF32BE)}) {
        const ExactBytes exact(bytes);
        Encoding detected = kUntouched;
        EXPECT_EQ(KW_String::DetectBOM(exact.data, exact.size, detected), length)
            << testing::PrintToString(bytes);
        EXPECT_EQ(detected, encoding) << testing::PrintToString(bytes);
    }
    Encoding none = kUntouched;
    EXPECT_EQ(KW_String::DetectBOM(nullptr, 4, none), 0u);
}

TEST(KW_String_Detection, GivesTheMarkOfEachEncodingThatHasOne) {
    for (const Encoding encoding : {kUTF8, kUTF16LE, kUTF16BE, kUTF32LE, kUTF32BE, kUnsupported, kUTF7}) {
        const KW_CString mark = KW_String::GetBOM(encoding);
        EXPECT_EQ(mark.encoding, encoding);
        const bool hasOne = encoding != kUnsupported && encoding != kUTF7;
        EXPECT_EQ(mark.data != nullptr, hasOne);
        Encoding detected = kUntouched;
        EXPECT_EQ(KW_String::DetectBOM(mark.data, mark.size, detected), mark.size);
        EXPECT_EQ(detected, hasOne ? encoding : kUntouched);
    }
}

TEST(KW_String_Detection, TellsUTF8AsItsDecoderDoesForEveryLeadAndBoundary) {
    for (int lead = 0x80; lead < 0x100; ++lead) {
        for (const int second : {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xFF}) {
            for (const char* const rest : {"", "\x41", "\x7F", "\x80", "\xBF", "\xC0", "\x80\x7F", "\x80\x80",
                                           "\xBF\xBF", "\x80\xC0", "\xC0\x80"}) {
                const std::string sequence{static_cast<char>(lead), static_cast<char>(second)};
                const ExactBytes exact(sequence + rest);
                const bool decodes = KW_String(exact.data, exact.size, kUTF8).data != nullptr;
                ASSERT_EQ(KW_String::IsUTF8(exact.data, exact.size, true), decodes)
                    << testing::PrintToString(sequence + rest);
            }
        }
    }
    for (const char* const malformed : {"\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
                                        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "abc\xE2\x82"})
        EXPECT_FALSE(KW_String::IsUTF8(malformed, false));
    for (const char* const wellFormed :
         {"\xC2\x80", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(KW_String::IsUTF8(wellFormed, true));
}

TEST(KW_String_Detection, TakesASCIIForUTF8OnlyWhenNoMoreIsRequired) {
    for (const bool required : {false, true}) {
        EXPECT_EQ(KW_String::IsUTF8("abc", required), !required);
        EXPECT_EQ(KW_String::IsUTF8("\xFF", 0, required), !required);
        EXPECT_FALSE(KW_String::IsUTF8(nullptr, required));
        EXPECT_FALSE(KW_String::IsUTF8(nullptr, 3, required));
    }
    EXPECT_TRUE(KW_String::IsUTF8("a\0\xC3\xA9"s.data(), 4, true)) << "a zero byte is a character here";
}

TEST(KW_String_Detection, DecodesATextInTheEncodingItFinds) {
    using Case = std::tuple<std::string, bool, Encoding, Encoding, Content>;
    for (const auto& [bytes, detect, given, used, result] :
         {Case("\xEF\xBB\xBF\xC3\xA9", false, kSystem, kUTF8, u"\u00E9"),
          Case("\xEF\xBB\xBF", true, kSystem, kUTF8, u""),
          Case("\xFE\xFF\x4E\x2D", false, kSystem, kUTF16BE, u"\u4E2D"),
          Case("+/v8-+AOk-", true, kSystem, kUTF7, u"\u00E9"),
          Case("\x0E\xFE\xFF\x8E", true, kUTF8, kUnsupported, u"\u00E9"),
          Case("\x8E", false, kNone, kNone, u"\u00E9"), Case("", true, kSystem, kUTF32LE, u""),
          Case("", false, kUTF8, kUTF8, u""), Case("h\0i\0"s, true, kSystem, kUTF16LE, u"hi"),
          Case("\0h\0i\0!"s, true, kSystem, kUTF16BE, u"hi!"),
          Case("a\0\0\0"s, true, kSystem, kUTF32LE, u"a"),
          Case("\0\0\0a\0\0\0b"s, true, kSystem, kUTF32BE, u"ab"),
          Case("\0\x10\xFF\xFF"s, true, kSystem, kUTF32BE, u"\xDBFF\xDFFF"),
          Case("\0\x11\0A\0\xFF\0A"s, true, kSystem, kUTF16BE, u"\u0011A\u00FFA"),
          Case("four", true, kSystem, kUTF8, u"four"), Case("Caf\xE9", true, kSystem, kNone, u"Caf\u00C8"),
          Case("\0\0a\0\0"s, true, kSystem, kUTF8, std::u16string(u"\0\0a\0\0", 5)),
          Case("\0\0\xE9\0\0"s, true, kSystem, kNone, std::u16string(u"\0\0\u00C8\0\0", 5)),
          Case("\xFE\xFF\x4E", true, kSystem, kUTF16BE, u"")}) {
        const ExactBytes exact(bytes);
        KW_String string = text(u"before");
        EXPECT_EQ(KW_String::TextToString(string, exact.data, exact.size, detect, given), used)
            << testing::PrintToString(bytes);
        EXPECT_EQ(content(string), result) << testing::PrintToString(bytes);
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

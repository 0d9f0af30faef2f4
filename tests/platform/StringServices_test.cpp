#include "platform/StringServices.h"

#include <gtest/gtest.h>

#include <unicode/ucnv.h>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

// Decoded from memory that is exactly as large as told and not aligned.
std::u16string decoded(unsigned int encoding, const std::string& bytes) {
    const std::string unaligned = 'x' + bytes;
    const StringServices::Decoded text =
        StringServices::decode(encoding, unaligned.data() + 1, static_cast<long>(bytes.size()));
    const std::unique_ptr<unsigned short[]> owned(text.units);
    if (text.units == nullptr) return u"malformed";
    EXPECT_EQ(text.units[text.count], 0);
    return std::u16string(text.units, text.units + text.count);
}

TEST(StringServices, DecodesOneByteEncodingsAsIcuDoes) {
    struct Case {
        unsigned int encoding;
        const char* icuName;
        std::string others;  // bytes that the tables decode otherwise, on purpose
    };
    for (const Case& c : {Case{kCFStringEncodingMacRoman, "macintosh", "\xBD\xC6\xDB\xF0"},
                          Case{kCFStringEncodingWindowsLatin1, "windows-1252", ""},
                          Case{kCFStringEncodingISOLatin1, "ISO-8859-1", ""}}) {
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<UConverter, void (*)(UConverter*)> icu(ucnv_open(c.icuName, &status),
                                                                     ucnv_close);
        for (int byte = 0; byte < 256; ++byte) {
            const std::string bytes(1, static_cast<char>(byte));
            if (c.others.find(bytes) != std::string::npos) continue;
            char16_t unit = 0;
            ucnv_toUChars(icu.get(), &unit, 1, bytes.data(), 1, &status);
            EXPECT_EQ(decoded(c.encoding, bytes), std::u16string(1, unit)) << c.icuName << ' ' << byte;
            status = U_ZERO_ERROR;
        }
    }
}

std::string encoded(unsigned int encoding, const std::u16string& units) {
    const StringServices::EncodedText text = StringServices::encodeText(
        encoding, reinterpret_cast<const char*>(units.data()), static_cast<long>(units.size()), 1);
    const std::unique_ptr<char[]> owned(text.bytes);
    if (text.bytes == nullptr) return "not encodable";
    EXPECT_EQ(text.bytes[text.size - 1], 0);
    return std::string(text.bytes, text.bytes + text.size - 1);
}

// Into memory that has just the room needed.
std::string encodedInto(unsigned int encoding, const std::u16string& units, std::size_t room) {
    std::vector<char> target(room);
    const StringServices::Encoded done =
        StringServices::encode(encoding, reinterpret_cast<const char*>(units.data()),
                               static_cast<long>(units.size()), '?', target.data(), static_cast<long>(room));
    return std::string(target.data(), static_cast<std::size_t>(done.bytes));
}

struct Character {
    unsigned int encoding;
    std::u16string units;
    std::string bytes;
};

// Every length up to a few blocks and about the lengths where the ways change, with something that is not
// ASCII at every place.
TEST(StringServices, ConvertsRightAtEveryPlaceOfEveryLength) {
    for (const Character& c : {Character{kCFStringEncodingUTF8, u"\u00E9", "\xC3\xA9"},
                               Character{kCFStringEncodingUTF8, u"\u4E2D", "\xE4\xB8\xAD"},
                               Character{kCFStringEncodingUTF8, u"\U0001F600", "\xF0\x9F\x98\x80"},
                               Character{kCFStringEncodingMacRoman, u"\u00E9", "\x8E"},
                               Character{kCFStringEncodingWindowsLatin1, u"\u2026", "\x85"},
                               Character{kCFStringEncodingISOLatin1, u"\u00E9", "\xE9"},
                               Character{kCFStringEncodingASCII, u"~", "~"}}) {
        for (std::size_t length = 1; length <= 515; ++length) {
            if (length > 68 && length < 508) continue;
            for (std::size_t place = 0; place<length; place += length> 68 ? 13 : 1) {
                std::u16string units(length, u'a');
                std::string bytes(length, 'a');
                units.replace(place, 1, c.units);
                bytes.replace(place, 1, c.bytes);
                const auto where = [&] {
                    return std::to_string(c.encoding) + ' ' + std::to_string(length) + ' ' +
                           std::to_string(place);
                };
                ASSERT_EQ(decoded(c.encoding, bytes), units) << where();
                ASSERT_EQ(encoded(c.encoding, units), bytes) << where();
                ASSERT_EQ(encodedInto(c.encoding, units, bytes.size()), bytes) << where();
            }
        }
    }
}

TEST(StringServices, EncodesLongAsciiWithoutZerosQuickly) {
    for (std::size_t length = 64; length <= 100; ++length) {
        for (std::size_t place = 0; place < length; ++place) {
            for (const char16_t unit : {u'~', u'\0', u'\u0080', u'\u0141', u'\u8061'}) {
                std::u16string units(length, u'\u0001');
                units[place] = unit;
                const StringServices::EncodedText text = StringServices::encodeLongAscii(
                    reinterpret_cast<const char*>(units.data()), static_cast<long>(length));
                const std::unique_ptr<char[]> owned(text.bytes);
                ASSERT_EQ(text.bytes != nullptr, unit == u'~' && length > 64) << length << ' ' << place;
                if (text.bytes == nullptr) continue;
                ASSERT_EQ(std::string(text.bytes, static_cast<std::size_t>(text.size)),
                          std::string(units.begin(), units.end()) + '\0');
            }
        }
    }
}

// Characters of every width in every order, in blocks that are all of one kind and in mixed ones.
TEST(StringServices, ConvertsMixedUtf8) {
    const std::pair<std::u16string, std::string> characters[] = {{u"a", "a"},
                                                                 {u"\u00E9", "\xC3\xA9"},
                                                                 {u"\u4E2D", "\xE4\xB8\xAD"},
                                                                 {u"\U0001F600", "\xF0\x9F\x98\x80"}};
    std::uint32_t random = 1;
    for (int round = 0; round < 2000; ++round) {
        std::u16string units;
        std::string bytes = "b";
        for (int run = 0; run < 6; ++run) {
            random = random * 1664525 + 1013904223;
            for (std::uint32_t count = random >> 16 & 15; count > 0; --count) {
                units += characters[random >> 30].first;
                bytes += characters[random >> 30].second;
            }
        }
        ASSERT_EQ(decoded(kCFStringEncodingUTF8, bytes), u'b' + units);
        ASSERT_EQ(encoded(kCFStringEncodingUTF8, u'b' + units), bytes);
        // What was cut in a character, or has a byte too many, is malformed.
        if ((bytes.back() & 0x80) != 0) {
            ASSERT_EQ(decoded(kCFStringEncodingUTF8, bytes.substr(0, bytes.size() - 1)), u"malformed");
        }
        bytes.insert(random % bytes.size(), "\xF0");
        ASSERT_EQ(decoded(kCFStringEncodingUTF8, bytes), u"malformed");
    }
}

// A text is encoded as its characters are one by one, also with some that the encoding lacks.
TEST(StringServices, EncodesTextAsItsCharacters) {
    const std::u16string characters[] = {u"a", u"\u00E9", u"\u4E2D", u"\U0001F600", {u'\xDC00'}};
    std::uint32_t random = 1;
    for (const unsigned int encoding :
         {kCFStringEncodingMacRoman, kCFStringEncodingWindowsLatin1, kCFStringEncodingISOLatin1,
          kCFStringEncodingASCII, kCFStringEncodingUTF8, kCFStringEncodingUTF32BE}) {
        for (int round = 0; round < 2000; ++round) {
            std::u16string units;
            std::string bytes;
            while (units.size() < static_cast<std::size_t>(round % 100)) {
                random = random * 1664525 + 1013904223;
                // From text that is nearly all ASCII to text that has none.
                const bool isAscii = static_cast<int>(random >> 28) >= round % 16;
                const std::u16string& next = characters[isAscii ? 0 : (random >> 16) % std::size(characters)];
                units += next;
                bytes += encodedInto(encoding, next, 4);
            }
            ASSERT_EQ(encoded(encoding, units), bytes) << encoding;
            ASSERT_EQ(encodedInto(encoding, units, bytes.size()), bytes) << encoding;
        }
    }
}

TEST(StringServices, HasNoEncodingBehindAnUnknownNumber) {
    EXPECT_EQ(StringServices::decode(0x0BADu, "a", 1).units, nullptr);
    EXPECT_EQ(StringServices::encode(0x0BADu, "a", 0, '?', nullptr, 0).units, 0);
    EXPECT_EQ(GetApplicationTextEncoding(), kCFStringEncodingMacRoman);
}

}  // namespace

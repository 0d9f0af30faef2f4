#include "platform/StringServices.h"

#include <gtest/gtest.h>

#include <unicode/ucnv.h>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

// Decoded from and into memory that is exactly as large as promised and not aligned.
std::u16string decoded(unsigned int encoding, const std::string& bytes) {
    const auto count = static_cast<long>(bytes.size());
    const auto room = static_cast<std::size_t>(StringServices::decodedRoom(encoding, count));
    std::vector<char> units(room * 2 + 1);
    const long length = StringServices::decode(encoding, bytes.data(), count, units.data() + 1);
    EXPECT_EQ(length >= 0, StringServices::isWellFormed(encoding, bytes.data(), count));
    std::u16string result(length < 0 ? 0 : static_cast<std::size_t>(length), u'\0');
    std::memcpy(result.data(), units.data() + 1, result.size() * 2);
    return result;
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

// Every length up to a few blocks, with something that is not ASCII at every place: the ways through the
// blocks, between them and behind the last.
TEST(StringServices, ConvertsRightAtEveryPlaceOfEveryLength) {
    struct Case {
        unsigned int encoding;
        char16_t unit;
        std::string bytes;
    };
    for (const Case& c :
         {Case{kCFStringEncodingUTF8, u'\u00E9', "\xC3\xA9"},
          Case{kCFStringEncodingUTF8, u'\u4E2D', "\xE4\xB8\xAD"},
          Case{kCFStringEncodingMacRoman, u'\u00E9', "\x8E"},
          Case{kCFStringEncodingWindowsLatin1, u'\u2026', "\x85"},
          Case{kCFStringEncodingISOLatin1, u'\u00E9', "\xE9"}, Case{kCFStringEncodingASCII, u'~', "~"}}) {
        for (std::size_t length = 1; length <= 40; ++length) {
            for (std::size_t place = 0; place < length; ++place) {
                std::u16string units(length, u'a');
                std::string bytes(length, 'a');
                units[place] = c.unit;
                bytes.replace(place, 1, c.bytes);
                ASSERT_EQ(decoded(c.encoding, bytes), units) << c.encoding << ' ' << length << ' ' << place;
                std::vector<char> target(bytes.size());
                const auto encoded = StringServices::encode(
                    c.encoding, reinterpret_cast<const char*>(units.data()), static_cast<long>(length), '?',
                    target.data(), static_cast<long>(target.size()));
                ASSERT_EQ(encoded.units, static_cast<long>(length))
                    << c.encoding << ' ' << length << ' ' << place;
                ASSERT_EQ(std::string(target.begin(), target.end()), bytes);
            }
        }
    }
}

TEST(StringServices, HasNoEncodingBehindAnUnknownNumber) {
    EXPECT_FALSE(StringServices::isWellFormed(0x0BADu, "a", 1));
    EXPECT_EQ(StringServices::encode(0x0BADu, "a", 0, '?', nullptr, 0).units, 0);
    EXPECT_EQ(GetApplicationTextEncoding(), kCFStringEncodingMacRoman);
}

}  // namespace

#include "tests/foundation/TestText.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace {

constexpr long kNoLong = std::numeric_limits<long>::max();
constexpr unsigned long kNoULong = std::numeric_limits<unsigned long>::max();
constexpr double kNoDouble = 1.7976931348623157e308;

TEST(KW_String_Numbers, ReadsIntegers) {
    using Case = std::tuple<const char*, long, unsigned long>;
    constexpr long kLeast = std::numeric_limits<long>::min();
    for (const auto& [text, value, withoutSign] :
         {Case{nullptr, 0, 0}, Case{"", 0, 0}, Case{"12ab", 12, 12}, Case{"abc", kNoLong, kNoULong},
          Case{"+", kNoLong, kNoULong}, Case{"x-5", -5, 5}, Case{"-x", 0, kNoULong}, Case{"-", 0, kNoULong},
          Case{"--5", 0, 5}, Case{"- 5", 0, 5}, Case{"  +7", 7, 7}, Case{"a-b5", 0, 5}, Case{"x12y3", 12, 12},
          Case{"\xFF\x80 9", 9, 9}, Case{"9223372036854775807", kNoLong, kNoLong},
          Case{"-9223372036854775808", kLeast, 1UL << 63}, Case{"9223372036854775808", kLeast, 1UL << 63},
          Case{"18446744073709551615", -1, kNoULong}, Case{"-18446744073709551617", -1, 1}}) {
        EXPECT_EQ(KW_String::ToLong(text), value) << (text == nullptr ? "null" : text);
        EXPECT_EQ(KW_String::ToULong(text), withoutSign) << (text == nullptr ? "null" : text);
    }
}

TEST(KW_String_Numbers, ReadsDoubles) {
    const std::string nines(5000, '9');
    const std::string zeros(5000, '0');
    const double infinity = std::numeric_limits<double>::infinity();
    using Case = std::pair<const char*, double>;
    for (const auto& [text, value] :
         {Case("", 0.0), Case("3,25", 3.25), Case("x3.5y", 3.5), Case("1e+3", 1000.0), Case("1e3", 1.0),
          Case("1E+3", 1.0), Case("2e-1", 0.2), Case("1e+", 1.0), Case("5.", kNoDouble), Case(".", kNoDouble),
          Case("abc", kNoDouble), Case("-.5", -0.5), Case("--5", -0.0), Case("-e+5", -0.0),
          Case("1.2.3", 1.2), Case("1e+400", infinity), Case("-1e+99999999999", -infinity),
          Case("0e+9223372036854775807", 0.0), Case("1e-9223372036854775807", 0.0)}) {
        const double read = KW_String::ToDouble(text);
        EXPECT_DOUBLE_EQ(read, value) << text;
        EXPECT_EQ(std::signbit(read), std::signbit(value)) << text;
    }
    EXPECT_EQ(KW_String::ToDouble(nullptr), 0.0);
    EXPECT_EQ(KW_String::ToDouble(("1e+" + zeros + "2").c_str()), 100.0);
    EXPECT_EQ(KW_String::ToDouble(("1" + zeros).c_str()), infinity);
    EXPECT_EQ(KW_String::ToDouble(("0." + zeros + "1").c_str()), 0.0);
    // The exponent wraps as a 64-bit value; whatever it is then, the answer comes at once.
    EXPECT_FALSE(std::isnan(KW_String::ToDouble(("1e+" + nines).c_str())));
}

TEST(KW_String_Numbers, TellsWhatIsANumber) {
    using Case = std::tuple<const char*, bool, short>;
    for (const auto& [held, integer, kind] :
         {Case{nullptr, false, 0}, Case{"", false, 0},      Case{" ", false, 0},     Case{"+", false, 0},
          Case{"- ", false, 0},    Case{"7", true, 1},      Case{" -12", true, 1},   Case{"+ 7", true, 1},
          Case{" +  7", true, 1},  Case{"7 ", false, 0},    Case{"+-7", false, 0},   Case{"\t7", false, 0},
          Case{"1.5", false, 2},   Case{",5", false, 2},    Case{"-.5", false, 2},   Case{"1.", false, 0},
          Case{".", false, 0},     Case{"1.2.3", false, 0}, Case{"1,2.3", false, 0}, Case{"1.5 ", false, 0},
          Case{"0x1", false, 0},   Case{"1e+3", false, 0},  Case{"- 1,50", false, 2}}) {
        const char* const name = held == nullptr ? "null" : held;
        EXPECT_EQ(KW_String::IsIntegerNumber(held), integer) << name;
        EXPECT_EQ(KW_String::IsNumber(held), kind) << name;
        const KW_String string(held, kSystem);
        EXPECT_EQ(KW_String::IsIntegerNumber(string), integer) << name;
        EXPECT_EQ(KW_String::IsNumber(string), kind) << name;
    }
    EXPECT_FALSE(KW_String::IsIntegerNumber(text(u"\u0661\uFF11"))) << "digits of other scripts are none";
}

std::u16string printed(const char* format, auto... arguments) {
    char buffer[2048];
    const int length = std::snprintf(buffer, sizeof buffer, format, arguments...);
    return std::u16string(buffer, buffer + length);
}

TEST(KW_String_Numbers, WritesIntegersAsPrintfDoes) {
    for (const long value : {0L, 42L, -42L, kNoLong, std::numeric_limits<long>::min()}) {
        for (const unsigned int width : {0u, 1u, 5u, 20u, 400u}) {
            EXPECT_EQ(content(KW_String::LongToString(value, width)),
                      printed("%*ld", static_cast<int>(width), value));
        }
    }
    EXPECT_EQ(KW_String::LongToString(42, 0xFFFFFFFF).length, 1000u);
}

TEST(KW_String_Numbers, WritesDoublesAsPrintfDoes) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double value : {0.0, -0.0, 2.7, -2.5, 0.5, 1.0 / 3, 1e15, 1e-7, 123456789.0, 1e308, 5e-324,
                               infinity, -infinity, std::nan("")}) {
        for (const int width : {0, 8, 300}) {
            for (const int decimals : {0, 1, 2, 17, 300}) {
                EXPECT_EQ(
                    content(KW_String::DoubleToString(value, static_cast<unsigned int>(width),
                                                      static_cast<unsigned int>(decimals))),
                    decimals == 0 ? printed("%*g", width, value) : printed("%*.*f", width, decimals, value));
            }
        }
        for (const int decimals : {std::numeric_limits<int>::min(), -1, 0, 3})
            EXPECT_EQ(content(KW_String::DoubleToString(value, decimals)),
                      decimals < 0 ? printed("%g", value) : printed("%.*f", decimals, value));
    }
    EXPECT_EQ(KW_String::DoubleToString(1e308, 0xFFFFFFFF, 0xFFFFFFFF).length, 309u + 1 + 1000);
    EXPECT_EQ(KW_String::DoubleToString(1.0, std::numeric_limits<int>::max()).length, 2u + 1000);
}

TEST(KW_String_Numbers, FormatsAndCutsAt2047Bytes) {
    EXPECT_EQ(content(KW_String::Format("%d %s\x8E", 5, "x")), u"5 x\u00E9");
    EXPECT_EQ(content(KW_String::Format("%s", "")), u"");
    const std::string longText(5000, 'a');
    EXPECT_EQ(content(KW_String::Format("%s", longText.c_str())), std::u16string(2047, u'a'));
}

TEST(KW_String_Numbers, CountsTheBytesOfACharText) {
    EXPECT_EQ(KW_String::Length("abc"), 3u);
    EXPECT_EQ(KW_String::Length(""), 0u);
    EXPECT_EQ(KW_String::Length(nullptr), 0u);
}

}  // namespace

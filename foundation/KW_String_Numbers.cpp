#include "foundation/KW_String.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

namespace {

constexpr unsigned int kMostWidth = 1000;
constexpr unsigned int kMostDecimals = 1000;

template <typename Unit>
bool isDigit(Unit unit) {
    return unit >= '0' && unit <= '9';
}

// The value of the run of digits at p, modulo 2 to the 64.
unsigned long digitsAt(const char* p) {
    unsigned long value = 0;
    for (; isDigit(*p); ++p)
        value = value * 10 + static_cast<unsigned long>(*p - '0');
    return value;
}

template <typename Unit>
const Unit* skipBlanksAndSign(const Unit* p) {
    while (*p == ' ')
        ++p;
    if (*p == '+' || *p == '-') ++p;
    while (*p == ' ')
        ++p;
    return p;
}

template <typename Unit>
bool isInteger(const Unit* text) {
    if (text == nullptr) return false;
    text = skipBlanksAndSign(text);
    if (*text == 0) return false;
    while (isDigit(*text))
        ++text;
    return *text == 0;
}

template <typename Unit>
short numberKind(const Unit* text) {
    constexpr short kNone = 0;
    constexpr short kInteger = 1;
    constexpr short kDecimal = 2;
    if (text == nullptr) return kNone;
    text = skipBlanksAndSign(text);
    if (*text == 0) return kNone;
    while (isDigit(*text))
        ++text;
    if (*text == 0) return kInteger;
    if ((*text != '.' && *text != ',') || !isDigit(text[1])) return kNone;
    ++text;
    while (isDigit(*text))
        ++text;
    return *text == 0 ? kDecimal : kNone;
}

// Multiplies or divides `steps` times by ten, ending early when no further step changes the value.
double scaled(double value, bool up, unsigned long steps) {
    for (; steps > 0; --steps) {
        const double next = up ? value * 10.0 : value / 10.0;
        if (next == value) break;
        value = next;
    }
    return value;
}

KW_String systemText(const std::string& text) {
    return KW_String(text.c_str(), KW_String::Encoding_System);
}

KW_String paddedLeft(std::string text, unsigned int width) {
    const std::size_t wanted = std::min(width, kMostWidth);
    if (text.size() < wanted) text.insert(0, wanted - text.size(), ' ');
    return systemText(text);
}

std::string fixedText(double value, unsigned int decimals) {
    char text[kMostDecimals + std::numeric_limits<double>::max_exponent10 + 8];
    const int precision = static_cast<int>(std::min(decimals, kMostDecimals));
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, precision).ptr;
    return std::string(text, end);
}

std::string shortestText(double value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6).ptr;
    return std::string(text, end);
}

}  // namespace

long KW_String::ToLong(const char* text) {
    if (text == nullptr || *text == 0) return 0;
    while (*text != 0 && *text != '-' && !isDigit(*text))
        ++text;
    if (*text == 0) return std::numeric_limits<long>::max();
    // digitsAt gives 0 when no digit follows the sign.
    if (*text == '-') return static_cast<long>(0 - digitsAt(text + 1));
    return static_cast<long>(digitsAt(text));
}

unsigned long KW_String::ToULong(const char* text) {
    if (text == nullptr || *text == 0) return 0;
    while (*text != 0 && !isDigit(*text))
        ++text;
    if (*text == 0) return std::numeric_limits<unsigned long>::max();
    return digitsAt(text);
}

double KW_String::ToDouble(const char* text) {
    constexpr double kNoNumber = std::numeric_limits<double>::max();
    if (text == nullptr || *text == 0) return 0.0;
    while (*text != 0 && std::strchr(".,-0123456789", *text) == nullptr)
        ++text;
    if (*text == 0) return kNoNumber;
    double sign = 1.0;
    if (*text == '-') {
        sign = -1.0;
        ++text;
    }
    double value = 0.0;
    for (; isDigit(*text); ++text)
        value = value * 10.0 + (*text - '0');
    if (*text == '.' || *text == ',') {
        ++text;
        if (!isDigit(*text)) return kNoNumber;
        double weight = 0.1;
        for (; isDigit(*text); ++text) {
            value += (*text - '0') * weight;
            weight /= 10.0;
        }
    }
    if (text[0] == 'e' && (text[1] == '+' || text[1] == '-') && isDigit(text[2])) {
        const long exponent = ToLong(text + 2);
        if (exponent > 0) value = scaled(value, text[1] == '+', static_cast<unsigned long>(exponent));
    }
    return sign * value;
}

bool KW_String::IsIntegerNumber(const char* text) {
    return isInteger(text);
}

bool KW_String::IsIntegerNumber(const KW_String& text) {
    return isInteger(text.data);
}

short KW_String::IsNumber(const char* text) {
    return numberKind(text);
}

short KW_String::IsNumber(const KW_String& text) {
    return numberKind(text.data);
}

KW_String KW_String::LongToString(const long& value, unsigned int width) {
    return paddedLeft(std::to_string(value), width);
}

KW_String KW_String::DoubleToString(double value, unsigned int width, unsigned int decimals) {
    return paddedLeft(decimals == 0 ? shortestText(value) : fixedText(value, decimals), width);
}

KW_String KW_String::DoubleToString(double value, int decimals) {
    return systemText(decimals < 0 ? shortestText(value)
                                   : fixedText(value, static_cast<unsigned int>(decimals)));
}

KW_String KW_String::Format(const char* format, ...) {
    if (format == nullptr) return KW_String();
    char text[2048];
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return length < 0 ? KW_String() : KW_String(text, Encoding_System);
}

unsigned int KW_String::Length(const char* text) {
    return text == nullptr ? 0 : static_cast<unsigned int>(std::strlen(text));
}

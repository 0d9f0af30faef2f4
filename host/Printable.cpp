#include "host/Printable.h"

#include <unicode/utf8.h>
#include <array>
#include <cstdio>

namespace host {

namespace {

bool isPrintable(std::int32_t character) {
    return character >= 0x20 && !(character >= 0x7F && character < 0xA0) &&
           !(character >= 0x2028 && character <= 0x202E) && !(character >= 0x2066 && character <= 0x2069);
}

void appendEscaped(std::string& result, char byte) {
    if (byte == '\n') {
        result += "\\n";
    } else if (byte == '\t') {
        result += "\\t";
    } else {
        std::array<char, 8> hex{};
        std::snprintf(hex.data(), hex.size(), "\\x%02X",
                      static_cast<unsigned int>(static_cast<unsigned char>(byte)));
        result += hex.data();
    }
}

}  // namespace

std::string escaped(std::string_view text,
                    void (*escape)(std::string& result, std::string_view piece, std::int32_t character)) {
    std::string result;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        UChar32 character = 0;
        U8_NEXT(text.data(), end, text.size(), character);
        const std::string_view piece = text.substr(start, end - start);
        if (isPrintable(character)) {
            result += piece;
        } else {
            escape(result, piece, character);
        }
    }
    return result;
}

std::string printable(std::string_view text) {
    return escaped(text, [](std::string& result, std::string_view piece, std::int32_t) {
        for (const char byte : piece)
            appendEscaped(result, byte);
    });
}

std::string inQuotes(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '"' || character == '\\') escaped += '\\';
        escaped += character;
    }
    return '"' + printable(escaped) + '"';
}

}  // namespace host

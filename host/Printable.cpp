#include "host/Printable.h"

#include <unicode/utf8.h>
#include <array>
#include <cstdio>

namespace host {

namespace {

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

bool isUnprintable(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) ||
           (character >= 0x2028 && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

std::string printable(std::string_view text) {
    std::string result;
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        UChar32 character = 0;
        U8_NEXT(bytes, end, text.size(), character);
        const std::string_view piece = text.substr(start, end - start);
        if (character >= 0 && !isUnprintable(static_cast<char32_t>(character))) {
            result += piece;
        } else {
            for (const char byte : piece)
                appendEscaped(result, byte);
        }
    }
    return result;
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

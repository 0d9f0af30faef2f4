#pragma once

#include "foundation/KW_String.h"

#include <string>

/// Texts of the tests to and from UTF-8. The empty text is the empty string, not the null string.
inline KW_String text(const std::string& utf8) {
    return KW_String(utf8.c_str(), static_cast<unsigned int>(utf8.size()), KW_String::Encoding_UTF8);
}

inline std::string utf8(const KW_String& text) {
    const KW_CString bytes = text.ToCStr(KW_String::Encoding_UTF8);
    return bytes.data == nullptr ? std::string() : std::string(bytes.data, bytes.size - 1);
}

inline std::string withLineEnds(std::string text, const std::string& end) {
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += end.size())
        text.replace(at, 1, end);
    return text;
}

/// UTF-16 with the lower byte first, without a byte order mark.
inline std::string utf16(const std::string& latin1) {
    std::string bytes;
    for (const char character : latin1)
        bytes += {character, '\0'};
    return bytes;
}

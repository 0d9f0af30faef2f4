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

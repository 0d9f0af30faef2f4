#pragma once

#include "foundation/KW_String.h"

#include <string>

namespace support {

/// The string that these bytes mean in UTF-8.
inline KW_String text(const std::string& utf8) {
    return KW_String(utf8.c_str(), KW_String::Encoding_UTF8);
}

/// The string in UTF-8; "null" for the null string.
inline std::string utf8(const KW_String& string) {
    return string.data == nullptr ? "null" : string.ToCStr(KW_String::Encoding_UTF8).data;
}

}  // namespace support

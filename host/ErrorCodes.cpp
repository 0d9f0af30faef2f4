#include "host/ErrorCodes.h"

#include <array>
#include <cstdio>

namespace host {

std::string errorText(GSErrCode code) {
    constexpr GSErrCode kSmall = 0xFFFF;
    if (code >= -kSmall && code <= kSmall) return std::to_string(code);
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned int>(code));
    return text.data();
}

std::string fourCharacters(GSType code) {
    std::string text;
    for (const int shift : {24, 16, 8, 0}) {
        const auto character = static_cast<char>(code >> shift & 0xFF);
        text += character >= ' ' && character <= '~' ? character : '?';
    }
    return text;
}

}  // namespace host

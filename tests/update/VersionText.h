#pragma once

#include <string>

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

#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Letters, addresses and URLs in plain ASCII, whatever the process's locale.
namespace platform {

constexpr char asciiLower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

constexpr bool startsWithIgnoringCase(std::string_view text, std::string_view lowerCasePrefix) {
    return text.size() >= lowerCasePrefix.size() &&
           std::equal(lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(),
                      [](char lower, char character) { return lower == asciiLower(character); });
}

/// Whether the text begins with http:// or https:// and the name of a server.
constexpr bool isWebAddress(std::string_view text) {
    for (const std::string_view scheme : {"http://", "https://"}) {
        if (!startsWithIgnoringCase(text, scheme)) continue;
        text.remove_prefix(scheme.size());
        return !text.substr(0, text.find_first_of("/?#")).empty();
    }
    return false;
}

/// One of the reserved and unreserved characters of RFC 3986.
constexpr bool mayStandInUrl(char character) {
    return (character >= '0' && character <= '9') ||
           (asciiLower(character) >= 'a' && asciiLower(character) <= 'z') ||
           std::string_view("-._~:/?#[]@!$&'()*+,;=").find(character) != std::string_view::npos;
}

inline constexpr std::string_view kHexDigits = "0123456789ABCDEF";

/// The text with every byte that a URL may not contain, and is not in `kept`, written as %XX.
inline std::string percentEscaped(std::string_view text, std::string_view kept = "") {
    std::string escaped;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (mayStandInUrl(character) || kept.find(character) != std::string_view::npos)
            escaped += character;
        else
            escaped += {'%', kHexDigits[byte / 16], kHexDigits[byte % 16]};
    }
    return escaped;
}

}  // namespace platform

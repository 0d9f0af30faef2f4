#include "platform/CFURL.h"

#include "platform/host/Ascii.h"
#include "platform/src/http/CFObjects.h"
#include "platform/StringServices.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

using platform::kHexDigits;
using platform::mayStandInUrl;

namespace {

std::optional<unsigned> hexValue(char digit) {
    if (digit >= 'a' && digit <= 'f') digit = static_cast<char>(digit - 'a' + 'A');
    const std::size_t value = kHexDigits.find(digit);
    if (value == std::string_view::npos) return std::nullopt;
    return static_cast<unsigned>(value);
}

/// The byte of the percent escape at `position`, if there is one.
std::optional<char> escapedByte(std::string_view text, std::size_t position) {
    if (text[position] != '%' || text.size() - position < 3) return std::nullopt;
    const auto high = hexValue(text[position + 1]);
    const auto low = hexValue(text[position + 2]);
    if (!high || !low) return std::nullopt;
    return static_cast<char>(*high * 16 + *low);
}

bool isValidUtf8(const std::string& bytes) {
    const std::unique_ptr<unsigned short[]> units(
        StringServices::decode(kCFStringEncodingUTF8, bytes.data(), static_cast<long>(bytes.size())).units);
    return units != nullptr;
}

}  // namespace

CFStringRef CFURLCreateStringByReplacingPercentEscapes(CFAllocatorRef, CFStringRef string,
                                                       CFStringRef charactersToLeaveEscaped) {
    if (string == nullptr || charactersToLeaveEscaped == nullptr) return nullptr;
    const std::string_view text = string->utf8;
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = escapedByte(text, i);
        if (byte && charactersToLeaveEscaped->utf8.find(*byte) == std::string::npos) {
            decoded += *byte;
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    if (!isValidUtf8(decoded)) return nullptr;
    return new CFString{std::move(decoded)};
}

CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef, CFStringRef string,
                                                    CFStringRef charactersToLeaveUnescaped,
                                                    CFStringRef legalCharactersToBeEscaped,
                                                    CFStringEncoding encoding) {
    if (string == nullptr || charactersToLeaveUnescaped != nullptr || legalCharactersToBeEscaped != nullptr ||
        encoding != kCFStringEncodingUTF8) {
        return nullptr;
    }
    return new CFString{platform::percentEscaped(string->utf8)};
}

CFURLRef CFURLCreateWithString(CFAllocatorRef, CFStringRef string, CFURLRef base) {
    if (string == nullptr || string->utf8.empty() || base != nullptr) return nullptr;
    const std::string_view text = string->utf8;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!mayStandInUrl(text[i]) && !escapedByte(text, i)) return nullptr;
    }
    return new CFURL{string->utf8};
}

void CFRelease(CFURLRef url) {
    delete url;
}

#pragma once

#include "platform/CFBase.h"

/// URLs of the operating system. A URL may contain the reserved and unreserved characters of RFC
/// 3986: letters and digits of ASCII and -._~:/?#[]@!$&'()*+,;=

struct CFURL;
using CFURLRef = const CFURL*;

/// Replaces every percent escape ("%" and two hexadecimal digits) by the byte that it represents, the bytes
/// being UTF-8, except the escapes of the ASCII characters in `charactersToLeaveEscaped`. A "%" without two
/// such digits stays. Null when the result is no valid UTF-8.
CFStringRef CFURLCreateStringByReplacingPercentEscapes(CFAllocatorRef allocator, CFStringRef string,
                                                       CFStringRef charactersToLeaveEscaped);

/// Escapes the bytes of every character that a URL may not contain ("%" is one).
/// `charactersToLeaveUnescaped` and `legalCharactersToBeEscaped` must be null, `encoding` UTF-8 (0x08000100);
/// otherwise the result is null.
CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef allocator, CFStringRef string,
                                                    CFStringRef charactersToLeaveUnescaped,
                                                    CFStringRef legalCharactersToBeEscaped,
                                                    CFStringEncoding encoding);

/// The string as a URL. Null when the string is empty or contains a character that a URL may not
/// contain, and with a base URL, which must be null.
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef string, CFURLRef base);

/// Null is ignored.
void CFRelease(CFURLRef url);

#include "foundation/KW_String.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

using Encoding = KW_String::Encoding;
using Byte = unsigned char;

struct ByteOrderMark {
    Encoding encoding;
    std::string_view bytes;
};

constexpr ByteOrderMark kMarks[] = {
    {KW_String::Encoding_UTF8, {"\xEF\xBB\xBF", 3}},    {KW_String::Encoding_UTF16LE, {"\xFF\xFE", 2}},
    {KW_String::Encoding_UTF16BE, {"\xFE\xFF", 2}},     {KW_String::Encoding_UTF32LE, {"\xFF\xFE\0\0", 4}},
    {KW_String::Encoding_UTF32BE, {"\0\0\xFE\xFF", 4}},
};

// The marks to look for, in this order: one that begins as a shorter one does stands before it.
constexpr ByteOrderMark kDetected[] = {
    {KW_String::Encoding_UTF16BE, {"\xFE\xFF", 2}},
    {KW_String::Encoding_UTF32LE, {"\xFF\xFE\0\0", 4}},
    {KW_String::Encoding_UTF16LE, {"\xFF\xFE", 2}},
    {KW_String::Encoding_Unsupported, {"\x0E\xFE\xFF", 3}},  // SCSU
    {KW_String::Encoding_UTF8, {"\xEF\xBB\xBF", 3}},
    {KW_String::Encoding_Unsupported, {"\xF7\x64\x4C", 3}},  // UTF-1
    {KW_String::Encoding_Unsupported, {"\xFB\xEE\x28", 3}},  // BOCU-1
    {KW_String::Encoding_UTF7, {"+/v8-", 5}},
    {KW_String::Encoding_UTF7, {"+/v8", 4}},
    {KW_String::Encoding_UTF7, {"+/v9", 4}},
    {KW_String::Encoding_UTF7, {"+/v+", 4}},
    {KW_String::Encoding_UTF7, {"+/v/", 4}},
    {KW_String::Encoding_Unsupported, {"\x84\x31\x95\x33", 4}},  // GB-18030
    {KW_String::Encoding_Unsupported, {"\xDD\x73\x66\x73", 4}},  // UTF-EBCDIC
    {KW_String::Encoding_UTF32BE, {"\0\0\xFE\xFF", 4}},
};

// Length of the well-formed sequence at p that begins with a byte from 80 on; 0 when there is none.
// `available` bytes may be read.
int multibyteLength(const Byte* p, unsigned long available) {
    const Byte lead = p[0];
    const int length = lead < 0xC2 || lead > 0xF4 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length == 0 || available < static_cast<unsigned long>(length)) return 0;
    const Byte lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const Byte highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (p[1] < lowest || p[1] > highest) return 0;
    for (int i = 2; i < length; ++i) {
        if ((p[i] & 0xC0) != 0x80) return 0;
    }
    return length;
}

bool isUTF8(const char* bytes, unsigned long size, bool requireMultibyte) {
    bool multibyte = false;
    const auto* p = reinterpret_cast<const Byte*>(bytes);
    const auto* const end = p + size;
    while (p < end) {
        if (*p < 0x80) {
            ++p;
            continue;
        }
        const int length = multibyteLength(p, static_cast<unsigned long>(end - p));
        if (length == 0) return false;
        multibyte = true;
        p += length;
    }
    return multibyte || !requireMultibyte;
}

// What text without a byte-order mark looks like; Encoding_None when it looks like none of the Unicode forms.
Encoding guessEncoding(const char* text, unsigned int size) {
    const auto* bytes = reinterpret_cast<const Byte*>(text);
    if (size % 4 == 0) {
        bool little = true;
        bool big = true;
        for (unsigned int i = 0; i < size && (little || big); i += 4) {
            little = little && bytes[i + 3] == 0 && bytes[i + 2] < 0x11;
            big = big && bytes[i] == 0 && bytes[i + 1] < 0x11;
        }
        if (little) return KW_String::Encoding_UTF32LE;
        if (big) return KW_String::Encoding_UTF32BE;
    }
    unsigned long evenZeros = 0;
    unsigned long oddZeros = 0;
    for (unsigned int i = 0; i < size; ++i) {
        if (bytes[i] == 0) ++(i % 2 == 0 ? evenZeros : oddZeros);
    }
    const double even = 2.0 * static_cast<double>(evenZeros) / size;
    const double odd = 2.0 * static_cast<double>(oddZeros) / size;
    if (even < 0.2 && odd > 0.6) return KW_String::Encoding_UTF16LE;
    if (even > 0.6 && odd < 0.2) return KW_String::Encoding_UTF16BE;
    return isUTF8(text, size, false) ? KW_String::Encoding_UTF8 : KW_String::Encoding_None;
}

}  // namespace

KW_CString KW_String::GetBOM(Encoding encoding) {
    KW_CString mark;
    mark.encoding = encoding;
    for (const ByteOrderMark& known : kMarks) {
        if (known.encoding != encoding) continue;
        mark.data = new char[known.bytes.size()];
        mark.size = static_cast<unsigned int>(known.bytes.size());
        known.bytes.copy(mark.data, mark.size);
    }
    return mark;
}

unsigned int KW_String::DetectBOM(const void* bytes, unsigned int size, Encoding& encoding) {
    if (bytes == nullptr) return 0;
    const std::string_view text(static_cast<const char*>(bytes), size);
    for (const ByteOrderMark& mark : kDetected) {
        if (!text.starts_with(mark.bytes)) continue;
        encoding = mark.encoding;
        return static_cast<unsigned int>(mark.bytes.size());
    }
    return 0;
}

bool KW_String::IsUTF8(const char* bytes, bool requireMultibyte) {
    return bytes != nullptr && isUTF8(bytes, std::strlen(bytes), requireMultibyte);
}

bool KW_String::IsUTF8(const char* bytes, unsigned int size, bool requireMultibyte) {
    return bytes != nullptr && isUTF8(bytes, size, requireMultibyte);
}

KW_String::Encoding KW_String::TextToString(KW_String& target, const char* bytes, unsigned int size,
                                            bool detect, Encoding encoding) {
    Encoding found = encoding;
    unsigned int markLength = DetectBOM(bytes, size, found);
    if (markLength == 0 && detect) found = bytes == nullptr ? Encoding_UTF32LE : guessEncoding(bytes, size);
    const Encoding used = found < Encoding_System ? Encoding_System : found;

    if (bytes == nullptr && !detect) {
        target.SetToNullString();
        return found;
    }
    // A count of 0 would mean "up to the terminator", so text without bytes is not read from them.
    const bool hasText = bytes != nullptr && size > markLength;
    if (!hasText || !CStringToKW_String(target, bytes + markLength, size - markLength, used, false))
        CStringToKW_String(target, "", 0, Encoding_System, false);
    return found;
}

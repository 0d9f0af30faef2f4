#include "foundation/KW_String_Internal.h"

#include "platform/StringServices.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <memory>

namespace {

using Encoding = KW_String::Encoding;

bool isUTF16(Encoding encoding) {
    return encoding == KW_String::Encoding_UTF16LE || encoding == KW_String::Encoding_UTF16BE;
}

bool isUTF32(Encoding encoding) {
    return encoding == KW_String::Encoding_UTF32LE || encoding == KW_String::Encoding_UTF32BE;
}

bool isNone(Encoding encoding) {
    return encoding < KW_String::Encoding_System;
}

// Bytes of one unit of the encoding, which is also the width of its terminator.
long unitWidth(Encoding encoding) {
    return isUTF32(encoding) ? 4 : isUTF16(encoding) ? 2 : 1;
}

bool isZero(char const* bytes, long width) {
    return std::all_of(bytes, bytes + width, [](char byte) { return byte == 0; });
}

long bytesBeforeTerminator(char const* bytes, long width) {
    if (width == 1) return static_cast<long>(std::strlen(bytes));
    long count = 0;
    while (!isZero(bytes + count, width))
        count += width;
    return count;
}

// The source as UTF-16, decoded into a buffer of its own unless it is UTF-16 already.
class Decoded {
public:
    // False when the bytes are malformed.
    bool from(Encoding encoding, char const* bytes, long byteCount) {
        if (encoding == KW_String::Encoding_UTF16LE) {
            if (byteCount % 2 != 0) return false;
            bytes_ = bytes;
            count_ = byteCount / 2;
            return true;
        }
        if (isUTF32(encoding)) {
            const bool bigEndian = encoding == KW_String::Encoding_UTF32BE;
            const long units = byteCount / 4;
            count_ = units > 0 ? UTF32toUTF16(bytes, nullptr, units, bigEndian) : 0;
            allocate();
            if (units > 0) UTF32toUTF16(bytes, buffer_.get(), units, bigEndian);
            return true;
        }
        const unsigned int mapped = KW_StringEncodingToMacStringEncoding(encoding);
        count_ = StringServices::decodedLength(mapped, bytes, byteCount);
        if (count_ < 0) return false;
        allocate();
        StringServices::decode(mapped, bytes, byteCount, reinterpret_cast<char*>(buffer_.get()));
        return true;
    }

    char const* units() const { return bytes_; }
    long count() const { return count_; }

private:
    void allocate() {
        buffer_.reset(new unsigned short[static_cast<std::size_t>(count_)]);
        bytes_ = reinterpret_cast<char const*>(buffer_.get());
    }

    std::unique_ptr<unsigned short[]> buffer_;
    char const* bytes_ = nullptr;
    long count_ = 0;
};

}  // namespace

unsigned int KW_StringEncodingToMacStringEncoding(Encoding encoding) {
    switch (encoding) {
        case KW_String::Encoding_UTF7:
            return kCFStringEncodingUTF7;
        case KW_String::Encoding_UTF8:
            return kCFStringEncodingUTF8;
        case KW_String::Encoding_UTF16LE:
            return kCFStringEncodingUnicode;
        case KW_String::Encoding_UTF16BE:
            return kCFStringEncodingUTF16BE;
        case KW_String::Encoding_UTF32LE:
            return kCFStringEncodingUTF32;
        case KW_String::Encoding_UTF32BE:
            return kCFStringEncodingUTF32BE;
        case KW_String::Encoding_ASCII:
            return kCFStringEncodingASCII;
        case KW_String::Encoding_MacRoman:
            return kCFStringEncodingMacRoman;
        case KW_String::Encoding_WindowsLatin1:
            return kCFStringEncodingWindowsLatin1;
        case KW_String::Encoding_ISOLatin1:
            return kCFStringEncodingISOLatin1;
        default:
            return GetApplicationTextEncoding();
    }
}

long UTF32toUTF16(void const* source, unsigned short* target, long count, bool bigEndian) {
    auto const* bytes = static_cast<char const*>(source);
    long produced = 0;
    const auto put = [&](std::uint32_t unit) {
        if (target != nullptr) target[produced] = static_cast<unsigned short>(unit);
        ++produced;
    };
    for (long i = 0; count <= 0 || i < count; ++i) {
        std::uint32_t value;
        std::memcpy(&value, bytes + i * 4, sizeof value);
        if (count <= 0 && value == 0) break;
        if (bigEndian) value = __builtin_bswap32(value);
        if (value < 0x10000 && (value & ~0x7FFu) != 0xD800) {
            put(value);
        } else if (value >= 0x10000 && value < 0x110000) {
            put(((value - 0x10000) >> 10) + 0xD800);
            put((value & 0x3FF) | 0xDC00);
        } else {
            put(0xFFFD);
        }
    }
    return produced;
}

long KW_String::ConvertChangeEncoding(Encoding sourceEncoding, char const* source, long sourceLength,
                                      Encoding targetEncoding, char* target, long targetSize,
                                      bool addTerminator, bool lossy) {
    constexpr long kFailed = -1;
    constexpr long kTooSmall = -2;
    constexpr long kNoSource = -3;
    constexpr long kBadSourceEncoding = -4;
    constexpr long kBadTargetEncoding = -5;

    if (source == nullptr) {
        if (target != nullptr && targetSize > 0) target[0] = 0;
        return kNoSource;
    }
    if (isNone(sourceEncoding)) return kBadSourceEncoding;
    if (isNone(targetEncoding)) return kBadTargetEncoding;

    const long terminator = addTerminator ? unitWidth(targetEncoding) : 0;
    const long room = std::max(targetSize, 0L);
    const long sourceWidth = unitWidth(sourceEncoding);
    const bool lessThanOneUnit = isUTF32(sourceEncoding) && sourceLength > 0 && sourceLength < sourceWidth;
    if (lessThanOneUnit || (sourceLength == 0 && isZero(source, sourceWidth))) {
        if (target != nullptr && terminator > room) return kTooSmall;
        if (target != nullptr) std::fill_n(target, terminator, '\0');
        return terminator;
    }

    if (sourceLength <= 0) sourceLength = bytesBeforeTerminator(source, sourceWidth);
    Decoded decoded;
    if (!decoded.from(sourceEncoding, source, sourceLength)) return kFailed;

    const StringServices::Encoded encoded =
        StringServices::encode(KW_StringEncodingToMacStringEncoding(targetEncoding), decoded.units(),
                               decoded.count(), lossy ? '?' : '\0', target, room);
    if (encoded.units == 0) return kFailed;
    if (target != nullptr) {
        if (encoded.units < decoded.count() || terminator > room - encoded.bytes) return kTooSmall;
        std::fill_n(target + encoded.bytes, terminator, '\0');
    }
    return encoded.bytes + terminator;
}

bool KW_String::CStringToKW_String(KW_String& target, char const* source, unsigned int byteCount,
                                   Encoding encoding, bool append) {
    if (source == nullptr) {
        if (!append) target.SetToNullString();
        return true;
    }
    const long bytes =
        ConvertChangeEncoding(encoding, source, byteCount, Encoding_UTF16LE, nullptr, 0, true, true);
    if (bytes < 0) return false;
    const unsigned int units = KW_StringUnits(static_cast<unsigned long>(bytes / 2));
    const unsigned int start = append ? target.length : 0;
    target.THIS_Alloc(KW_StringUnits(static_cast<unsigned long>(start) + units), append);
    ConvertChangeEncoding(encoding, source, byteCount, Encoding_UTF16LE,
                          reinterpret_cast<char*>(target.data + start), bytes, true, true);
    target.length = start + units - 1;
    return true;
}

namespace {

// The bytes of a range of units, as ConvertChangeEncoding takes them.
struct UnitRange {
    char const* bytes;  // null when there is no such range
    long byteCount;     // 0: up to the terminator
};

UnitRange unitRange(KW_String const& source, unsigned int start, unsigned int count) {
    if (source.data == nullptr || start > source.length) return {nullptr, 0};
    const unsigned int n = std::min(count, source.length - start);
    return {reinterpret_cast<char const*>(source.data + start), n * 2L};
}

}  // namespace

bool KW_String::KW_StringToCString(char** out, unsigned int& outSize, Encoding encoding,
                                   KW_String const& source, unsigned int start, unsigned int count) {
    *out = nullptr;
    outSize = 0;
    const UnitRange range = unitRange(source, start, count);
    const long size = ConvertChangeEncoding(Encoding_UTF16LE, range.bytes, range.byteCount, encoding, nullptr,
                                            0, true, true);
    if (size < 0) return false;
    std::unique_ptr<char[]> bytes(new char[KW_StringUnits(static_cast<unsigned long>(size))]);
    const long written = ConvertChangeEncoding(Encoding_UTF16LE, range.bytes, range.byteCount, encoding,
                                               bytes.get(), size, true, true);
    if (written < 0) return false;
    *out = bytes.release();
    outSize = static_cast<unsigned int>(written);
    return true;
}

int KW_String::KW_StringToCStringLenBytes(Encoding encoding, KW_String const& source, unsigned int start,
                                          unsigned int count) {
    const UnitRange range = unitRange(source, start, count);
    const long size = ConvertChangeEncoding(Encoding_UTF16LE, range.bytes, range.byteCount, encoding, nullptr,
                                            0, false, true);
    return size < 0 ? -1 : static_cast<int>(size);
}

unsigned short KW_String::CharToKW_Char(char byte, Encoding encoding) {
    unsigned short unit = 0;
    const long size = ConvertChangeEncoding(encoding, &byte, 1, Encoding_UTF16LE,
                                            reinterpret_cast<char*>(&unit), sizeof unit, false, true);
    return size == sizeof unit ? unit : 0;
}

char KW_String::KW_CharToChar(unsigned short unit, Encoding encoding) {
    char byte = '?';
    const long size = ConvertChangeEncoding(Encoding_UTF16LE, reinterpret_cast<char const*>(&unit),
                                            sizeof unit, encoding, &byte, 1, false, false);
    return size == 1 ? byte : '?';
}

// tolower and toupper are defined for bytes only.
unsigned short KW_String::KW_CharToLowerCase(unsigned short unit) {
    return unit > 0xFF ? unit : static_cast<unsigned short>(std::tolower(unit));
}

unsigned short KW_String::KW_CharToUpperCase(unsigned short unit) {
    return unit > 0xFF ? unit : static_cast<unsigned short>(std::toupper(unit));
}

KW_CString KW_String::ToCStr(Encoding encoding) const {
    KW_CString result;
    ToCStr(result, encoding);
    return result;
}

void KW_String::ToCStr(KW_CString& target, Encoding encoding) const {
    KW_CString converted;
    converted.encoding = encoding;
    KW_StringToCString(&converted.data, converted.size, encoding, *this, 0, 0);
    target = std::move(converted);
}

#include "foundation/KW_String_Internal.h"

#include "foundation/UnitSearch.h"
#include "platform/StringServices.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <memory>

namespace {

using Encoding = KW_String::Encoding;
using StringServices::Decoded;

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

bool isZero(const char* bytes, long width) {
    return std::all_of(bytes, bytes + width, [](char byte) { return byte == 0; });
}

long bytesBeforeTerminator(const char* bytes, long width) {
    if (width == 1) return static_cast<long>(std::strlen(bytes));
    long count = 0;
    while (!isZero(bytes + count, width))
        count += width;
    return count;
}

// Bytes in an encoding, their number known.
class ByteText {
public:
    // A count of 0 or less means up to the terminator; text found empty that way counts as empty only with 0.
    ByteText(Encoding encoding, const char* bytes, long count)
        : bytes_(bytes), byteCount_(count), encoding_(encoding) {
        if (count <= 0) byteCount_ = bytesBeforeTerminator(bytes, unitWidth(encoding));
        isEmpty_ = count >= 0 && byteCount_ < (isUTF32(encoding) ? 4 : 1);
    }

    bool isEmpty() const { return isEmpty_; }

    Decoded decoded() const {
        if (isUTF32(encoding_)) return decodedUTF32();
        return StringServices::decode(KW_StringEncodingToMacStringEncoding(encoding_), bytes_, byteCount_);
    }

private:
    Decoded decodedUTF32() const {
        const bool isBigEndian = encoding_ == KW_String::Encoding_UTF32BE;
        const long unitCount = byteCount_ / 4;
        const long count = unitCount == 0 ? 0 : UTF32toUTF16(bytes_, nullptr, unitCount, isBigEndian);
        auto* const units = new unsigned short[static_cast<std::size_t>(count) + 1];
        if (unitCount > 0) UTF32toUTF16(bytes_, units, unitCount, isBigEndian);
        units[count] = 0;
        return {units, count};
    }

    const char* bytes_;
    long byteCount_;
    Encoding encoding_;
    bool isEmpty_;
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

long KW_String::ConvertChangeEncoding(Encoding sourceEncoding, const char* source, long sourceLength,
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
    const ByteText text(sourceEncoding, source, sourceLength);
    if (text.isEmpty()) {
        if (target != nullptr && terminator > room) return kTooSmall;
        if (target != nullptr) std::fill_n(target, terminator, '\0');
        return terminator;
    }

    const Decoded decoded = text.decoded();
    const std::unique_ptr<unsigned short[]> owned(decoded.units);
    if (decoded.units == nullptr) return kFailed;

    const auto encode = [&](char* bytes, long size) {
        return StringServices::encode(KW_StringEncodingToMacStringEncoding(targetEncoding),
                                      reinterpret_cast<const char*>(decoded.units), decoded.count,
                                      lossy ? '?' : '\0', bytes, size);
    };
    // With more room than it needs, an encoding may write behind its result.
    const StringServices::Encoded needed = encode(nullptr, 0);
    if (needed.units == 0) return kFailed;
    if (target == nullptr) return needed.bytes + terminator;
    const StringServices::Encoded encoded = encode(target, std::min(room, needed.bytes));
    if (encoded.units == 0) return kFailed;
    if (encoded.units < decoded.count || terminator > room - encoded.bytes) return kTooSmall;
    std::fill_n(target + encoded.bytes, terminator, '\0');
    return encoded.bytes + terminator;
}

bool KW_String::CStringToKW_String(KW_String& target, const char* source, unsigned int byteCount,
                                   Encoding encoding, bool append) {
    if (source == nullptr) {
        if (!append) target.SetToNullString();
        return true;
    }
    if (isNone(encoding)) return false;
    const ByteText text(encoding, source, byteCount);

    // Decoded aside, since malformed bytes must leave the target as it is.
    const Decoded decoded = text.isEmpty() ? Decoded{new unsigned short[1]{}, 0} : text.decoded();
    std::unique_ptr<unsigned short[]> units(decoded.units);
    if (decoded.count == 0 && !text.isEmpty()) return false;

    const unsigned int start = append ? target.length : 0;
    const unsigned int needed = KW_StringUnits(start + static_cast<unsigned long>(decoded.count) + 1);
    if (start == 0 && target.capacity < needed) {
        delete[] target.data;
        target.data = units.release();
        target.capacity = needed;
    } else {
        target.THIS_Alloc(needed, append);
        std::memcpy(target.data + start, units.get(),
                    (static_cast<std::size_t>(decoded.count) + 1) * sizeof(unsigned short));
    }
    target.length = needed - 1;
    return true;
}

namespace {

// Units of a string, as bytes; null when there is no such range.
struct UnitRange {
    const char* units;
    long count;
};

// `count` units of the string from `start` on, or all with 0; never past its end.
UnitRange unitRange(const KW_String& source, unsigned int start, unsigned int count) {
    if (source.data == nullptr || start > source.length) return {nullptr, 0};
    const unsigned int rest = source.length - start;
    return {reinterpret_cast<const char*>(source.data + start), count == 0 ? rest : std::min(count, rest)};
}

long unitsBeforeTerminator(const KW_String& source, unsigned int start) {
    return static_cast<long>(findUnit(source.data, source.length, start, 0) - start);
}

}  // namespace

bool KW_String::KW_StringToCString(char** out, unsigned int& outSize, Encoding encoding,
                                   const KW_String& source, unsigned int start, unsigned int count) {
    *out = nullptr;
    outSize = 0;
    UnitRange range = unitRange(source, start, count);
    if (range.units == nullptr || isNone(encoding)) return false;
    StringServices::EncodedText text{};
    if (encoding == Encoding_UTF8) text = StringServices::encodeLongAscii(range.units, range.count);
    if (text.bytes == nullptr) {
        if (count == 0) range.count = unitsBeforeTerminator(source, start);
        text = StringServices::encodeText(KW_StringEncodingToMacStringEncoding(encoding), range.units,
                                          range.count, unitWidth(encoding));
    }
    std::unique_ptr<char[]> bytes(text.bytes);
    outSize = KW_StringUnits(static_cast<unsigned long>(text.size));
    *out = bytes.release();
    return text.bytes != nullptr;
}

int KW_String::KW_StringToCStringLenBytes(Encoding encoding, const KW_String& source, unsigned int start,
                                          unsigned int count) {
    UnitRange range = unitRange(source, start, count);
    if (range.units == nullptr || isNone(encoding)) return -1;
    if (count == 0) range.count = unitsBeforeTerminator(source, start);
    const StringServices::Encoded encoded = StringServices::encode(
        KW_StringEncodingToMacStringEncoding(encoding), range.units, range.count, '?', nullptr, 0);
    return encoded.units < range.count ? -1 : static_cast<int>(encoded.bytes);
}

unsigned short KW_String::CharToKW_Char(char byte, Encoding encoding) {
    if (isNone(encoding)) return 0;
    const ByteText text(encoding, &byte, 1);
    const Decoded decoded = text.decoded();
    const std::unique_ptr<unsigned short[]> owned(decoded.units);
    return decoded.count == 1 ? decoded.units[0] : 0;
}

char KW_String::KW_CharToChar(unsigned short unit, Encoding encoding) {
    constexpr char kNoByte = '?';
    if (isNone(encoding)) return kNoByte;
    char byte = kNoByte;
    const StringServices::Encoded encoded =
        StringServices::encode(KW_StringEncodingToMacStringEncoding(encoding),
                               reinterpret_cast<const char*>(&unit), 1, '\0', &byte, 1);
    return encoded.units == 1 ? byte : kNoByte;
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
    result.encoding = encoding;
    KW_StringToCString(&result.data, result.size, encoding, *this, 0, 0);
    return result;
}

void KW_String::ToCStr(KW_CString& target, Encoding encoding) const {
    target = ToCStr(encoding);
}

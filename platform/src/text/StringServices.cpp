#include "platform/StringServices.h"

#include "platform/src/text/OneByte.h"
#include "platform/src/text/Units.h"
#include "platform/src/text/Utf7.h"
#include "platform/src/text/Utf8.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <memory>
#include <utility>

static_assert(std::endian::native == std::endian::little,
              "the byte orders below assume a little-endian machine");

unsigned int GetApplicationTextEncoding() {
    return kCFStringEncodingMacRoman;
}

namespace StringServices {

namespace {

void copyExchanged(const char* from, long units, char* to) {
    for (long i = 0; i < units; ++i) {
        const std::uint16_t unit = text::unitAt(from, i);
        text::setUnit(to, i, static_cast<std::uint32_t>(unit << 8 | unit >> 8));
    }
}

Encoded encodeUtf16(bool bigEndian, const char* units, long unitCount, char* target, long targetSize) {
    if (target == nullptr) return {unitCount, unitCount * 2};
    const long fitting = std::min(unitCount, targetSize / 2);
    if (bigEndian) {
        copyExchanged(units, fitting, target);
    } else if (fitting > 0) {
        std::memcpy(target, units, static_cast<std::size_t>(fitting) * 2);
    }
    return {fitting, fitting * 2};
}

constexpr long kBlock = 16;

// Writes a block of units as UTF-32; false, with nothing of use written, when there is a surrogate among
// them. Both loops are without a way out, so that the compiler makes them a few wide operations.
bool widenBlock(bool bigEndian, const char* units, char* target) {
    bool surrogates = false;
    for (long i = 0; i < kBlock; ++i)
        surrogates |= text::isSurrogate(text::unitAt(units, i));
    if (surrogates) return false;
    for (long i = 0; i < kBlock; ++i) {
        const std::uint32_t unit = text::unitAt(units, i);
        const std::uint32_t stored = bigEndian ? (unit & 0xFF) << 24 | (unit & 0xFF00) << 8 : unit;
        std::memcpy(target + i * 4, &stored, sizeof stored);
    }
    return true;
}

Encoded encodeUtf32(bool bigEndian, const char* units, long unitCount, char lossByte, char* target,
                    long targetSize) {
    const long room = target == nullptr ? std::numeric_limits<long>::max() : targetSize;
    long in = 0;
    long out = 0;
    while (in < unitCount && room - out >= 4) {
        while (target != nullptr && unitCount - in >= kBlock && room - out >= kBlock * 4 &&
               widenBlock(bigEndian, units + in * 2, target + out)) {
            in += kBlock;
            out += kBlock * 4;
        }
        if (in == unitCount || room - out < 4) break;
        text::Character c = text::characterAt(units, unitCount, in);
        if (c.units == 1 && text::isSurrogate(c.codePoint)) {
            if (lossByte == 0) break;
            c.codePoint = static_cast<unsigned char>(lossByte);
        }
        if (target != nullptr) {
            const std::uint32_t stored = bigEndian ? __builtin_bswap32(c.codePoint) : c.codePoint;
            std::memcpy(target + out, &stored, sizeof stored);
        }
        out += 4;
        in += c.units;
    }
    return {in, out};
}

// The first elements in an array of exactly their number, which is the given one if that is so long.
template <typename Element>
Element* exactly(std::unique_ptr<Element[]> array, long size, long count) {
    if (count == size) return array.release();
    auto* const exact = new Element[static_cast<std::size_t>(count)];
    std::memcpy(exact, array.get(), static_cast<std::size_t>(count) * sizeof(Element));
    return exact;
}

// Room for the units and a zero unit, in which `decodeInto` writes; it returns their number or -1.
template <typename DecodeInto>
Decoded decodedText(long room, DecodeInto decodeInto) {
    std::unique_ptr<unsigned short[]> units(new unsigned short[static_cast<std::size_t>(room) + 1]);
    const long count = decodeInto(reinterpret_cast<char*>(units.get()));
    if (count < 0) return {nullptr, 0};
    units[static_cast<std::size_t>(count)] = 0;
    return {exactly(std::move(units), room + 1, count + 1), count};
}

}  // namespace

Decoded decode(unsigned int encoding, const char* bytes, long byteCount) {
    switch (encoding) {
        case kCFStringEncodingUnicode:
        case kCFStringEncodingUTF16BE:
            if (byteCount % 2 != 0) return {nullptr, 0};
            return decodedText(byteCount / 2, [&](char* units) {
                if (encoding == kCFStringEncodingUTF16BE) {
                    copyExchanged(bytes, byteCount / 2, units);
                } else if (byteCount > 0) {
                    std::memcpy(units, bytes, static_cast<std::size_t>(byteCount));
                }
                return byteCount / 2;
            });
        case kCFStringEncodingUTF7:
            return decodedText(byteCount,
                               [&](char* units) { return text::utf7Decode(bytes, byteCount, units); });
        case kCFStringEncodingUTF8: {
            const long room = text::utf8DecodedRoom(bytes, byteCount);
            return decodedText(room,
                               [&](char* units) { return text::utf8Decode(bytes, byteCount, units, room); });
        }
        default:
            const auto* const table = text::oneByteTable(encoding);
            if (table == nullptr) return {nullptr, 0};
            return decodedText(
                byteCount, [&](char* units) { return text::oneByteDecode(*table, bytes, byteCount, units); });
    }
}

Encoded encode(unsigned int encoding, const char* units, long unitCount, char lossByte, char* target,
               long targetSize) {
    switch (encoding) {
        case kCFStringEncodingUnicode:
        case kCFStringEncodingUTF16BE:
            return encodeUtf16(encoding == kCFStringEncodingUTF16BE, units, unitCount, target, targetSize);
        case kCFStringEncodingUTF32:
        case kCFStringEncodingUTF32BE:
            return encodeUtf32(encoding == kCFStringEncodingUTF32BE, units, unitCount, lossByte, target,
                               targetSize);
        case kCFStringEncodingUTF7:
            return text::utf7Encode(units, unitCount, lossByte, target, targetSize);
        case kCFStringEncodingUTF8:
            return text::utf8Encode(units, unitCount, lossByte, target, targetSize);
        default:
            const auto* const table = text::oneByteTable(encoding);
            if (table == nullptr) return {0, 0};
            return text::oneByteEncode(*table, units, unitCount, lossByte, target, targetSize);
    }
}

namespace {

// Texts of so many units keep the room that they might have needed: their bytes are mostly wanted for a
// moment, and a second array would take longer than the conversion.
constexpr long kShort = 64;

long mostBytes(unsigned int encoding, long unitCount) {
    switch (encoding) {
        case kCFStringEncodingUTF7:
            return unitCount * 5;  // '+', three digits and '-'
        case kCFStringEncodingUTF8:
            return text::utf8MostBytes(unitCount);
        case kCFStringEncodingUnicode:
        case kCFStringEncodingUTF16BE:
            return unitCount * 2;
        case kCFStringEncodingUTF32:
        case kCFStringEncodingUTF32BE:
            return unitCount * 4;
        default:
            return unitCount;
    }
}

void terminate(char* end, long terminatorBytes) {
    if (terminatorBytes == 1) {
        *end = 0;
    } else {
        std::memset(end, 0, static_cast<std::size_t>(terminatorBytes));
    }
}

}  // namespace

EncodedText encodeLongAscii(const char* units, long unitCount) {
    if (unitCount <= kShort) return {nullptr, 0};
    std::unique_ptr<char[]> bytes(new char[static_cast<std::size_t>(unitCount) + 1]);
    if (!text::asciiEncode(units, unitCount, bytes.get())) return {nullptr, 0};
    bytes[static_cast<std::size_t>(unitCount)] = 0;
    return {bytes.release(), unitCount + 1};
}

EncodedText encodeText(unsigned int encoding, const char* units, long unitCount, long terminatorBytes) {
    const long room = mostBytes(encoding, unitCount);
    std::unique_ptr<char[]> bytes(new char[static_cast<std::size_t>(room + terminatorBytes)]);
    const Encoded encoded = encode(encoding, units, unitCount, '?', bytes.get(), room);
    if (encoded.units < unitCount) return {nullptr, 0};
    terminate(bytes.get() + encoded.bytes, terminatorBytes);
    const long size = encoded.bytes + terminatorBytes;
    if (unitCount <= kShort) return {bytes.release(), size};
    return {exactly(std::move(bytes), room + terminatorBytes, size), size};
}

}  // namespace StringServices

#include "platform/src/text/Utf8.h"

#include "platform/src/text/Units.h"

#include <limits>

namespace text {

namespace {

using Byte = unsigned char;

const Byte* asBytes(const char* bytes) {
    return reinterpret_cast<const Byte*>(bytes);
}

bool isTrail(Byte byte) {
    return (byte & 0xC0) == 0x80;
}

// Length of the well-formed sequence of two to four bytes at p; 0 when there is none.
int sequenceLength(const Byte* p, const Byte* end) {
    const Byte lead = p[0];
    const auto left = end - p;
    if (lead < 0xC2 || left < 2 || !isTrail(p[1])) return 0;
    if (lead < 0xE0) return 2;
    if (left < 3 || !isTrail(p[2])) return 0;
    if (lead < 0xF0) {
        if ((lead == 0xE0 && p[1] < 0xA0) || (lead == 0xED && p[1] > 0x9F)) return 0;
        return 3;
    }
    if (left < 4 || !isTrail(p[3]) || lead > 0xF4) return 0;
    if ((lead == 0xF0 && p[1] < 0x90) || (lead == 0xF4 && p[1] > 0x8F)) return 0;
    return 4;
}

bool nextEightAreAscii(const Byte* p) {
    std::uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return (word & 0x8080808080808080u) == 0;
}

}  // namespace

long utf8DecodedLength(const char* bytes, long byteCount) {
    const Byte* p = asBytes(bytes);
    const Byte* const end = p + byteCount;
    long units = 0;
    while (p < end) {
        if (end - p >= 8 && nextEightAreAscii(p)) {
            p += 8;
            units += 8;
        } else if (*p < 0x80) {
            ++p;
            ++units;
        } else {
            const int length = sequenceLength(p, end);
            if (length == 0) return -1;
            p += length;
            units += length == 4 ? 2 : 1;
        }
    }
    return units;
}

void utf8Decode(const char* bytes, long byteCount, char* units) {
    const Byte* p = asBytes(bytes);
    const Byte* const end = p + byteCount;
    long out = 0;
    while (p < end) {
        if (end - p >= 8 && nextEightAreAscii(p)) {
            for (int i = 0; i < 8; ++i)
                setUnit(units, out + i, p[i]);
            p += 8;
            out += 8;
        } else if (*p < 0x80) {
            setUnit(units, out++, *p++);
        } else if (*p < 0xE0) {
            setUnit(units, out++, (p[0] & 0x1Fu) << 6 | (p[1] & 0x3Fu));
            p += 2;
        } else if (*p < 0xF0) {
            setUnit(units, out++, (p[0] & 0x0Fu) << 12 | (p[1] & 0x3Fu) << 6 | (p[2] & 0x3Fu));
            p += 3;
        } else {
            const std::uint32_t c =
                (p[0] & 0x07u) << 18 | (p[1] & 0x3Fu) << 12 | (p[2] & 0x3Fu) << 6 | (p[3] & 0x3Fu);
            setUnit(units, out++, 0xD7C0 + (c >> 10));
            setUnit(units, out++, 0xDC00 | (c & 0x3FF));
            p += 4;
        }
    }
}

StringServices::Encoded utf8Encode(const char* units, long unitCount, char lossByte, char* target,
                                   long targetSize) {
    const long room = target == nullptr ? std::numeric_limits<long>::max() : targetSize;
    long in = 0;
    long out = 0;
    while (in < unitCount) {
        Character c = characterAt(units, unitCount, in);
        if (isSurrogate(c.codePoint) && c.units == 1) {
            if (lossByte == 0) break;
            c.codePoint = static_cast<Byte>(lossByte);
        }
        char sequence[4];
        int length = 0;
        const auto put = [&](std::uint32_t byte) { sequence[length++] = static_cast<char>(byte); };
        if (c.codePoint < 0x80) {
            put(c.codePoint);
        } else if (c.codePoint < 0x800) {
            put(0xC0 | c.codePoint >> 6);
            put(0x80 | (c.codePoint & 0x3F));
        } else if (c.codePoint < 0x10000) {
            put(0xE0 | c.codePoint >> 12);
            put(0x80 | (c.codePoint >> 6 & 0x3F));
            put(0x80 | (c.codePoint & 0x3F));
        } else {
            put(0xF0 | c.codePoint >> 18);
            put(0x80 | (c.codePoint >> 12 & 0x3F));
            put(0x80 | (c.codePoint >> 6 & 0x3F));
            put(0x80 | (c.codePoint & 0x3F));
        }
        if (length > room - out) break;
        if (target != nullptr) std::memcpy(target + out, sequence, static_cast<std::size_t>(length));
        out += length;
        in += c.units;
    }
    return {in, out};
}

}  // namespace text

#include "platform/src/text/Units.h"
#include "platform/src/text/Utf8.h"
#include "platform/src/text/Vector.h"

#include <bit>

namespace text {

namespace {

inline std::uint32_t fourBytesAt(const char* p) {
    std::uint32_t bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return bytes;
}

// The last bytes of a text, three at most, with zero bytes behind them.
inline std::uint32_t lastBytes(const char* begin, const char* p, const char* end) {
    if (p == end || end - begin < 4) return static_cast<std::uint32_t>(fewBytesAt(p, end - p));
    return fourBytesAt(end - 4) >> (4 - (end - p)) * 8;
}

// Decodes the sequence whose first bytes are these, the first in the lowest place, and moves both places
// behind it; false when it is malformed. The order is that of how often they come.
inline bool decodeSequence(std::uint32_t bytes, const char*& p, char*& out) {
    if ((bytes & 0x00C0C0F0) == 0x008080E0) {
        setUnit(out, 0, (bytes & 0x0F) << 12 | (bytes & 0x3F00) >> 2 | (bytes >> 16 & 0x3F));
        p += 3;
        out += 2;
        // Overlong is E0 with a second byte below A0, a surrogate ED with another.
        const std::uint32_t kind = bytes & 0x200F;
        return kind != 0 && kind != 0x200D;
    }
    if ((bytes & 0x0000C0E0) == 0x000080C0) {
        setUnit(out, 0, (bytes & 0x1F) << 6 | (bytes >> 8 & 0x3F));
        p += 2;
        out += 2;
        return (bytes & 0x1E) != 0;
    }
    if ((bytes & 0xC0C0C0F8) == 0x808080F0) {
        const std::uint32_t c =
            (bytes & 0x07) << 18 | (bytes & 0x3F00) << 4 | (bytes >> 10 & 0xFC0) | (bytes >> 24 & 0x3F);
        setUnit(out, 0, 0xD7C0 + (c >> 10));
        setUnit(out, 1, 0xDC00 | (c & 0x3FF));
        p += 4;
        out += 4;
        return c >= 0x10000 && c <= 0x10FFFF;
    }
    return false;
}

// The character at p, whose first four bytes are given; false when it is malformed.
inline bool decodeCharacter(std::uint32_t bytes, const char*& p, char*& out) {
    if ((bytes & 0x80) != 0) return decodeSequence(bytes, p, out);
    setUnit(out, 0, bytes & 0x7F);
    p += 1;
    out += 2;
    return true;
}

}  // namespace

long utf8DecodedRoom(const char* bytes, long byteCount) {
    return byteCount <= kMostMeasured ? utf8Units(bytes, byteCount) : byteCount;
}

long utf8Decode(const char* bytes, long byteCount, char* units, long room) {
    const char* p = bytes;
    const char* const end = bytes + byteCount;
    char* out = units;
    const char* const unitsEnd = units + room * 2;
    while (end - p >= kLanes && unitsEnd - out >= kLanes * 2) {
        const unsigned int above = widen(p, out);
        if (above == 0) {
            p += kLanes;
            out += kLanes * 2;
            continue;
        }
        p += std::countr_zero(above);
        out += std::countr_zero(above) * 2;
        std::uint32_t four;
        while (end - p >= 4 && ((four = fourBytesAt(p)) & 0x80) != 0) {
            if (!decodeSequence(four, p, out)) return -1;
        }
    }
    const bool isAsciiSoFar = out - units == (p - bytes) * 2;
    if (isAsciiSoFar && p > bytes && p < end && room == byteCount &&
        widen(end - kLanes, units + (byteCount - kLanes) * 2) == 0) {
        return byteCount;  // all was ASCII, of which a part was written once more
    }
    while (end - p >= 4) {
        if (!decodeCharacter(fourBytesAt(p), p, out)) return -1;
    }
    for (std::uint32_t rest = lastBytes(bytes, p, end); p < end;) {
        const char* const before = p;
        if (!decodeCharacter(rest, p, out)) return -1;
        rest >>= (p - before) * 8;
    }
    return (out - units) / 2;
}

}  // namespace text

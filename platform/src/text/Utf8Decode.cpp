#include "platform/src/text/Units.h"
#include "platform/src/text/Utf8.h"
#include "platform/src/text/Vector.h"

#include <bit>

namespace text {

namespace {

bool isAscii(const char* p) {
    return (*p & 0x80) == 0;
}

// The four bytes at p, the first in the lowest place; zero bytes behind the end.
std::uint32_t fourBytesAt(const char* p, const char* end) {
    std::uint32_t bytes = 0;
    if (end - p >= 4) {
        std::memcpy(&bytes, p, sizeof bytes);
        return bytes;
    }
    std::memcpy(&bytes, p, static_cast<std::size_t>(end - p));
    return bytes;
}

// Decodes the sequence of two to four bytes at p and moves both places behind it; false when it is malformed.
// The order is that of how often they come.
inline bool decodeSequence(const char*& p, const char* end, char* units, long& out) {
    const std::uint32_t bytes = fourBytesAt(p, end);
    const std::uint32_t second = bytes >> 8 & 0x3F;
    if ((bytes & 0x0000C0E0) == 0x000080C0) {
        const std::uint32_t c = (bytes & 0x1F) << 6 | second;
        setUnit(units, out, c);
        p += 2;
        out += 1;
        return c >= 0x80;
    }
    const std::uint32_t third = bytes >> 16 & 0x3F;
    if ((bytes & 0x00C0C0F0) == 0x008080E0) {
        const std::uint32_t c = (bytes & 0x0F) << 12 | second << 6 | third;
        setUnit(units, out, c);
        p += 3;
        out += 1;
        return c >= 0x800 && !isSurrogate(c);
    }
    if ((bytes & 0xC0C0C0F8) == 0x808080F0) {
        const std::uint32_t c = (bytes & 0x07) << 18 | second << 12 | third << 6 | (bytes >> 24 & 0x3F);
        setUnit(units, out, 0xD7C0 + (c >> 10));
        setUnit(units, out + 1, 0xDC00 | (c & 0x3FF));
        p += 4;
        out += 2;
        return c >= 0x10000 && c <= 0x10FFFF;
    }
    return false;
}

// Writes the last block of the bytes, so that its units end at `unitsEnd`, if it is ASCII: what of it was
// written before is written once more.
bool widenLast(const char* end, char* unitsEnd) {
    char block[kLanes * 2];
    if (widen(end - kLanes, block) != 0) return false;
    std::memcpy(unitsEnd - sizeof block, block, sizeof block);
    return true;
}

}  // namespace

// There is always room for as many units as bytes are left.
long utf8Decode(const char* bytes, long byteCount, char* units) {
    const char* p = bytes;
    const char* const end = bytes + byteCount;
    long out = 0;
    while (p < end) {
        const bool hasBlock = end - p >= kLanes;
        if (hasBlock) {
            const unsigned int above = widen(p, units + out * 2);
            if (above == 0) {
                p += kLanes;
                out += kLanes;
                continue;
            }
            p += std::countr_zero(above);
            out += std::countr_zero(above);
        } else if (out >= kLanes && out == p - bytes && widenLast(end, units + byteCount * 2)) {
            return byteCount;
        }
        // Character by character: those that are not ASCII, and at the end all.
        while (p < end) {
            if (!isAscii(p)) {
                if (!decodeSequence(p, end, units, out)) return -1;
            } else if (!hasBlock) {
                setUnit(units, out++, static_cast<unsigned char>(*p++));
            } else {
                break;
            }
        }
    }
    return out;
}

}  // namespace text

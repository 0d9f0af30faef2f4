#include "platform/src/text/Units.h"
#include "platform/src/text/Utf8.h"
#include "platform/src/text/Vector.h"

#include <algorithm>
#include <bit>

namespace text {

namespace {

// The code point of the character at a unit that UTF-8 does not have: a surrogate without its partner.
bool isLone(const Character& c) {
    return c.units == 1 && isSurrogate(c.codePoint);
}

int encodedLength(std::uint32_t codePoint) {
    return codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
}

// The bytes of a code point, the first in the lowest place.
inline std::uint32_t encodedBytes(std::uint32_t c) {
    if (c < 0x80) return c;
    if (c < 0x800) return 0x80C0 | c >> 6 | (c & 0x3F) << 8;
    if (c < 0x10000) return 0x8080E0 | c >> 12 | (c << 2 & 0x3F00) | (c << 16 & 0x3F0000);
    return 0x808080F0 | c >> 18 | (c >> 4 & 0x3F00) | (c << 10 & 0x3F0000) | (c << 24 & 0x3F000000);
}

// How far an encoding has come: units read and bytes written.
struct Place {
    long in;
    long out;
};

// The character at a place, with the loss byte if it is a surrogate without its partner; false when it cannot
// be encoded.
bool encodableAt(const char* units, long unitCount, long index, char lossByte, Character& c) {
    c = characterAt(units, unitCount, index);
    if (!isLone(c)) return true;
    c.codePoint = static_cast<unsigned char>(lossByte);
    return lossByte != 0;
}

// Character by character, as far as there is room. Without a target it only measures.
Place encodeCharacters(const char* units, long unitCount, char lossByte, char* target, long targetSize) {
    Place at{0, 0};
    Character c;
    while (at.in < unitCount && encodableAt(units, unitCount, at.in, lossByte, c)) {
        const int length = encodedLength(c.codePoint);
        if (target != nullptr) {
            if (length > targetSize - at.out) break;
            const std::uint32_t bytes = encodedBytes(c.codePoint);
            std::memcpy(target + at.out, &bytes, static_cast<std::size_t>(length));
        }
        at.out += length;
        at.in += c.units;
    }
    return at;
}

// Goes on up to `end` or a surrogate, or to ASCII if it ends there. Writes four bytes for each unit that is
// not ASCII, however many of them count.
template <bool EndAtAscii>
inline Place encodeUnits(const char* units, long end, char* target, Place at) {
    for (; at.in < end; ++at.in) {
        const std::uint32_t unit = unitAt(units, at.in);
        if (unit < 0x80) {
            if (EndAtAscii) break;
            target[at.out++] = static_cast<char>(unit);
        } else if (unit < 0x800) {
            const std::uint32_t bytes = encodedBytes(unit);
            std::memcpy(target + at.out, &bytes, sizeof bytes);
            at.out += 2;
        } else if (!isSurrogate(unit)) {
            const std::uint32_t bytes = encodedBytes(unit);
            std::memcpy(target + at.out, &bytes, sizeof bytes);
            at.out += 3;
        } else {
            break;
        }
    }
    return at;
}

// Writes the last block; false when it is not all ASCII.
bool narrowLast(const char* units, long unitCount, char* target) {
    return narrow<0x7F>(units + (unitCount - kLanes) * 2, target + (unitCount - kLanes)) == 0;
}

// Goes on as long as so many units of three bytes each come.
template <int Units>
inline void encodeThreeByteBlocks(const char* units, long unitCount, char* target, Place& at) {
    while (unitCount - at.in >= Units && unitAt(units, at.in) > 0x7FF &&
           encodeThreeByteBlock<Units>(units + at.in * 2, target + at.out)) {
        at.in += Units;
        at.out += Units * 3;
    }
}

// With the room that utf8MostBytes tells.
Place encodeWithRoom(const char* units, long unitCount, char lossByte, char* target) {
    Place at{0, 0};
    bool isAsciiSoFar = true;
    while (at.in < unitCount) {
        const bool hasBlock = unitCount - at.in >= kLanes;
        if (hasBlock) {
            const unsigned int above = narrow<0x7F>(units + at.in * 2, target + at.out);
            const int ascii = above == 0 ? static_cast<int>(kLanes) : std::countr_zero(above);
            at.in += ascii;
            at.out += ascii;
            if (above == 0) continue;
        } else if (isAsciiSoFar && at.in >= kLanes && narrowLast(units, unitCount, target)) {
            return {unitCount, unitCount};  // a part of it was written once more
        }
        isAsciiSoFar = false;
        encodeThreeByteBlocks<8>(units, unitCount, target, at);
        if (!hasBlock) encodeThreeByteBlocks<4>(units, unitCount, target, at);
        at = hasBlock ? encodeUnits<true>(units, std::min(unitCount, at.in + 8), target, at)
                      : encodeUnits<false>(units, unitCount, target, at);
        Character c;
        if (at.in < unitCount && isSurrogate(unitAt(units, at.in))) {
            if (!encodableAt(units, unitCount, at.in, lossByte, c)) break;
            const std::uint32_t bytes = encodedBytes(c.codePoint);
            std::memcpy(target + at.out, &bytes, sizeof bytes);
            at.out += encodedLength(c.codePoint);
            at.in += c.units;
        }
    }
    return at;
}

}  // namespace

bool asciiEncode(const char* units, long unitCount, char* target) {
    const auto encodeBlock = [=](long i) { return narrowAsciiText(units + i * 2, target + i); };
    for (long i = 0; unitCount - i >= kLanes; i += kLanes) {
        if (!encodeBlock(i)) return false;
    }
    return encodeBlock(unitCount - kLanes);
}

StringServices::Encoded utf8Encode(const char* units, long unitCount, char lossByte, char* target,
                                   long targetSize) {
    const bool hasRoom = target != nullptr && targetSize >= utf8MostBytes(unitCount);
    const Place at = hasRoom ? encodeWithRoom(units, unitCount, lossByte, target)
                             : encodeCharacters(units, unitCount, lossByte, target, targetSize);
    return {at.in, at.out};
}

}  // namespace text

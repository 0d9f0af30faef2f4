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

// How far an encoding came, and how far it may go.
struct Progress {
    const char* units;
    long in;
    long unitCount;
    char* target;
    long out;
    long targetSize;

    bool hasBlock() const { return unitCount - in >= kLanes && targetSize - out >= kLanes; }
};

// Up to `end`, as long as there is room to write four bytes and no surrogate comes, nor ASCII if it ends
// there.
void encodeUnits(Progress& progress, long end, bool endAtAscii) {
    long in = progress.in;
    long out = progress.out;
    const long lastOut = progress.targetSize - 4;
    for (; in < end && out <= lastOut; ++in) {
        const std::uint32_t unit = unitAt(progress.units, in);
        if (unit < 0x80) {
            if (endAtAscii) break;
            progress.target[out++] = static_cast<char>(unit);
        } else if (unit < 0x800) {
            const std::uint32_t bytes = encodedBytes(unit);
            std::memcpy(progress.target + out, &bytes, sizeof bytes);
            out += 2;
        } else if (!isSurrogate(unit)) {
            const std::uint32_t bytes = encodedBytes(unit);
            std::memcpy(progress.target + out, &bytes, sizeof bytes);
            out += 3;
        } else {
            break;
        }
    }
    progress.in = in;
    progress.out = out;
}

// One character, whatever it is; false when it has no room or cannot be encoded.
bool encodeCharacter(Progress& progress, char lossByte) {
    Character c = characterAt(progress.units, progress.unitCount, progress.in);
    if (isLone(c)) {
        if (lossByte == 0) return false;
        c.codePoint = static_cast<unsigned char>(lossByte);
    }
    const int length = encodedLength(c.codePoint);
    if (length > progress.targetSize - progress.out) return false;
    const std::uint32_t bytes = encodedBytes(c.codePoint);
    std::memcpy(progress.target + progress.out, &bytes, static_cast<std::size_t>(length));
    progress.out += length;
    progress.in += c.units;
    return true;
}

// Writes the last block of the units, so that its bytes end at `bytesEnd`, if it is ASCII: what of it was
// written before is written once more.
bool narrowLast(const char* end, char* bytesEnd) {
    char block[kLanes];
    if (narrow<0x7F>(end - kLanes * 2, block) != 0) return false;
    std::memcpy(bytesEnd - sizeof block, block, sizeof block);
    return true;
}

StringServices::Encoded measured(const char* units, long unitCount, char lossByte) {
    StringServices::Encoded encoded{0, 0};
    while (encoded.units < unitCount) {
        const Character c = characterAt(units, unitCount, encoded.units);
        if (isLone(c) && lossByte == 0) break;
        encoded.bytes += isLone(c) ? 1 : encodedLength(c.codePoint);
        encoded.units += c.units;
    }
    return encoded;
}

}  // namespace

StringServices::Encoded utf8Encode(const char* units, long unitCount, char lossByte, char* target,
                                   long targetSize) {
    if (target == nullptr) return measured(units, unitCount, lossByte);
    Progress at{units, 0, unitCount, target, 0, targetSize};
    while (at.in < unitCount) {
        const bool hasBlock = at.hasBlock();
        if (hasBlock) {
            const unsigned int above = narrow<0x7F>(units + at.in * 2, target + at.out);
            const int ascii = above == 0 ? static_cast<int>(kLanes) : std::countr_zero(above);
            at.in += ascii;
            at.out += ascii;
            if (above == 0) continue;
            while (unitCount - at.in >= 8 && targetSize - at.out >= kThreeByteRoom &&
                   unitAt(units, at.in) > 0x7FF && encodeThreeByteBlock(units + at.in * 2, target + at.out)) {
                at.in += 8;
                at.out += 24;
            }
        } else if (at.in >= kLanes && at.in == at.out && unitCount <= targetSize &&
                   narrowLast(units + unitCount * 2, target + unitCount)) {
            return {unitCount, unitCount};
        }
        const long before = at.in;
        encodeUnits(at, hasBlock ? std::min(unitCount, at.in + 8) : unitCount, hasBlock);
        if (at.in == before && at.in < unitCount && !encodeCharacter(at, lossByte)) break;
    }
    return {at.in, at.out};
}

}  // namespace text

#include "platform/src/text/OneByte.h"

#include "platform/src/text/Units.h"
#include "platform/src/text/Vector.h"

#include <bit>
#include <limits>

namespace text {

namespace {

using Upper = std::array<std::uint16_t, 128>;

// Mac OS Roman, 80 to FF.
constexpr Upper kMacRoman = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7};

// Windows code page 1252, 80 to 9F; the five bytes without a character decode to the control character of
// their value.
constexpr std::array<std::uint16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr Upper latin1Upper() {
    Upper upper{};
    for (int i = 0; i < 128; ++i)
        upper[static_cast<unsigned>(i)] = static_cast<std::uint16_t>(0x80 + i);
    return upper;
}

constexpr Upper windows1252Upper() {
    Upper upper = latin1Upper();
    for (unsigned i = 0; i < kWindows1252.size(); ++i)
        upper[i] = kWindows1252[i];
    return upper;
}

constexpr OneByteTable makeTable(const Upper& upper, int defined) {
    OneByteTable table{};
    table.defined = defined;
    table.ownCodePoints = 0;
    while (table.ownCodePoints < defined &&
           (table.ownCodePoints < 128 ||
            upper[static_cast<unsigned>(table.ownCodePoints - 128)] == table.ownCodePoints))
        ++table.ownCodePoints;
    unsigned pagesUsed = 1;
    for (unsigned byte = 0; byte < 256; ++byte) {
        const unsigned unit = byte < 128 ? byte : upper[byte - 128];
        table.units[byte] = static_cast<std::uint16_t>(unit);
        if (static_cast<int>(byte) >= defined) continue;
        std::uint8_t& page = table.pageOf[unit >> 8];
        if (page == 0) page = static_cast<std::uint8_t>(pagesUsed++);
        table.pages[page][unit & 0xFF] = static_cast<std::uint8_t>(byte);
    }
    return table;
}

constexpr OneByteTable kMacRomanTable = makeTable(kMacRoman, 256);
constexpr OneByteTable kWindows1252Table = makeTable(windows1252Upper(), 256);
constexpr OneByteTable kLatin1Table = makeTable(latin1Upper(), 256);
constexpr OneByteTable kAsciiTable = makeTable(latin1Upper(), 128);

}  // namespace

const OneByteTable* oneByteTable(unsigned int encoding) {
    switch (encoding) {
        case kCFStringEncodingMacRoman:
            return &kMacRomanTable;
        case kCFStringEncodingWindowsLatin1:
            return &kWindows1252Table;
        case kCFStringEncodingISOLatin1:
            return &kLatin1Table;
        case kCFStringEncodingASCII:
            return &kAsciiTable;
        default:
            return nullptr;
    }
}

namespace {

// Bytes and units that are not ASCII and are looked up in each block, whether there are so many or not: as
// many as there mostly are, so that the number of them costs no wrongly foreseen branch.
constexpr int kUsualAbove = 3;

// The last of the lanes when there is none.
template <int Lanes>
int lowestLane(unsigned int mask) {
    return std::countr_zero(mask | 1u << (Lanes - 1));
}

inline void decodeAt(const OneByteTable& table, const char* bytes, char* units, long i) {
    setUnit(units, i, table.units[static_cast<unsigned char>(bytes[i])]);
}

// Looks up the units of the bytes in the mask.
template <int Lanes>
inline void decodeAbove(const OneByteTable& table, const char* bytes, char* units, unsigned int above) {
    for (int i = 0; i < kUsualAbove; ++i, above &= above - 1)
        decodeAt(table, bytes, units, lowestLane<Lanes>(above));
    for (; above != 0; above &= above - 1)
        decodeAt(table, bytes, units, std::countr_zero(above));
}

// So many blocks, in which it is rare that all is ASCII unless it is so everywhere.
template <int Blocks>
inline void decodeBlocks(const OneByteTable& table, const char* bytes, char* units) {
    unsigned int above[Blocks];
    unsigned int any = 0;
    for (int i = 0; i < Blocks; ++i)
        any |= above[i] = widen(bytes + i * kLanes, units + i * kLanes * 2);
    if (any == 0 || table.ownCodePoints == 256) return;
    for (int i = 0; i < Blocks; ++i)
        decodeAbove<kLanes>(table, bytes + i * kLanes, units + i * kLanes * 2, above[i]);
}

inline void decodeHalf(const OneByteTable& table, const char* bytes, char* units) {
    decodeAbove<kLanes / 2>(table, bytes, units, widenHalf(bytes, units));
}

// Writes the byte of a unit, 0 when the encoding has none; false for 0.
bool encodeAt(const OneByteTable& table, const char* units, char* bytes, long i) {
    const std::uint16_t unit = unitAt(units, i);
    const std::uint8_t byte = table.pages[table.pageOf[unit >> 8]][unit & 0xFF];
    bytes[i] = static_cast<char>(byte);
    return byte != 0;
}

template <std::uint16_t Last, int Lanes>
inline unsigned int narrowBlock(const char* units, char* bytes) {
    return Lanes == kLanes ? narrow<Last>(units, bytes) : narrowHalf<Last>(units, bytes);
}

// False, with nothing of use written, when the encoding may lack one of the units.
template <int Lanes>
[[gnu::always_inline]] inline bool encodeBlock(const OneByteTable& table, const char* units, char* bytes) {
    if (table.ownCodePoints == 256) return narrowBlock<0xFF, Lanes>(units, bytes) == 0;
    unsigned int above = narrowBlock<0x7F, Lanes>(units, bytes);
    if (above == 0) return true;
    bool complete = true;
    for (int i = 0; i < kUsualAbove; ++i, above &= above - 1)
        complete &= encodeAt(table, units, bytes, lowestLane<Lanes>(above));
    for (; above != 0; above &= above - 1)
        complete &= encodeAt(table, units, bytes, std::countr_zero(above));
    return complete;
}

// Goes on in whole blocks up to the last, some of which may give the same bytes once more. Returns the units
// that are done, or as many as there are.
template <int Lanes>
inline long encodeBlocks(const OneByteTable& table, const char* units, long unitCount, char* bytes) {
    long done = 0;
    while (unitCount - done >= Lanes) {
        if (!encodeBlock<Lanes>(table, units + done * 2, bytes + done)) return done;
        done += Lanes;
    }
    if (done == 0 || done == unitCount) return done;
    const long last = unitCount - Lanes;
    return encodeBlock<Lanes>(table, units + last * 2, bytes + last) ? unitCount : last;
}

}  // namespace

long oneByteDecode(const OneByteTable& table, const char* bytes, long byteCount, char* units) {
    long i = 0;
    if (table.defined == 256) {
        for (; byteCount - i >= 2 * kLanes; i += 2 * kLanes)
            decodeBlocks<2>(table, bytes + i, units + i * 2);
        if (byteCount - i >= kLanes) {
            decodeBlocks<1>(table, bytes + i, units + i * 2);
            i += kLanes;
        }
    } else {
        for (; byteCount - i >= kLanes; i += kLanes) {
            if (widen(bytes + i, units + i * 2) != 0) return -1;
        }
    }
    if (table.defined == 256 && i < byteCount && byteCount >= kLanes / 2) {
        // The last block or the first and the last half of one, some of which gives the same units once more.
        if (i > 0) {
            decodeBlocks<1>(table, bytes + (byteCount - kLanes), units + (byteCount - kLanes) * 2);
        } else {
            decodeHalf(table, bytes, units);
            decodeHalf(table, bytes + (byteCount - kLanes / 2), units + (byteCount - kLanes / 2) * 2);
        }
        return byteCount;
    }
    for (; i < byteCount; ++i) {
        if (static_cast<unsigned char>(bytes[i]) >= table.defined) return -1;
        decodeAt(table, bytes, units, i);
    }
    return byteCount;
}

StringServices::Encoded oneByteEncode(const OneByteTable& table, const char* units, long unitCount,
                                      char lossByte, char* target, long targetSize) {
    const long room = target == nullptr ? std::numeric_limits<long>::max() : targetSize;
    long in = 0;
    if (target != nullptr && unitCount <= room) {
        in = unitCount < kLanes ? encodeBlocks<kLanes / 2>(table, units, unitCount, target)
                                : encodeBlocks<kLanes>(table, units, unitCount, target);
    }
    long out = in;
    while (in < unitCount && out < room) {
        while (target != nullptr && unitCount - in >= kLanes && room - out >= kLanes &&
               encodeBlock<kLanes>(table, units + in * 2, target + out)) {
            in += kLanes;
            out += kLanes;
        }
        for (long i = 0; i < kLanes && in < unitCount && out < room; ++i) {
            const std::uint16_t unit = unitAt(units, in);
            char byte = 0;
            int taken = 1;
            if (!encodeAt(table, units + in * 2, &byte, 0) && unit != 0) {
                if (lossByte == 0) return {in, out};
                byte = lossByte;
                taken = characterAt(units, unitCount, in).units;
            }
            if (target != nullptr) target[out] = byte;
            ++out;
            in += taken;
        }
    }
    return {in, out};
}

}  // namespace text

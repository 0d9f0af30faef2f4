#pragma once

#include "foundation/KW_String.h"

#include <cstdint>
#include <cstring>

/// What the files of KW_String share among themselves.

/// The operating system's number of an encoding. Every value without a name is the application's encoding.
unsigned int KW_StringEncodingToMacStringEncoding(KW_String::Encoding encoding);

/// Converts UTF-32 units (32-bit, no alignment needed, byte-reversed when `bigEndian`) to UTF-16. `count`
/// above 0 converts exactly so many, otherwise up to the first zero unit. Surrogates and values above 10FFFF
/// become U+FFFD. With a null target it only counts. Returns the number of UTF-16 units.
long UTF32toUTF16(const void* source, unsigned short* target, long count, bool bigEndian);

/// A size in units as the fields hold it; throws std::bad_alloc when no string can be that long.
unsigned int KW_StringUnits(unsigned long units);

/// Copies units between arrays that do not overlap.
inline void KW_StringCopyUnits(unsigned short* to, const unsigned short* from, unsigned long count) {
    // Few units as a pair of wide moves that may overlap each other, which is quicker than a call.
    const auto copyEnds = [=](auto wide) {
        constexpr unsigned long kUnits = sizeof wide / sizeof *from;
        auto last = wide;
        std::memcpy(&wide, from, sizeof wide);
        std::memcpy(&last, from + (count - kUnits), sizeof last);
        std::memcpy(to, &wide, sizeof wide);
        std::memcpy(to + (count - kUnits), &last, sizeof last);
    };
    if (count > 8) {
        std::memcpy(to, from, count * sizeof *from);
    } else if (count >= 4) {
        copyEnds(std::uint64_t{});
    } else if (count >= 2) {
        copyEnds(std::uint32_t{});
    } else if (count == 1) {
        to[0] = from[0];
    }
}

/// Makes a null string hold a copy of the units; it stays null when there are none.
inline void KW_StringFill(KW_String& string, const unsigned short* units, unsigned int count) {
    if (units == nullptr || count == 0) return;
    const unsigned int capacity = KW_StringUnits(count + 1UL);
    string.data = new unsigned short[capacity];
    string.capacity = capacity;
    string.length = count;
    KW_StringCopyUnits(string.data, units, count);
    string.data[count] = 0;
}

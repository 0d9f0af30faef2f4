#pragma once

#include "platform/StringServices.h"

#include <array>
#include <cstdint>

namespace text {

/// An encoding of one byte for each character, as a table in both directions. The lower 128 are ASCII in all.
struct OneByteTable {
    std::array<std::uint16_t, 256> units;  ///< the unit of each byte
    int defined;                           ///< bytes from this one on are malformed
    int ownCodePoints;                     ///< units below this one are their own bytes
    std::array<std::uint8_t, 256> pageOf;  ///< high byte of a unit -> page; 0 is the page without any
    std::array<std::array<std::uint8_t, 256>, 12>
        pages;  ///< low byte of a unit -> byte, 0 when there is none
};

/// The table of the encoding, or null when it is none of one byte for each character.
const OneByteTable* oneByteTable(unsigned int encoding);

long oneByteDecode(const OneByteTable& table, const char* bytes, long byteCount, char* units);
StringServices::Encoded oneByteEncode(const OneByteTable& table, const char* units, long unitCount,
                                      char lossByte, char* target, long targetSize);

}  // namespace text

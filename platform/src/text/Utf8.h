#pragma once

#include "platform/StringServices.h"

namespace text {

/// Units that are enough for utf8Decode, and no more if the bytes are few.
long utf8DecodedRoom(const char* bytes, long byteCount);
/// Writes the units that the bytes decode to and returns their number; -1 when the bytes are malformed. All
/// of the room may be written to.
long utf8Decode(const char* bytes, long byteCount, char* units, long room);

/// Writes a byte for each of at least sixteen units; false, with nothing of use written, when one is zero or
/// not ASCII.
bool asciiEncode(const char* units, long unitCount, char* target);

/// Bytes with which utf8Encode need not look whether there is room: three for each unit, and what a block
/// writes behind them.
inline long utf8MostBytes(long unitCount) {
    return unitCount * 3 + 2;
}

/// See StringServices for what this promises.
StringServices::Encoded utf8Encode(const char* units, long unitCount, char lossByte, char* target,
                                   long targetSize);

}  // namespace text

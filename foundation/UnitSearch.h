#pragma once

#include <vector>

/// Searches in arrays of UTF-16 units, which the strings and the scanner share. Positions are counted from
/// the first unit; `length` is the answer for "none", and `start` is at most `length`.

/// The first unit at or behind `start` that equals `unit`.
unsigned long findUnit(const unsigned short* text, unsigned long length, unsigned long start,
                       unsigned short unit);

/// The first unit at or behind `start` that equals one of the two.
unsigned long findEither(const unsigned short* text, unsigned long length, unsigned long start,
                         unsigned short one, unsigned short other);

/// The position of each unit that equals one of the two.
std::vector<unsigned int> positionsOfEither(const unsigned short* text, unsigned int length,
                                            unsigned short one, unsigned short other);

/// Where the occurrences of `whatLength` units, at least one, begin, from the left and without overlap.
std::vector<unsigned int> positionsOfUnits(const unsigned short* text, unsigned int length,
                                           const unsigned short* what, unsigned int whatLength);

/// The first occurrence at or behind `start` of `whatLength` units, at least one.
unsigned long findUnits(const unsigned short* text, unsigned long length, unsigned long start,
                        const unsigned short* what, unsigned long whatLength);

/// The last occurrence that begins at or before `start`, which is below `length`.
unsigned long findUnitsBackward(const unsigned short* text, unsigned long length, unsigned long start,
                                const unsigned short* what, unsigned long whatLength);

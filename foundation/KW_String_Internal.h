#pragma once

#include "foundation/KW_String.h"

/// What the files of KW_String share among themselves.

/// The operating system's number of an encoding. Every value without a name is the application's encoding.
unsigned int KW_StringEncodingToMacStringEncoding(KW_String::Encoding encoding);

/// Converts UTF-32 units (32-bit, no alignment needed, byte-reversed when `bigEndian`) to UTF-16. `count`
/// above 0 converts exactly so many, otherwise up to the first zero unit. Surrogates and values above 10FFFF
/// become U+FFFD. With a null target it only counts. Returns the number of UTF-16 units.
long UTF32toUTF16(void const* source, unsigned short* target, long count, bool bigEndian);

/// A size in units as the fields hold it; throws std::bad_alloc when no string can be that long.
unsigned int KW_StringUnits(unsigned long units);

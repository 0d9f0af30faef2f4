#pragma once

/// The operating system's string services: text of an 8-bit or multi-byte encoding to UTF-16 units and back.
/// Units are in the machine's byte order and are read and written through byte pointers that need no
/// alignment. Nothing is read behind a given count and nothing written behind a given size. No byte-order
/// mark is added, removed or obeyed.

/// The encodings, by the system's numbers.
constexpr unsigned int kCFStringEncodingMacRoman = 0x0000;
constexpr unsigned int kCFStringEncodingUnicode = 0x0100;  ///< UTF-16 in the machine's byte order
constexpr unsigned int kCFStringEncodingISOLatin1 = 0x0201;
constexpr unsigned int kCFStringEncodingWindowsLatin1 = 0x0500;  ///< Windows code page 1252
constexpr unsigned int kCFStringEncodingASCII = 0x0600;
constexpr unsigned int kCFStringEncodingUTF7 = 0x04000100;
constexpr unsigned int kCFStringEncodingUTF8 = 0x08000100;
constexpr unsigned int kCFStringEncodingUTF16BE = 0x10000100;
constexpr unsigned int kCFStringEncodingUTF32 = 0x0C000100;  ///< in the machine's byte order
constexpr unsigned int kCFStringEncodingUTF32BE = 0x18000100;

/// The application's 8-bit text encoding: Mac OS Roman.
unsigned int GetApplicationTextEncoding();

namespace StringServices {

/// Text that was decoded.
struct Decoded {
    unsigned short* units;  ///< a new array, which the caller frees; null when the bytes are malformed
    long count;             ///< units before the zero unit that ends the array
};

/// Decodes bytes into an array of exactly the units needed. Malformed are, among others, surrogates and
/// overlong forms in UTF-8, bytes above 7F in ASCII, an odd count in UTF-16.
Decoded decode(unsigned int encoding, const char* bytes, long byteCount);

/// How far an encoding came.
struct Encoded {
    long units;  ///< units that were converted, counted from the first
    long bytes;  ///< bytes that they became
};

/// Encodes units. Stops before the first character that does not fit into `targetSize` bytes whole, or that
/// the encoding does not have when `lossByte` is 0; with another `lossByte` that byte replaces every such
/// character (one for a surrogate pair, one for a surrogate without its partner, which only the two forms of
/// UTF-16 can hold). With a null target nothing is written and room is unlimited.
Encoded encode(unsigned int encoding, const char* units, long unitCount, char lossByte, char* target,
               long targetSize);

/// Bytes that text was encoded to.
struct EncodedText {
    char* bytes;  ///< a new array, which the caller frees; null when a unit could not be encoded
    long size;    ///< terminator included
};

/// ASCII without zero units as bytes, with a zero byte behind them. Null for any other text, and for a short
/// one, which encodeText is as quick with.
EncodedText encodeLongAscii(const char* units, long unitCount);

/// Encodes all units, with '?' for what the encoding lacks and a terminator of so many zero bytes (at most
/// four). The array of a short text may be longer than its size.
EncodedText encodeText(unsigned int encoding, const char* units, long unitCount, long terminatorBytes);

}  // namespace StringServices

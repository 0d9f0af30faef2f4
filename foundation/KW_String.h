#pragma once

#include "foundation/KW_List.h"

class KW_CString;

/// The string of the whole system: UTF-16 code units in the machine's byte order in one heap buffer that the
/// string owns.
///
/// Two states without text are distinct. The null string has no buffer; it is what a default constructor and
/// every failure give. The empty string has a buffer that holds only the terminator. Unless an operation says
/// otherwise, a null input gives a null result.
///
/// Whenever `data` is not null, data[length] is 0 and length < capacity. A buffer that must grow is allocated
/// with exactly the units needed, and only SetSize shrinks one. Positions and counts are in code units, from
/// 0; "not found" is -1. Text with a zero unit inside is handled whole, except where an operation says that
/// it goes up to the terminator. Every operation works when an operand is the string itself. Nothing here
/// fails otherwise than by its result; only the exhaustion of memory is thrown.
class KW_String {
public:
    /// Byte encodings. Every value that has no name behaves as Encoding_System.
    enum Encoding : unsigned int {
        Encoding_None = 0,         ///< none found; accepted only where an operation says so
        Encoding_Unsupported = 1,  ///< a byte-order mark of an encoding that is not converted
        Encoding_System = 2,       ///< the application's 8-bit encoding; the default of all char text
        Encoding_UTF7 = 10,
        Encoding_UTF8 = 11,
        Encoding_UTF16LE = 12,
        Encoding_UTF16BE = 13,
        Encoding_UTF32LE = 14,
        Encoding_UTF32BE = 15,
        Encoding_ASCII = 100,
        Encoding_MacRoman = 101,
        Encoding_WindowsLatin1 = 102,
        Encoding_ISOLatin1 = 103,
    };

    unsigned short* data;   ///< text and terminator (array new), or null
    unsigned int length;    ///< units of text
    unsigned int capacity;  ///< units allocated

    // ---- Construction and assignment (KW_String.cpp)

    /// The null string.
    KW_String();
    /// Decodes the bytes up to the terminator. Null when the pointer is null or the bytes are malformed.
    KW_String(const char* bytes, Encoding encoding);
    /// Decodes `byteCount` bytes; 0 means up to the terminator. Null as above.
    KW_String(const char* bytes, unsigned int byteCount, Encoding encoding);
    /// A deep copy.
    KW_String(const KW_String& other);
    /// Takes over the buffer of a string that is no longer used.
    KW_String(KW_String&& other) noexcept;
    /// Copies `count` units. A count of 0 or a null pointer gives the null string.
    KW_String(const unsigned short* units, unsigned int count);
    /// Copies the units up to the terminator. A null pointer gives the null string.
    explicit KW_String(const unsigned short* units);
    /// Takes over the other string's buffer and leaves it a null string.
    explicit KW_String(KW_String* other);
    ~KW_String();

    /// Decodes text of Encoding_System; a null pointer gives the null string.
    KW_String& operator=(const char* systemText);
    /// A deep copy.
    KW_String& operator=(const KW_String& other);
    /// Decodes `byteCount` bytes (0: up to the terminator). False, with the string unchanged, when the bytes
    /// are malformed; a null pointer gives the null string and true.
    bool Set(const char* bytes, unsigned int byteCount, Encoding encoding);
    /// Frees the buffer and becomes the null string.
    void SetToNullString();
    /// Becomes the null string without freeing anything: for raw storage that holds no string yet.
    void THIS_SetToNullString();
    /// The same as SetToNullString.
    void THIS_DeallocSetNullString();
    /// Makes room for `units` units, terminator included. Does nothing when there is that much; otherwise the
    /// buffer gets exactly that size, with the text when `keep`, else empty. Always true.
    bool THIS_Alloc(unsigned int units, bool keep);
    /// Gives the buffer exactly `units` units, also when that is less: with `keep` the text is cut to what
    /// fits, otherwise the string is empty. 0 units give the null string.
    void SetSize(unsigned int units, bool keep);
    /// Becomes a copy of the whole source, null when that is null. A buffer that is large enough stays.
    void THIS_CopyString(const KW_String& source);
    /// Becomes a copy of `count` units from `start` on, cut at the source's end. Null when the source is null
    /// or start is behind its end; start at its end gives the empty string.
    void THIS_CopyString(const KW_String& source, unsigned int start, unsigned int count);
    /// Becomes first followed by second; null only when both are.
    void THIS_SetToConcatenatedString(const KW_String& first, const KW_String& second);
    /// Appends `count` units; nothing happens when the pointer is null or the count 0.
    void THIS_Append(const unsigned short* units, unsigned int count);
    /// Appends decoded bytes (0: up to the terminator); nothing happens when they are malformed or null.
    void THIS_Append(const char* bytes, unsigned int byteCount, Encoding encoding);

    // ---- Conversion (KW_String_Conversion.cpp)

    /// Converts bytes between encodings; lengths and sizes are in bytes. `sourceLength` 0 or less means up to
    /// the terminator. A null target only measures. `addTerminator` writes (or counts) a terminator of the
    /// target encoding's width: 2 bytes for UTF-16, 4 for UTF-32, else 1. `lossy` writes '?' for a character
    /// that the target encoding lacks, otherwise the conversion stops there. Returns the bytes written or
    /// needed, or -1 when nothing was converted or the source is malformed, -2 when the target is too small
    /// or the text cannot be represented in full, -3 without a source (a target then gets one zero byte), -4
    /// or -5 when the source or target encoding is Encoding_None or Encoding_Unsupported.
    static long ConvertChangeEncoding(Encoding sourceEncoding, const char* source, long sourceLength,
                                      Encoding targetEncoding, char* target, long targetSize,
                                      bool addTerminator, bool lossy);
    /// Decodes `byteCount` bytes (0: up to the terminator) into the target, or behind its text when `append`.
    /// True also for a null source, which makes the target null or, with `append`, leaves it. False, with the
    /// target unchanged, when the bytes are malformed.
    static bool CStringToKW_String(KW_String& target, const char* source, unsigned int byteCount,
                                   Encoding encoding, bool append);
    /// Encodes `count` units from `start` on (0: up to the terminator; never past the end), with a terminator
    /// and '?' for what the encoding lacks. *out is a new array that the caller frees with array delete,
    /// outSize its bytes with the terminator. False, with null and 0, for a null string, a start behind the
    /// end or an encoding that is none.
    static bool KW_StringToCString(char** out, unsigned int& outSize, Encoding encoding,
                                   const KW_String& source, unsigned int start, unsigned int count);
    /// The number of bytes that KW_StringToCString would write without the terminator, or -1.
    static int KW_StringToCStringLenBytes(Encoding encoding, const KW_String& source, unsigned int start,
                                          unsigned int count);
    /// The encoding's byte-order mark; without bytes when it has none.
    static KW_CString GetBOM(Encoding encoding);
    /// The length in bytes of the byte-order mark that the bytes begin with, 0 when there is none. `encoding`
    /// is written only when there is one; Encoding_Unsupported for a mark of an encoding that is not
    /// converted.
    static unsigned int DetectBOM(const void* bytes, unsigned int size, Encoding& encoding);
    /// Whether the bytes up to the terminator are well-formed UTF-8, and with `requireMultibyte` hold at
    /// least one character that is not ASCII. False for null.
    static bool IsUTF8(const char* bytes, bool requireMultibyte);
    /// The same for `size` bytes; zero bytes among them are characters.
    static bool IsUTF8(const char* bytes, unsigned int size, bool requireMultibyte);
    /// Decodes a whole text: by its byte-order mark when it has one, else with `detect` by what its bytes
    /// look like, else by `encoding` (System for None and Unsupported). Returns the encoding used;
    /// Encoding_None when the detection fell back on System, Encoding_Unsupported for a mark of an encoding
    /// that is not converted (the rest is then taken as System). Text that is malformed in its encoding
    /// leaves the target empty.
    static Encoding TextToString(KW_String& target, const char* bytes, unsigned int size, bool detect,
                                 Encoding encoding);
    /// The one unit that the byte decodes to; 0 when there is none.
    static unsigned short CharToKW_Char(char byte, Encoding encoding);
    /// The one byte that the unit encodes to; '?' when there is none.
    static char KW_CharToChar(unsigned short unit, Encoding encoding);
    /// tolower and toupper of the C library in the current locale; units above 255 stay as they are.
    static unsigned short KW_CharToLowerCase(unsigned short unit);
    static unsigned short KW_CharToUpperCase(unsigned short unit);

    /// The string up to the terminator, encoded, with a terminator; '?' for what the encoding lacks. Without
    /// bytes (null, size 0) for a null string or an encoding that is none.
    KW_CString ToCStr(Encoding encoding) const;
    /// The same; what the target held is freed.
    void ToCStr(KW_CString& target, Encoding encoding) const;

    // ---- Concatenation (KW_String_Edit.cpp). Char text is Encoding_System; a null pointer adds nothing.

    /// Null only when both are null.
    KW_String operator+(const KW_String& other) const;
    KW_String operator+(const char* systemText) const;
    /// A null or empty string changes nothing.
    KW_String& operator+=(const KW_String& other);
    KW_String& operator+=(const char* systemText);
    /// Becomes up to three char texts in a row, of each at most so many bytes (0: all). Null when none of
    /// them contributes a byte.
    void SetCat(const char* a, unsigned int aMax, const char* b, unsigned int bMax, const char* c,
                unsigned int cMax);

    // ---- Comparison (KW_String_Compare.cpp)

    /// -1, 0 or 1 by unsigned units from the two starts, over `count` units or up to the terminator,
    /// whichever is first; count 0 means the whole strings. Null is before every other string and equal to
    /// null. A start behind its string's end counts as at the end.
    static int Compare(const KW_String& a, unsigned int startA, const KW_String& b, unsigned int startB,
                       unsigned int count);
    /// The same after tolower of both units.
    static int CompareIgnoreCase(const KW_String& a, unsigned int startA, const KW_String& b,
                                 unsigned int startB, unsigned int count);
    bool operator<(const KW_String& other) const;
    bool operator>(const KW_String& other) const;
    bool operator<=(const KW_String& other) const;
    bool operator>=(const KW_String& other) const;
    bool operator==(const KW_String& other) const;
    bool operator!=(const KW_String& other) const;
    /// -1, 0 or 1 by signed bytes (80 to FF before 01 to 7F); -10 when a pointer is null.
    static int Compare(const char* a, const char* b);
    static int CompareIgnoreCase(const char* a, const char* b);
    /// False when a pointer is null. With a count at most so many bytes are compared; a count of 0 means the
    /// whole texts to Equals and gives false from EqualsIgnoreCase.
    static bool Equals(const char* a, const char* b);
    static bool Equals(const char* a, const char* b, unsigned int count);
    static bool EqualsIgnoreCase(const char* a, const char* b);
    static bool EqualsIgnoreCase(const char* a, const char* b, unsigned int count);

    // ---- Searching (KW_String_Search.cpp). -1 when a string is null, what is sought is empty, or the start
    // is not below the length. A char is Encoding_System; the zero byte is never found.

    /// First occurrence at or after the start.
    int IndexOf(const KW_String& what, unsigned int start) const;
    /// The same after tolower of both sides.
    int IndexOfIgnoreCase(const KW_String& what, unsigned int start) const;
    /// Last occurrence that begins at or before the start.
    int LastIndexOf(const KW_String& what, unsigned int start) const;
    int LastIndexOf(const KW_String& what) const;
    /// First such unit at or after the start and before the terminator.
    int IndexOf(char what, unsigned int start) const;
    int LastIndexOf(char what, unsigned int start) const;
    int LastIndexOf(char what) const;
    /// Whether the string starts with the prefix. False for a null or empty prefix.
    bool StartsWith(const KW_String& prefix, unsigned int start) const;
    /// False for a null or empty suffix.
    bool EndsWith(const KW_String& suffix) const;

    // ---- Parts and changes (KW_String_Edit.cpp)

    /// From `start` to the end. Null when start is behind the end; at the end the empty string.
    KW_String Substring(unsigned int start) const;
    /// The same, but at most `count` units.
    KW_String Substring(unsigned int start, unsigned int count) const;
    /// The `count` units that end `fromEnd` units before the end; null when there are not so many.
    KW_String EndSubstring(unsigned int count, unsigned int fromEnd) const;
    /// Every unit equal to the first byte's becomes the second's. Both are Encoding_System.
    KW_String Replace(char what, char with) const;
    /// Every occurrence, from the left and without overlap. An empty `what` replaces nothing; null when an
    /// operand is null.
    KW_String Replace(const KW_String& what, const KW_String& with) const;
    /// The same with both taken as Encoding_System.
    KW_String Replace(const char* what, const char* with) const;
    /// Replaces, in place, the units at positions `from` to `to`, counted from 1 and inclusive; `to` is cut
    /// at the end. False and no change unless 1 <= from <= to and from is a position of the text.
    bool Replace(unsigned int from, unsigned int to, const KW_String& with);
    /// Every unit through KW_CharToLowerCase, or KW_CharToUpperCase.
    KW_String ToLowerCase() const;
    KW_String ToUpperCase() const;
    /// Without leading (`left`) and trailing (`right`) blanks, and tabs when `tabs`. Empty when nothing
    /// remains.
    KW_String THIS_Trim(bool left, bool right, bool tabs) const;
    /// The sequence `count` times; null for a negative count.
    static KW_String RepeatedSequence(const KW_String& sequence, long count);

    // ---- Splitting (KW_String_Split.cpp). A null string gives one null piece, and a piece without units is
    // null.

    /// Resets the list, then fills it with the pieces between separators: one more than there are separators.
    void Split(KW_List<KW_String>& pieces, char separator) const;
    /// Appends the lines, without or with their ends (LF, CR LF, CR); what follows the last end is the last
    /// line.
    void SplitLines(KW_List<KW_String>& lines, bool removeEOL, bool resetList) const;
    /// Resets the list, then fills it with the pieces between runs of blanks and tabs. A run at the very
    /// start or end leaves a null piece there.
    void SplitBySpaces(KW_List<KW_String>& pieces) const;

    // ---- Units (KW_String_Edit.cpp). Out of range reads give 0 and writes nothing; a byte is
    // Encoding_System.

    /// '?' for a unit that is not one byte.
    char CharAt(unsigned int index) const;
    unsigned short UCharAt(unsigned int index) const;
    void SetCharAt(unsigned int index, char byte);
    void SetUCharAt(unsigned int index, unsigned short unit);

    // ---- Numbers and formatting (KW_String_Numbers.cpp)

    /// The number at the first digit or '-' (a digit must follow the '-', else 0); what follows it is
    /// ignored. 0 for null or empty text, the largest value when there is no number. Overflow wraps.
    static long ToLong(const char* text);
    /// The number at the first digit, where a '-' counts for nothing; otherwise as ToLong.
    static unsigned long ToULong(const char* text);
    /// The number at the first digit, '-', '.' or ','; both '.' and ',' separate decimals. An exponent needs
    /// a small 'e' and a sign. 0 for null or empty text, the largest double when there is no number or no
    /// digit behind the separator.
    static double ToDouble(const char* text);
    /// Whether the text is blanks, a sign, blanks, and then only digits, of which there is at least one.
    static bool IsIntegerNumber(const char* text);
    static bool IsIntegerNumber(const KW_String& text);
    /// 0 not a number, 1 an integer, 2 a decimal number ('.' or ',' with a digit behind it).
    static short IsNumber(const char* text);
    static short IsNumber(const KW_String& text);
    /// Decimal text, filled with blanks on the left to at least `width` characters (at most 1000).
    static KW_String LongToString(const long& value, unsigned int width);
    /// With so many decimals (at most 1000), or for 0 decimals the shortest form with six significant digits.
    /// Always with a point, whatever the locale.
    static KW_String DoubleToString(double value, unsigned int width, unsigned int decimals);
    /// With so many decimals, also 0; a negative number of them gives the shortest form.
    static KW_String DoubleToString(double value, int decimals);
    /// printf's formatting, cut to 2047 bytes; the result is taken as Encoding_System.
    static KW_String Format(const char* format, ...) __attribute__((format(printf, 1, 2)));
    /// Bytes before the terminator; 0 for null.
    static unsigned int Length(const char* text);
};

KW_String operator+(const char* systemText, const KW_String& text);

/// Bytes in an encoding, owned: what KW_String::ToCStr and KW_String::GetBOM give.
class KW_CString {
public:
    char* data;                    ///< the bytes (array new), or null
    unsigned int size;             ///< number of bytes, a terminator included where there is one
    KW_String::Encoding encoding;  ///< of the bytes

    /// No bytes, Encoding_None.
    KW_CString();
    KW_CString(const KW_CString& other);
    KW_CString(KW_CString&& other) noexcept;
    KW_CString& operator=(KW_CString other) noexcept;
    ~KW_CString();
};

/// The text of Encoding_System.
inline KW_String KW_SystemText(const char* text) {
    return KW_String(text, KW_String::Encoding_System);
}

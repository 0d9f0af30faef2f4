#pragma once

template <typename T>
class KW_List;
class KW_CString;

/// The string of the whole system: UTF-16 code units in the machine's byte order in one heap buffer that the
/// string owns.
///
/// Two states without text are distinct. The null string has no buffer; it is what a default constructor and
/// every failure give. The empty string has a buffer that holds only the terminator. Unless an operation says
/// otherwise, a null input gives a null result.
///
/// Whenever `data` is not null, data[length] is 0 and length < capacity. A buffer that must grow is allocated
/// with exactly the units needed. Positions and counts are in code units, from 0.
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

    KW_String();
    KW_String(char const* bytes, Encoding encoding);
    KW_String(char const* bytes, unsigned int byteCount, Encoding encoding);
    KW_String(KW_String const& other);
    KW_String(unsigned short const* units, unsigned int count);
    explicit KW_String(unsigned short const* units);
    explicit KW_String(KW_String* other);
    ~KW_String();

    KW_String& operator=(char const* systemText);
    KW_String& operator=(KW_String const& other);
    bool Set(char const* bytes, unsigned int byteCount, Encoding encoding);
    void SetToNullString();
    void THIS_SetToNullString();
    void THIS_DeallocSetNullString();
    bool THIS_Alloc(unsigned int units, bool keep);
    void SetSize(unsigned int units, bool keep);
    void THIS_CopyString(KW_String const& source);
    void THIS_CopyString(KW_String const& source, unsigned int start, unsigned int count);
    void THIS_SetToConcatenatedString(KW_String const& first, KW_String const& second);
    void THIS_Append(unsigned short const* units, unsigned int count);
    void THIS_Append(char const* bytes, unsigned int byteCount, Encoding encoding);

    static long ConvertChangeEncoding(Encoding sourceEncoding, char const* source, long sourceLength,
                                      Encoding targetEncoding, char* target, long targetSize,
                                      bool addTerminator, bool lossy);
    static bool CStringToKW_String(KW_String& target, char const* source, unsigned int byteCount,
                                   Encoding encoding, bool append);
    static bool KW_StringToCString(char** out, unsigned int& outSize, Encoding encoding,
                                   KW_String const& source, unsigned int start, unsigned int count);
    static int KW_StringToCStringLenBytes(Encoding encoding, KW_String const& source, unsigned int start,
                                          unsigned int count);
    static KW_CString GetBOM(Encoding encoding);
    static unsigned int DetectBOM(void const* bytes, unsigned int size, Encoding& encoding);
    static bool IsUTF8(char const* bytes, bool requireMultibyte);
    static bool IsUTF8(char const* bytes, unsigned int size, bool requireMultibyte);
    static Encoding TextToString(KW_String& target, char const* bytes, unsigned int size, bool detect,
                                 Encoding encoding);
    static unsigned short CharToKW_Char(char byte, Encoding encoding);
    static char KW_CharToChar(unsigned short unit, Encoding encoding);
    static unsigned short KW_CharToLowerCase(unsigned short unit);
    static unsigned short KW_CharToUpperCase(unsigned short unit);

    KW_CString ToCStr(Encoding encoding) const;
    void ToCStr(KW_CString& target, Encoding encoding) const;

    KW_String operator+(KW_String const& other) const;
    KW_String operator+(char const* systemText) const;
    KW_String& operator+=(KW_String const& other);
    KW_String& operator+=(char const* systemText);
    void SetCat(char const* a, unsigned int aMax, char const* b, unsigned int bMax, char const* c,
                unsigned int cMax);

    static int Compare(KW_String const& a, unsigned int startA, KW_String const& b, unsigned int startB,
                       unsigned int count);
    static int CompareIgnoreCase(KW_String const& a, unsigned int startA, KW_String const& b,
                                 unsigned int startB, unsigned int count);
    bool operator<(KW_String const& other) const;
    bool operator>(KW_String const& other) const;
    bool operator<=(KW_String const& other) const;
    bool operator>=(KW_String const& other) const;
    bool operator==(KW_String const& other) const;
    bool operator!=(KW_String const& other) const;
    static int Compare(char const* a, char const* b);
    static int CompareIgnoreCase(char const* a, char const* b);
    static bool Equals(char const* a, char const* b);
    static bool Equals(char const* a, char const* b, unsigned int count);
    static bool EqualsIgnoreCase(char const* a, char const* b);
    static bool EqualsIgnoreCase(char const* a, char const* b, unsigned int count);

    int IndexOf(KW_String const& what, unsigned int start) const;
    int IndexOfIgnoreCase(KW_String const& what, unsigned int start) const;
    int LastIndexOf(KW_String const& what, unsigned int start) const;
    int LastIndexOf(KW_String const& what) const;
    int IndexOf(char what, unsigned int start) const;
    int LastIndexOf(char what, unsigned int start) const;
    int LastIndexOf(char what) const;
    bool StartsWith(KW_String const& prefix, unsigned int start) const;
    bool EndsWith(KW_String const& suffix) const;

    KW_String Substring(unsigned int start) const;
    KW_String Substring(unsigned int start, unsigned int count) const;
    KW_String EndSubstring(unsigned int count, unsigned int fromEnd) const;
    KW_String Replace(char what, char with) const;
    KW_String Replace(KW_String const& what, KW_String const& with) const;
    KW_String Replace(char const* what, char const* with) const;
    bool Replace(unsigned int from, unsigned int to, KW_String const& with);
    KW_String ToLowerCase() const;
    KW_String ToUpperCase() const;
    KW_String THIS_Trim(bool left, bool right, bool tabs) const;
    static KW_String RepeatedSequence(KW_String const& sequence, long count);
    void Split(KW_List<KW_String>& pieces, char separator) const;
    void SplitLines(KW_List<KW_String>& lines, bool removeEOL, bool resetList) const;
    void SplitBySpaces(KW_List<KW_String>& pieces) const;

    char CharAt(unsigned int index) const;
    unsigned short UCharAt(unsigned int index) const;
    void SetCharAt(unsigned int index, char byte);
    void SetUCharAt(unsigned int index, unsigned short unit);

    static long ToLong(char const* text);
    static unsigned long ToULong(char const* text);
    static double ToDouble(char const* text);
    static bool IsIntegerNumber(char const* text);
    static bool IsIntegerNumber(KW_String const& text);
    static short IsNumber(char const* text);
    static short IsNumber(KW_String const& text);
    static KW_String LongToString(long const& value, unsigned int width);
    static KW_String DoubleToString(double value, unsigned int width, unsigned int decimals);
    static KW_String DoubleToString(double value, int decimals);
    static KW_String Format(char const* format, ...) __attribute__((format(printf, 1, 2)));
    static unsigned int Length(char const* text);

private:
    static unsigned int KW_StringEncodingToMacStringEncoding(Encoding encoding);
    static int UTF32toUTF16(unsigned int const* source, unsigned short* target, int count, bool bigEndian);
};

KW_String operator+(char const* systemText, KW_String const& text);

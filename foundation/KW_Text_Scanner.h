#pragma once

#include "foundation/KW_String.h"

/// Reads structured text with a cursor: lines, tokens between white space, integers, quoted strings, and
/// occurrences of a search text. Every read either moves the cursor behind what it read (`advance`) or only
/// looks ahead. The cursor never passes the end.
///
/// White space is tab, line feed, carriage return and blank. What is passed over before a read is chosen by a
/// skip mode: 1 blanks and tabs, 2 all white space, 3 white space and block comments, any other value
/// nothing.
class KW_Text_Scanner {
public:
    unsigned short* text;    ///< the scanner's own copy (array new) with a terminator; null when none was set
    unsigned long length;    ///< units of text
    unsigned long position;  ///< the cursor: index of the next unit to read

    KW_Text_Scanner();
    KW_Text_Scanner(const KW_Text_Scanner&) = delete;
    KW_Text_Scanner& operator=(const KW_Text_Scanner&) = delete;
    ~KW_Text_Scanner();

    /// Takes a copy of the text, cursor at its start. A null string leaves the scanner without text.
    void Set(const KW_String& source);

    /// The units up to the line end (LF, CR LF or CR), with `keepEOL` the line end too; null when that is
    /// nothing: at the end of the text, and for an empty line without its end. A zero unit ends the text
    /// here.
    KW_String ReadLine(bool keepEOL, bool advance);

    /// The units up to the next white space or the end; null when there are none.
    KW_String ReadToken(short skipMode, bool advance);

    /// Reads a token that is an integer (see IsInteger). False, with `value` unchanged, for any other token;
    /// with `advance` the cursor is then behind what the skip mode passed over, before the token. At the end
    /// of the text there is an empty token, which counts as 0.
    bool ReadLong(long& value, short skipMode, bool advance);

    /// Reads the text between two double quotes, exactly as it is written (null if there is none); a quote
    /// preceded by a backslash does not close. False, with `out` unchanged, when there is no quote at the
    /// cursor or none that closes; with `advance` the cursor is then behind what the skip mode passed over.
    bool ReadDoubleQuotedString(KW_String& out, short skipMode, bool advance);

    /// Index of the first unit from the cursor on that is neither white space nor in a block comment; a
    /// comment that is not closed reaches to the end. With `store` the cursor moves there; without it the
    /// cursor moves behind the last comment that was passed over, if there was one.
    unsigned long SkipSpacesTabsEOLsComments(bool store);

    /// Index of the first occurrence at or after `start` of a text in the given encoding; -1 when there is
    /// none. With `advance` the cursor moves behind the occurrence, or to the end when there is none. Without
    /// a text to search for, or with a start at the end or behind it: -1, and the cursor does not move.
    long FindText(const char* what, unsigned long start, bool advance, KW_String::Encoding encoding);

    /// Whether the text is decimal digits behind at most one '-'. No digits at all count as an integer.
    static bool IsInteger(const KW_String& token);

private:
    unsigned long skipped(short skipMode);
    KW_String units(unsigned long start, unsigned long end) const;
};

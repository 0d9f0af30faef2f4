#pragma once

#include "foundation/KW_String.h"
#include "platform/UniString.h"

#include <span>

/// Text in UTF-16 code units that somebody else owns: what is read line by line or token by token is copied
/// only when it is kept.
using KW_Units = std::span<const unsigned short>;

inline KW_Units KW_UnitsOf(const KW_String& text) {
    return {text.data, text.length};
}
inline KW_Units KW_UnitsOf(const GS::UniString& text) {
    return {text.ToUStr(), text.GetLength()};
}

/// The host's string of these units.
inline GS::UniString KW_UniStringOf(KW_Units units) {
    return {units.data(), static_cast<unsigned int>(units.size())};
}
/// Null counts as empty.
inline GS::UniString KW_UniStringOf(const KW_String& text) {
    return KW_UniStringOf(KW_UnitsOf(text));
}

/// Makes the text a copy of the units, which are not its own; empty, not null, for none.
void KW_SetUnits(KW_String& text, KW_Units units);

/// Takes the first line off `text`, its end (LF, CR LF or CR) with it. The line comes without its end.
KW_Units KW_TakeLine(KW_Units& text);

/// The pieces between runs of blanks and tabs, one after another. A run at the very start or end leaves an
/// empty piece there; a text without units is one empty piece.
class KW_TokenReader {
public:
    explicit KW_TokenReader(KW_Units text) : rest_(text) {}
    /// False when there is no other token.
    bool Next(KW_Units& token);

private:
    KW_Units rest_;
    bool ended_ = false;
};

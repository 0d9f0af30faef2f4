#include "foundation/KW_String_Internal.h"
#include "foundation/KW_Units.h"
#include "foundation/UnitSearch.h"

#include <functional>

namespace {

bool liesIn(const KW_List<KW_String>& list, const KW_String* string) {
    if (list.count == 0) return false;
    const std::less<const KW_String*> before;
    const KW_String* const first = &list[0];
    return !before(string, first) && before(string, first + list.count);
}

void addPiece(KW_List<KW_String>& list, KW_Units piece) {
    list.AddData(KW_String(piece.data(), static_cast<unsigned int>(piece.size())), -1);
}

}  // namespace

void KW_String::Split(KW_List<KW_String>& pieces, char separator) const {
    if (liesIn(pieces, this)) return KW_String(*this).Split(pieces, separator);
    pieces.Reset();
    const unsigned short unit = CharToKW_Char(separator, Encoding_System);
    const std::vector<unsigned int> separators = positionsOfEither(data, length, unit, unit);
    pieces.SetSize(static_cast<long>(separators.size()) + 1, false);
    if (pieces.count == 0) return;
    unsigned int start = 0;
    long next = 0;
    for (const unsigned int end : separators) {
        KW_StringFill(pieces[next++], data + start, end - start);
        start = end + 1;
    }
    KW_StringFill(pieces[next], data + start, length - start);
}

void KW_String::SplitLines(KW_List<KW_String>& lines, bool removeEOL, bool resetList) const {
    if (liesIn(lines, this)) return KW_String(*this).SplitLines(lines, removeEOL, resetList);
    if (resetList) lines.Reset();
    KW_Units rest = KW_UnitsOf(*this);
    for (bool ended = true; ended;) {
        const KW_Units before = rest;
        const KW_Units line = KW_TakeLine(rest);
        const KW_Units whole = before.first(before.size() - rest.size());
        addPiece(lines, removeEOL ? line : whole);
        ended = whole.size() > line.size();
    }
}

void KW_String::SplitBySpaces(KW_List<KW_String>& pieces) const {
    if (liesIn(pieces, this)) return KW_String(*this).SplitBySpaces(pieces);
    pieces.Reset();
    KW_TokenReader reader(KW_UnitsOf(*this));
    for (KW_Units piece; reader.Next(piece);)
        addPiece(pieces, piece);
}

#include "foundation/KW_String_Internal.h"
#include "foundation/UnitSearch.h"

#include <functional>

namespace {

bool liesIn(const KW_List<KW_String>& list, const KW_String* string) {
    if (list.count == 0) return false;
    const std::less<const KW_String*> before;
    const KW_String* const first = &list[0];
    return !before(string, first) && before(string, first + list.count);
}

void addPiece(KW_List<KW_String>& list, const KW_String& text, unsigned long start, unsigned long end) {
    list.AddData(KW_String(text.data + start, static_cast<unsigned int>(end - start)), -1);
}

bool isBlank(unsigned short unit) {
    return unit == ' ' || unit == '\t';
}

}  // namespace

void KW_String::Split(KW_List<KW_String>& pieces, char separator) const {
    if (liesIn(pieces, this)) return KW_String(*this).Split(pieces, separator);
    pieces.Reset();
    if (data == nullptr) return pieces.AddData(KW_String(), -1);
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
    if (data == nullptr) return lines.AddData(KW_String(), -1);
    unsigned long start = 0;
    for (unsigned long end; (end = findEither(data, length, start, '\n', '\r')) < length;) {
        // The terminator behind the last unit is no line feed.
        const unsigned long next = end + (data[end] == '\r' && data[end + 1] == '\n' ? 2 : 1);
        addPiece(lines, *this, start, removeEOL ? end : next);
        start = next;
    }
    addPiece(lines, *this, start, length);
}

void KW_String::SplitBySpaces(KW_List<KW_String>& pieces) const {
    if (liesIn(pieces, this)) return KW_String(*this).SplitBySpaces(pieces);
    pieces.Reset();
    if (data == nullptr) return pieces.AddData(KW_String(), -1);
    unsigned int start = 0;
    for (unsigned int i = 0; i < length;) {
        if (!isBlank(data[i])) {
            ++i;
            continue;
        }
        addPiece(pieces, *this, start, i);
        while (i < length && isBlank(data[i]))
            ++i;
        start = i;
    }
    addPiece(pieces, *this, start, length);
}

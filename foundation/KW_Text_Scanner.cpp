#include "foundation/KW_Text_Scanner.h"

#include "foundation/UnitSearch.h"

#include <algorithm>

namespace {

bool isBlankOrTab(unsigned short unit) {
    return unit == ' ' || unit == '\t';
}

bool isWhiteSpace(unsigned short unit) {
    return isBlankOrTab(unit) || unit == '\n' || unit == '\r';
}

constexpr char kCommentEnd[] = "*/";

}  // namespace

KW_Text_Scanner::KW_Text_Scanner() : text(nullptr), length(0), position(0) {}

KW_Text_Scanner::~KW_Text_Scanner() {
    delete[] text;
}

void KW_Text_Scanner::Set(const KW_String& source) {
    delete[] text;
    text = nullptr;
    length = 0;
    position = 0;
    if (source.data == nullptr) return;
    text = new unsigned short[source.length + 1UL];
    std::copy_n(source.data, source.length, text);
    text[source.length] = 0;
    length = source.length;
}

KW_String KW_Text_Scanner::ReadLine(bool keepEOL, bool advance) {
    unsigned long end = position;
    while (end < length && text[end] != 0 && text[end] != '\n' && text[end] != '\r')
        ++end;
    unsigned long next = end;
    if (end < length && text[end] != 0) {
        const bool isPair = text[end] == '\r' && text[end + 1] == '\n';
        next = end + (isPair ? 2 : 1);
    }
    KW_String line = units(position, keepEOL ? next : end);
    if (advance) position = next;
    return line;
}

KW_String KW_Text_Scanner::ReadToken(short skipMode, bool advance) {
    const unsigned long start = skipped(skipMode);
    unsigned long end = start;
    while (end < length && !isWhiteSpace(text[end]))
        ++end;
    if (advance) position = end;
    return units(start, end);
}

bool KW_Text_Scanner::ReadLong(long& value, short skipMode, bool advance) {
    const unsigned long before = position;
    const unsigned long start = skipped(skipMode);
    position = start;
    const KW_String token = ReadToken(0, true);
    const bool isInteger = IsInteger(token);
    if (isInteger) value = KW_String::ToLong(token.ToCStr(KW_String::Encoding_System).data);
    if (!advance) {
        position = before;
    } else if (!isInteger) {
        position = start;
    }
    return isInteger;
}

bool KW_Text_Scanner::ReadDoubleQuotedString(KW_String& out, short skipMode, bool advance) {
    const unsigned long open = skipped(skipMode);
    if (advance) position = open;
    if (open >= length || text[open] != '"') return false;
    unsigned long from = open + 1;
    for (;;) {
        const long found = FindText("\"", from, false, KW_String::Encoding_System);
        if (found < 0) return false;
        const auto close = static_cast<unsigned long>(found);
        if (text[close - 1] == '\\') {
            from = close + 1;
            continue;
        }
        out = units(open + 1, close);
        if (advance) position = close + 1;
        return true;
    }
}

unsigned long KW_Text_Scanner::SkipSpacesTabsEOLsComments(bool store) {
    unsigned long p = position;
    while (p < length) {
        if (isWhiteSpace(text[p])) {
            ++p;
        } else if (text[p] == '/' && text[p + 1] == '*') {
            const long end = FindText(kCommentEnd, p + 2, true, KW_String::Encoding_System);
            p = end < 0 ? length : static_cast<unsigned long>(end) + 2;
        } else {
            break;
        }
    }
    if (store) position = p;
    return p;
}

long KW_Text_Scanner::FindText(const char* what, unsigned long start, bool advance,
                               KW_String::Encoding encoding) {
    constexpr long kNotFound = -1;
    if (what == nullptr || start >= length) return kNotFound;
    const KW_String sought(what, encoding);
    if (sought.length == 0) return kNotFound;
    const unsigned long found = findUnits(text, length, start, sought.data, sought.length);
    if (advance) position = found < length ? found + sought.length : length;
    return found < length ? static_cast<long>(found) : kNotFound;
}

bool KW_Text_Scanner::IsInteger(const KW_String& token) {
    const unsigned int start = token.UCharAt(0) == '-' ? 1 : 0;
    return std::all_of(token.data + std::min(start, token.length), token.data + token.length,
                       [](unsigned short unit) { return unit >= '0' && unit <= '9'; });
}

// Where a read in this mode begins. The cursor stays where it is.
unsigned long KW_Text_Scanner::skipped(short skipMode) {
    const unsigned long before = position;
    unsigned long p = position;
    switch (skipMode) {
        case 1:
            while (p < length && isBlankOrTab(text[p]))
                ++p;
            break;
        case 2:
            while (p < length && isWhiteSpace(text[p]))
                ++p;
            break;
        case 3:
            p = SkipSpacesTabsEOLsComments(false);
            position = before;
            break;
        default:
            break;
    }
    return p;
}

KW_String KW_Text_Scanner::units(unsigned long start, unsigned long end) const {
    return KW_String(text + start, static_cast<unsigned int>(end - start));
}

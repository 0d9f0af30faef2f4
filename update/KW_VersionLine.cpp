#include "update/KW_VersionLine.h"

#include <algorithm>

namespace {

bool isDateSeparator(unsigned short unit) {
    return unit == '-' || unit == '/';
}

/// In the system encoding the digits are the bytes of ASCII, and nothing else is converted to one of them.
bool isDigit(unsigned short unit) {
    return unit >= '0' && unit <= '9';
}

bool digitsOnly(KW_Units text) {
    return std::ranges::all_of(text, isDigit);
}

/// Cut at the end of the text; empty when it starts behind it.
KW_Units part(KW_Units text, std::size_t start, std::size_t count) {
    if (start >= text.size()) return {};
    return text.subspan(start, std::min(count, text.size() - start));
}

/// dd/mm/yyyy or dd-mm-yyyy; what follows is not looked at, and neither is the length.
bool isDate(KW_Units text) {
    return text.size() > 5 && isDateSeparator(text[2]) && isDateSeparator(text[5]) &&
           digitsOnly(part(text, 0, 2)) && digitsOnly(part(text, 3, 2)) && digitsOnly(part(text, 6, 4));
}

/// At least four numbers between dots; the first four are looked at. A number without digits is one.
bool isVersion(KW_Units text) {
    for (int number = 1; number <= 4; ++number) {
        const auto dot = std::ranges::find(text, static_cast<unsigned short>('.'));
        if (!digitsOnly(KW_Units(text.begin(), dot))) return false;
        if (dot == text.end()) return number == 4;
        text = KW_Units(dot + 1, text.end());
    }
    return true;
}

/// "(AC220)"
bool isHostTag(KW_Units text) {
    return text.size() >= 4 && text[0] == '(' && text[1] == 'A' && text[2] == 'C' && text.back() == ')' &&
           digitsOnly(text.subspan(3, text.size() - 4));
}

}  // namespace

KW_VersionDate::KW_VersionDate(KW_Units text) {
    take(text, 6, 4);
    take(text, 3, 2);
    take(text, 0, 2);
}

void KW_VersionDate::take(KW_Units text, std::size_t start, std::size_t count) {
    for (const unsigned short unit : part(text, start, count))
        units_[count_++] = unit;
}

bool KW_VersionDate::operator>(const KW_VersionDate& other) const {
    return std::ranges::lexicographical_compare(other.Units(), Units());
}

KW_VersionLine::KW_VersionLine(KW_Units line) {
    KW_TokenReader reader(line);
    while (count_ < kGrammarTokens && reader.Next(tokens_[count_]))
        ++count_;
}

KW_VersionLine::KW_VersionLine(const KW_List<KW_String>& tokens) {
    while (count_ < kGrammarTokens && static_cast<long>(count_) < tokens.count) {
        tokens_[count_] = KW_UnitsOf(tokens[static_cast<long>(count_)]);
        ++count_;
    }
}

KW_AddonUpdate_LineKind KW_VersionLine::Kind() const {
    if (isLibrary()) return KW_AddonUpdate_LibraryLine;
    if (isAddon()) return KW_AddonUpdate_AddonLine;
    return KW_AddonUpdate_NoVersionLine;
}

bool KW_VersionLine::isLibrary() const {
    return count_ >= 2 && Token(2).size() == 10 && isDate(Token(2));
}

bool KW_VersionLine::isAddon() const {
    return count_ >= 4 && isVersion(Token(2)) && isHostTag(Token(3)) && isDate(Token(4));
}

KW_Units KW_VersionLine::MajorVersion() const {
    const KW_Units version = Token(2);
    return KW_Units(version.begin(), std::ranges::find(version, static_cast<unsigned short>('.')));
}

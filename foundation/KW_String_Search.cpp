#include "foundation/KW_String.h"

#include "foundation/UnitSearch.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int kNotFound = -1;

int orNotFound(const KW_String& text, unsigned long found) {
    return found < text.length ? static_cast<int>(found) : kNotFound;
}

bool stands(const KW_String& what, const KW_String& text, unsigned int at) {
    return text.length - at >= what.length &&
           std::memcmp(text.data + at, what.data, what.length * sizeof(unsigned short)) == 0;
}

}  // namespace

int KW_String::IndexOf(const KW_String& what, unsigned int start) const {
    if (what.length == 0 || start >= length) return kNotFound;
    return orNotFound(*this, findUnits(data, length, start, what.data, what.length));
}

int KW_String::IndexOfIgnoreCase(const KW_String& what, unsigned int start) const {
    if (what.length == 0 || start >= length) return kNotFound;
    const KW_String sought = what.ToLowerCase();
    const auto equals = [](unsigned short unit, unsigned short lower) {
        return KW_CharToLowerCase(unit) == lower;
    };
    const unsigned short* const begin = data;
    const unsigned short* const end = begin + length;
    const unsigned short* const found =
        std::search(begin + start, end, sought.data, sought.data + sought.length, equals);
    return found == end ? kNotFound : static_cast<int>(found - begin);
}

int KW_String::LastIndexOf(const KW_String& what, unsigned int start) const {
    if (what.length == 0 || start >= length || static_cast<int>(start) < 0) return kNotFound;
    return orNotFound(*this, findUnitsBackward(data, length, start, what.data, what.length));
}

int KW_String::LastIndexOf(const KW_String& what) const {
    return length == 0 ? kNotFound : LastIndexOf(what, length - 1);
}

int KW_String::IndexOf(char what, unsigned int start) const {
    if (what == 0 || start >= length) return kNotFound;
    const unsigned short unit = CharToKW_Char(what, Encoding_System);
    const unsigned long found = findEither(data, length, start, unit, 0);
    return found < length && data[found] == unit ? static_cast<int>(found) : kNotFound;
}

int KW_String::LastIndexOf(char what, unsigned int start) const {
    if (what == 0 || start >= length) return kNotFound;
    const unsigned short unit = CharToKW_Char(what, Encoding_System);
    return orNotFound(*this, findUnitsBackward(data, length, start, &unit, 1));
}

int KW_String::LastIndexOf(char what) const {
    return length == 0 ? kNotFound : LastIndexOf(what, length - 1);
}

bool KW_String::StartsWith(const KW_String& prefix, unsigned int start) const {
    return prefix.length != 0 && start < length && stands(prefix, *this, start);
}

bool KW_String::EndsWith(const KW_String& suffix) const {
    return suffix.length != 0 && suffix.length <= length && stands(suffix, *this, length - suffix.length);
}

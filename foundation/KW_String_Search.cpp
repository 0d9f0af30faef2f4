#include "foundation/KW_String.h"

#include "foundation/UnitSearch.h"

#include <cstring>

namespace {

constexpr int kNotFound = -1;

int orNotFound(KW_String const& text, unsigned long found) {
    return found < text.length ? static_cast<int>(found) : kNotFound;
}

bool stands(KW_String const& what, KW_String const& text, unsigned int at) {
    return text.length - at >= what.length &&
           std::memcmp(text.data + at, what.data, what.length * sizeof(unsigned short)) == 0;
}

}  // namespace

int KW_String::IndexOf(KW_String const& what, unsigned int start) const {
    if (what.length == 0 || start >= length) return kNotFound;
    return orNotFound(*this, findUnits(data, length, start, what.data, what.length));
}

int KW_String::IndexOfIgnoreCase(KW_String const& what, unsigned int start) const {
    if (what.length == 0 || start >= length) return kNotFound;
    return ToLowerCase().IndexOf(what.ToLowerCase(), start);
}

int KW_String::LastIndexOf(KW_String const& what, unsigned int start) const {
    if (what.length == 0 || start >= length || static_cast<int>(start) < 0) return kNotFound;
    return orNotFound(*this, findUnitsBackward(data, length, start, what.data, what.length));
}

int KW_String::LastIndexOf(KW_String const& what) const {
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

bool KW_String::StartsWith(KW_String const& prefix, unsigned int start) const {
    return prefix.length != 0 && start < length && stands(prefix, *this, start);
}

bool KW_String::EndsWith(KW_String const& suffix) const {
    return suffix.length != 0 && suffix.length <= length && stands(suffix, *this, length - suffix.length);
}

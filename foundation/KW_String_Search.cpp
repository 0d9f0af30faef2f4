#include "foundation/KW_String.h"

namespace {

constexpr int kNotFound = -1;

template <typename Equal>
bool matchesAt(unsigned short const* text, KW_String const& what, Equal equal) {
    for (unsigned int i = 0; i < what.length; ++i) {
        if (!equal(text[i], what.data[i])) return false;
    }
    return true;
}

bool equalUnits(unsigned short a, unsigned short b) {
    return a == b;
}

bool equalIgnoringCase(unsigned short a, unsigned short b) {
    return KW_String::KW_CharToLowerCase(a) == KW_String::KW_CharToLowerCase(b);
}

template <typename Equal>
int findForward(KW_String const& text, KW_String const& what, unsigned int start, Equal equal) {
    if (what.length == 0 || start >= text.length) return kNotFound;
    for (unsigned int i = start; text.length - i >= what.length; ++i) {
        if (matchesAt(text.data + i, what, equal)) return static_cast<int>(i);
    }
    return kNotFound;
}

int findUnitBackward(KW_String const& text, unsigned short unit, unsigned int start) {
    for (unsigned int i = start + 1; i-- > 0;) {
        if (text.data[i] == unit) return static_cast<int>(i);
    }
    return kNotFound;
}

}  // namespace

int KW_String::IndexOf(KW_String const& what, unsigned int start) const {
    return findForward(*this, what, start, equalUnits);
}

int KW_String::IndexOfIgnoreCase(KW_String const& what, unsigned int start) const {
    return findForward(*this, what, start, equalIgnoringCase);
}

int KW_String::LastIndexOf(KW_String const& what, unsigned int start) const {
    if (what.length == 0 || start >= length || static_cast<int>(start) < 0) return kNotFound;
    for (unsigned int i = start + 1; i-- > 0;) {
        if (length - i >= what.length && matchesAt(data + i, what, equalUnits)) return static_cast<int>(i);
    }
    return kNotFound;
}

int KW_String::LastIndexOf(KW_String const& what) const {
    return length == 0 ? kNotFound : LastIndexOf(what, length - 1);
}

int KW_String::IndexOf(char what, unsigned int start) const {
    if (what == 0 || start >= length) return kNotFound;
    const unsigned short unit = CharToKW_Char(what, Encoding_System);
    for (unsigned int i = start; data[i] != 0; ++i) {
        if (data[i] == unit) return static_cast<int>(i);
    }
    return kNotFound;
}

int KW_String::LastIndexOf(char what, unsigned int start) const {
    if (what == 0 || start >= length) return kNotFound;
    return findUnitBackward(*this, CharToKW_Char(what, Encoding_System), start);
}

int KW_String::LastIndexOf(char what) const {
    return length == 0 ? kNotFound : LastIndexOf(what, length - 1);
}

bool KW_String::StartsWith(KW_String const& prefix, unsigned int start) const {
    if (prefix.length == 0 || start >= length || length - start < prefix.length) return false;
    return matchesAt(data + start, prefix, equalUnits);
}

bool KW_String::EndsWith(KW_String const& suffix) const {
    if (suffix.length == 0 || suffix.length > length) return false;
    return matchesAt(data + (length - suffix.length), suffix, equalUnits);
}

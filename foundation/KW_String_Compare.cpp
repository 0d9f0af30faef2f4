#include "foundation/KW_String.h"

#include <algorithm>
#include <cctype>

namespace {

unsigned short sameUnit(unsigned short unit) {
    return unit;
}

char sameByte(char byte) {
    return byte;
}

char lowerByte(char byte) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
}

template <typename Fold>
int compareUnits(const KW_String& a, unsigned int startA, const KW_String& b, unsigned int startB,
                 unsigned int count, Fold fold) {
    if (a.data == nullptr) return b.data == nullptr ? 0 : -1;
    if (b.data == nullptr) return 1;
    const unsigned short* p = a.data + std::min(startA, a.length);
    const unsigned short* q = b.data + std::min(startB, b.length);
    for (unsigned int i = 0; count == 0 || i < count; ++i) {
        const unsigned short left = fold(p[i]);
        const unsigned short right = fold(q[i]);
        if (left != right) return left < right ? -1 : 1;
        if (left == 0) break;
    }
    return 0;
}

template <typename Fold>
int compareBytes(const char* a, const char* b, Fold fold) {
    if (a == nullptr || b == nullptr) return -10;
    for (;; ++a, ++b) {
        const auto left = static_cast<signed char>(fold(*a));
        const auto right = static_cast<signed char>(fold(*b));
        if (left != right) return left < right ? -1 : 1;
        if (left == 0) return 0;
    }
}

// A count of 0 means the whole texts.
template <typename Fold>
bool equalBytes(const char* a, const char* b, unsigned int count, Fold fold) {
    if (a == nullptr || b == nullptr) return false;
    for (unsigned int i = 0; count == 0 || i < count; ++i) {
        if (fold(a[i]) != fold(b[i])) return false;
        if (a[i] == 0) return true;
    }
    return true;
}

}  // namespace

int KW_String::Compare(const KW_String& a, unsigned int startA, const KW_String& b, unsigned int startB,
                       unsigned int count) {
    return compareUnits(a, startA, b, startB, count, sameUnit);
}

int KW_String::CompareIgnoreCase(const KW_String& a, unsigned int startA, const KW_String& b,
                                 unsigned int startB, unsigned int count) {
    return compareUnits(a, startA, b, startB, count, KW_CharToLowerCase);
}

bool KW_String::operator<(const KW_String& other) const {
    return Compare(*this, 0, other, 0, 0) < 0;
}
bool KW_String::operator>(const KW_String& other) const {
    return Compare(*this, 0, other, 0, 0) > 0;
}
bool KW_String::operator<=(const KW_String& other) const {
    return Compare(*this, 0, other, 0, 0) <= 0;
}
bool KW_String::operator>=(const KW_String& other) const {
    return Compare(*this, 0, other, 0, 0) >= 0;
}
bool KW_String::operator==(const KW_String& other) const {
    return Compare(*this, 0, other, 0, 0) == 0;
}
bool KW_String::operator!=(const KW_String& other) const {
    return Compare(*this, 0, other, 0, 0) != 0;
}

int KW_String::Compare(const char* a, const char* b) {
    return compareBytes(a, b, sameByte);
}

int KW_String::CompareIgnoreCase(const char* a, const char* b) {
    return compareBytes(a, b, lowerByte);
}

bool KW_String::Equals(const char* a, const char* b) {
    return equalBytes(a, b, 0, sameByte);
}

bool KW_String::Equals(const char* a, const char* b, unsigned int count) {
    return equalBytes(a, b, count, sameByte);
}

bool KW_String::EqualsIgnoreCase(const char* a, const char* b) {
    return equalBytes(a, b, 0, lowerByte);
}

bool KW_String::EqualsIgnoreCase(const char* a, const char* b, unsigned int count) {
    return count != 0 && equalBytes(a, b, count, lowerByte);
}

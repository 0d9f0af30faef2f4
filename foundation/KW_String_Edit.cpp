#include "foundation/KW_String_Internal.h"
#include "foundation/UnitSearch.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

KW_String mapped(const KW_String& text, unsigned short (*map)(unsigned short)) {
    KW_String result(text);
    std::transform(result.data, result.data + result.length, result.data, map);
    return result;
}

}  // namespace

KW_String KW_String::operator+(const KW_String& other) const {
    KW_String sum;
    sum.THIS_SetToConcatenatedString(*this, other);
    return sum;
}

KW_String KW_String::operator+(const char* systemText) const {
    KW_String sum(*this);
    sum += systemText;
    return sum;
}

KW_String operator+(const char* systemText, const KW_String& text) {
    KW_String sum(systemText, KW_String::Encoding_System);
    KW_String result;
    result.THIS_SetToConcatenatedString(sum, text);
    return result;
}

KW_String& KW_String::operator+=(const KW_String& other) {
    THIS_Append(other.data, other.length);
    return *this;
}

KW_String& KW_String::operator+=(const char* systemText) {
    CStringToKW_String(*this, systemText, 0, Encoding_System, true);
    return *this;
}

void KW_String::SetCat(const char* a, unsigned int aMax, const char* b, unsigned int bMax, const char* c,
                       unsigned int cMax) {
    SetToNullString();
    const auto append = [this](const char* text, unsigned int most) {
        if (text == nullptr) return;
        const auto count = static_cast<unsigned int>(most == 0 ? std::strlen(text) : strnlen(text, most));
        if (count > 0) THIS_Append(text, count, Encoding_System);
    };
    append(a, aMax);
    append(b, bMax);
    append(c, cMax);
}

KW_String KW_String::Substring(unsigned int start) const {
    return Substring(start, length);
}

KW_String KW_String::Substring(unsigned int start, unsigned int count) const {
    KW_String part;
    part.THIS_CopyString(*this, start, count);
    return part;
}

KW_String KW_String::EndSubstring(unsigned int count, unsigned int fromEnd) const {
    KW_String part;
    if (fromEnd <= length && count <= length - fromEnd) {
        part.THIS_CopyString(*this, length - fromEnd - count, count);
    }
    return part;
}

KW_String KW_String::Replace(char what, char with) const {
    KW_String result(*this);
    std::replace(result.data, result.data + result.length, CharToKW_Char(what, Encoding_System),
                 CharToKW_Char(with, Encoding_System));
    return result;
}

KW_String KW_String::Replace(const KW_String& what, const KW_String& with) const {
    if (data == nullptr || what.data == nullptr || with.data == nullptr) return KW_String();
    if (length == 0 || what.length == 0) return *this;
    const std::vector<unsigned int> positions = positionsOfUnits(data, length, what.data, what.length);
    if (with.length == what.length) {
        KW_String result(*this);
        for (const unsigned int position : positions)
            std::copy_n(with.data, with.length, result.data + position);
        return result;
    }
    const unsigned long total = length - positions.size() * what.length + positions.size() * with.length;
    KW_String result;
    result.THIS_Alloc(KW_StringUnits(total + 1), false);
    result.length = static_cast<unsigned int>(total);
    unsigned short* to = result.data;
    const unsigned short* from = data;
    for (const unsigned int position : positions) {
        to = std::copy(from, static_cast<const unsigned short*>(data) + position, to);
        to = std::copy_n(with.data, with.length, to);
        from = data + position + what.length;
    }
    to = std::copy(from, static_cast<const unsigned short*>(data) + length, to);
    *to = 0;
    return result;
}

KW_String KW_String::Replace(const char* what, const char* with) const {
    return Replace(KW_String(what, Encoding_System), KW_String(with, Encoding_System));
}

bool KW_String::Replace(unsigned int from, unsigned int to, const KW_String& with) {
    if (from < 1 || from > to || from - 1 >= length) return false;
    if (&with == this) return Replace(from, to, KW_String(with));
    const unsigned int start = from - 1;
    const unsigned int end = std::min(to, length);
    const unsigned int newLength =
        KW_StringUnits(static_cast<unsigned long>(length) - (end - start) + with.length);
    THIS_Alloc(KW_StringUnits(newLength + 1UL), true);
    std::memmove(data + start + with.length, data + end, (length - end) * sizeof(unsigned short));
    if (with.length > 0) std::memcpy(data + start, with.data, with.length * sizeof(unsigned short));
    length = newLength;
    data[length] = 0;
    return true;
}

KW_String KW_String::ToLowerCase() const {
    return mapped(*this, KW_CharToLowerCase);
}

KW_String KW_String::ToUpperCase() const {
    return mapped(*this, KW_CharToUpperCase);
}

KW_String KW_String::THIS_Trim(bool left, bool right, bool tabs) const {
    const auto isSpace = [tabs](unsigned short unit) { return unit == ' ' || (tabs && unit == '\t'); };
    unsigned int start = 0;
    unsigned int end = length;
    while (left && start < end && isSpace(data[start]))
        ++start;
    while (right && start < end && isSpace(data[end - 1]))
        --end;
    return Substring(start, end - start);
}

KW_String KW_String::RepeatedSequence(const KW_String& sequence, long count) {
    KW_String result;
    if (count < 0 || sequence.data == nullptr) return result;
    unsigned long units = 0;
    if (__builtin_mul_overflow(static_cast<unsigned long>(count), sequence.length, &units)) {
        units = std::numeric_limits<unsigned int>::max();
    }
    result.THIS_Alloc(KW_StringUnits(units + 1), false);
    if (sequence.length == 0) return result;
    for (long i = 0; i < count; ++i)
        result.THIS_Append(sequence.data, sequence.length);
    return result;
}

char KW_String::CharAt(unsigned int index) const {
    return index < length ? KW_CharToChar(data[index], Encoding_System) : '\0';
}

unsigned short KW_String::UCharAt(unsigned int index) const {
    return index < length ? data[index] : static_cast<unsigned short>(0);
}

void KW_String::SetCharAt(unsigned int index, char byte) {
    SetUCharAt(index, CharToKW_Char(byte, Encoding_System));
}

void KW_String::SetUCharAt(unsigned int index, unsigned short unit) {
    if (index < length) data[index] = unit;
}

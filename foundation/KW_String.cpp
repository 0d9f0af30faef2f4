#include "foundation/KW_String.h"

#include "foundation/KW_String_Internal.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace {

void copyUnits(unsigned short* to, const unsigned short* from, unsigned long count) {
    if (count > 0) std::memmove(to, from, count * sizeof(unsigned short));
}

}  // namespace

unsigned int KW_StringUnits(unsigned long units) {
    if (units > std::numeric_limits<unsigned int>::max()) throw std::bad_alloc();
    return static_cast<unsigned int>(units);
}

KW_String::KW_String() : data(nullptr), length(0), capacity(0) {}

KW_String::KW_String(const char* bytes, Encoding encoding) : KW_String(bytes, 0, encoding) {}

KW_String::KW_String(const char* bytes, unsigned int byteCount, Encoding encoding) : KW_String() {
    CStringToKW_String(*this, bytes, byteCount, encoding, false);
}

KW_String::KW_String(const KW_String& other) : KW_String() {
    THIS_CopyString(other);
}

KW_String::KW_String(KW_String&& other) noexcept : KW_String(&other) {}

KW_String::KW_String(const unsigned short* units, unsigned int count) : KW_String() {
    KW_StringFill(*this, units, count);
}

KW_String::KW_String(const unsigned short* units) : KW_String() {
    if (units == nullptr) return;
    unsigned long count = 0;
    while (units[count] != 0)
        ++count;
    THIS_Alloc(KW_StringUnits(count + 1), false);
    THIS_Append(units, static_cast<unsigned int>(count));
}

KW_String::KW_String(KW_String* other) : KW_String() {
    if (other == nullptr) return;
    std::swap(data, other->data);
    std::swap(length, other->length);
    std::swap(capacity, other->capacity);
}

KW_String::~KW_String() {
    delete[] data;
}

KW_String& KW_String::operator=(const char* systemText) {
    Set(systemText, 0, Encoding_System);
    return *this;
}

KW_String& KW_String::operator=(const KW_String& other) {
    THIS_CopyString(other);
    return *this;
}

bool KW_String::Set(const char* bytes, unsigned int byteCount, Encoding encoding) {
    return CStringToKW_String(*this, bytes, byteCount, encoding, false);
}

void KW_String::SetToNullString() {
    delete[] data;
    THIS_SetToNullString();
}

void KW_String::THIS_SetToNullString() {
    data = nullptr;
    length = 0;
    capacity = 0;
}

void KW_String::THIS_DeallocSetNullString() {
    SetToNullString();
}

bool KW_String::THIS_Alloc(unsigned int units, bool keep) {
    if (capacity >= units) return true;
    auto* grown = new unsigned short[units];
    if (keep && data != nullptr) {
        copyUnits(grown, data, capacity);
    } else {
        length = 0;
        grown[0] = 0;
    }
    delete[] data;
    data = grown;
    capacity = units;
    return true;
}

void KW_String::SetSize(unsigned int units, bool keep) {
    if (units == 0) return SetToNullString();
    auto* resized = new unsigned short[units];
    length = keep && data != nullptr ? std::min(length, units - 1) : 0;
    copyUnits(resized, data, length);
    resized[length] = 0;
    delete[] data;
    data = resized;
    capacity = units;
}

void KW_String::THIS_CopyString(const KW_String& source) {
    if (&source == this) return;
    THIS_CopyString(source, 0, source.length);
}

void KW_String::THIS_CopyString(const KW_String& source, unsigned int start, unsigned int count) {
    if (source.data == nullptr || start > source.length) return SetToNullString();
    const unsigned int n = std::min(count, source.length - start);
    THIS_Alloc(KW_StringUnits(n + 1UL), false);
    copyUnits(data, source.data + start, n);
    data[n] = 0;
    length = n;
}

void KW_String::THIS_SetToConcatenatedString(const KW_String& first, const KW_String& second) {
    if (first.data == nullptr && second.data == nullptr) return SetToNullString();
    const unsigned int firstLength = first.length;
    const unsigned int total = KW_StringUnits(static_cast<unsigned long>(firstLength) + second.length);
    const unsigned int units = KW_StringUnits(total + 1UL);
    unsigned short* const old = data;
    unsigned short* const result = capacity < units ? new unsigned short[units] : data;
    // The second part first: when an operand is this string, its place is overwritten only by the first part.
    copyUnits(result + firstLength, second.data, second.length);
    if (first.data != result) copyUnits(result, first.data, firstLength);
    result[total] = 0;
    if (result != old) {
        delete[] old;
        data = result;
        capacity = units;
    }
    length = total;
}

void KW_String::THIS_Append(const unsigned short* units, unsigned int count) {
    if (units == nullptr || count == 0) return;
    const unsigned int total = KW_StringUnits(static_cast<unsigned long>(length) + count);
    const unsigned int needed = KW_StringUnits(total + 1UL);
    unsigned short* const old = data;
    unsigned short* const result = capacity < needed ? new unsigned short[needed] : data;
    if (result != old) copyUnits(result, old, length);
    copyUnits(result + length, units, count);
    result[total] = 0;
    // Only now: the units may be in the old buffer.
    if (result != old) {
        delete[] old;
        data = result;
        capacity = needed;
    }
    length = total;
}

void KW_String::THIS_Append(const char* bytes, unsigned int byteCount, Encoding encoding) {
    CStringToKW_String(*this, bytes, byteCount, encoding, true);
}

KW_CString::KW_CString() : data(nullptr), size(0), encoding(KW_String::Encoding_None) {}

KW_CString::KW_CString(const KW_CString& other)
    : data(other.data == nullptr ? nullptr : new char[other.size]),
      size(other.size),
      encoding(other.encoding) {
    if (size > 0) std::memcpy(data, other.data, size);
}

KW_CString::KW_CString(KW_CString&& other) noexcept
    : data(std::exchange(other.data, nullptr)),
      size(std::exchange(other.size, 0)),
      encoding(other.encoding) {}

KW_CString& KW_CString::operator=(KW_CString other) noexcept {
    std::swap(data, other.data);
    std::swap(size, other.size);
    std::swap(encoding, other.encoding);
    return *this;
}

KW_CString::~KW_CString() {
    delete[] data;
}

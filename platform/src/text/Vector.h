#pragma once

#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Sixteen code units at once, for the conversions' inner loops. What is ASCII is converted right; a mask
/// tells the caller what is not (bit 0 for the first), to be seen to one by one.
namespace text {

constexpr long kLanes = 16;

/// Bytes that encodeThreeByteBlock may write, of which the first 24 count.
constexpr long kThreeByteRoom = 26;

#if defined(__SSE2__)

/// Writes sixteen bytes as sixteen units. Returns the mask of the bytes above 7F.
inline unsigned int widen(const char* bytes, char* units) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const __m128i zero = _mm_setzero_si128();
    auto* const to = reinterpret_cast<__m128i*>(units);
    _mm_storeu_si128(to, _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(block, zero));
    return static_cast<unsigned int>(_mm_movemask_epi8(block));
}

/// Writes the lower bytes of sixteen units. Returns the mask of the units above `Last`, which is 7F or FF.
template <std::uint16_t Last>
inline unsigned int narrow(const char* units, char* bytes) {
    const auto* const from = reinterpret_cast<const __m128i*>(units);
    const __m128i first = _mm_loadu_si128(from);
    const __m128i second = _mm_loadu_si128(from + 1);
    const __m128i lower = _mm_set1_epi16(0xFF);
    const __m128i upper = _mm_set1_epi16(static_cast<short>(~Last));
    const __m128i zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes),
                     _mm_packus_epi16(_mm_and_si128(first, lower), _mm_and_si128(second, lower)));
    const __m128i within = _mm_packs_epi16(_mm_cmpeq_epi16(_mm_and_si128(first, upper), zero),
                                           _mm_cmpeq_epi16(_mm_and_si128(second, upper), zero));
    return ~static_cast<unsigned int>(_mm_movemask_epi8(within)) & 0xFFFF;
}

/// Writes eight units that take three bytes each in UTF-8; false, with nothing written, when one of them
/// takes another number or is a surrogate.
inline bool encodeThreeByteBlock(const char* units, char* bytes) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
    const __m128i upper = _mm_and_si128(block, _mm_set1_epi16(static_cast<short>(0xF800)));
    const __m128i other = _mm_or_si128(_mm_cmpeq_epi16(upper, _mm_setzero_si128()),
                                       _mm_cmpeq_epi16(upper, _mm_set1_epi16(static_cast<short>(0xD800))));
    if (_mm_movemask_epi8(other) != 0) return false;
    const __m128i six = _mm_set1_epi16(0x3F);
    const __m128i first = _mm_srli_epi16(block, 12);
    const __m128i second = _mm_slli_epi16(_mm_and_si128(_mm_srli_epi16(block, 6), six), 8);
    const __m128i firstTwo =
        _mm_or_si128(_mm_or_si128(first, second), _mm_set1_epi16(static_cast<short>(0x80E0)));
    const __m128i third = _mm_or_si128(_mm_and_si128(block, six), _mm_set1_epi16(0x80));
    // Four bytes for each unit, of which the last is empty and overwritten by the next unit's first.
    const __m128i lower = _mm_unpacklo_epi16(firstTwo, third);
    const __m128i higher = _mm_unpackhi_epi16(firstTwo, third);
    const auto store = [](char* to, __m128i twoUnits) {
        const auto pair = static_cast<std::uint64_t>(_mm_cvtsi128_si64(twoUnits));
        const std::uint64_t packed = (pair & 0xFFFFFF) | (pair >> 8 & 0xFFFFFF000000);
        std::memcpy(to, &packed, sizeof packed);
    };
    store(bytes, lower);
    store(bytes + 6, _mm_unpackhi_epi64(lower, lower));
    store(bytes + 12, higher);
    store(bytes + 18, _mm_unpackhi_epi64(higher, higher));
    return true;
}

#else

inline bool encodeThreeByteBlock(const char*, char*) {
    return false;
}

inline unsigned int widen(const char* bytes, char* units) {
    unsigned int above = 0;
    for (int i = 0; i < kLanes; ++i) {
        const std::uint16_t unit = static_cast<unsigned char>(bytes[i]);
        std::memcpy(units + i * 2, &unit, sizeof unit);
        above |= static_cast<unsigned int>(unit >> 7) << i;
    }
    return above;
}

template <std::uint16_t Last>
inline unsigned int narrow(const char* units, char* bytes) {
    unsigned int above = 0;
    for (int i = 0; i < kLanes; ++i) {
        std::uint16_t unit;
        std::memcpy(&unit, units + i * 2, sizeof unit);
        bytes[i] = static_cast<char>(unit);
        above |= static_cast<unsigned int>(unit > Last) << i;
    }
    return above;
}

#endif

}  // namespace text

#pragma once

#include <cstdint>
#include <cstring>

#if defined(__SSE2__) && !defined(TESSARO_WITHOUT_VECTORS)
#define TESSARO_HAS_SSE2
#include <emmintrin.h>
#endif

/// Sixteen code units at once, for the conversions' inner loops. What is ASCII is converted right; a mask
/// tells the caller what is not (bit 0 for the first), to be seen to one by one.
namespace text {

constexpr long kLanes = 16;

/// Bytes that utf8Units counts at once.
constexpr long kMostMeasured = 512;

/// Less than eight bytes, the first in the lowest place, and zeros.
inline std::uint64_t fewBytesAt(const char* bytes, long count) {
    if (count >= 4) {
        std::uint32_t first;
        std::uint32_t last;
        std::memcpy(&first, bytes, sizeof first);
        std::memcpy(&last, bytes + count - sizeof last, sizeof last);
        return first | static_cast<std::uint64_t>(last) << (count - 4) * 8;
    }
    if (count == 0) return 0;
    const auto at = [bytes](long i) {
        return static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[i])) << i * 8;
    };
    return at(0) | at(count / 2) | at(count - 1);
}

#if defined(TESSARO_HAS_SSE2)

/// Calls `add` with the bytes in blocks of sixteen, the last filled up with zeros.
template <typename Add>
inline void forEachBlock(const char* bytes, long count, Add add) {
    for (; count >= kLanes; bytes += kLanes, count -= kLanes)
        add(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
    if (count >= 8) {
        std::uint64_t first;
        std::memcpy(&first, bytes, sizeof first);
        add(_mm_set_epi64x(static_cast<long long>(fewBytesAt(bytes + 8, count - 8)),
                           static_cast<long long>(first)));
    } else if (count > 0) {
        add(_mm_cvtsi64_si128(static_cast<long long>(fewBytesAt(bytes, count))));
    }
}

/// The sum of the lanes.
inline long sumOfBytes(__m128i lanes) {
    const __m128i sums = _mm_sad_epu8(lanes, _mm_setzero_si128());
    return _mm_cvtsi128_si64(sums) + _mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums));
}

/// Units of at most kMostMeasured bytes of UTF-8 that are well-formed; otherwise no fewer than can be decoded
/// before the fault.
inline long utf8Units(const char* bytes, long count) {
    // Lane by lane, beginning in the middle, since there may be more pairs than continuing bytes in a lane.
    constexpr int kMiddle = 0x40;
    __m128i saved = _mm_set1_epi8(kMiddle);
    forEachBlock(bytes, count, [&](__m128i block) {
        // A lane that is found is -1.
        const __m128i four = _mm_set1_epi8(static_cast<char>(0xF0));
        const __m128i continuing = _mm_cmplt_epi8(block, _mm_set1_epi8(-64));
        const __m128i pairs = _mm_cmpeq_epi8(_mm_max_epu8(block, four), block);
        saved = _mm_add_epi8(_mm_sub_epi8(saved, continuing), pairs);
    });
    return count - (sumOfBytes(saved) - kMiddle * kLanes);
}

/// Writes sixteen bytes as sixteen units. Returns the mask of the bytes above 7F.
inline unsigned int widen(const char* bytes, char* units) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const __m128i zero = _mm_setzero_si128();
    auto* const to = reinterpret_cast<__m128i*>(units);
    _mm_storeu_si128(to, _mm_unpacklo_epi8(block, zero));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(block, zero));
    return static_cast<unsigned int>(_mm_movemask_epi8(block));
}

/// The same for eight bytes.
inline unsigned int widenHalf(const char* bytes, char* units) {
    const __m128i block = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(block, _mm_setzero_si128()));
    return static_cast<unsigned int>(_mm_movemask_epi8(block)) & 0xFF;
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

/// Writes sixteen units that are ASCII and not zero as bytes; false, with nothing of use written, for others.
inline bool narrowAsciiText(const char* units, char* bytes) {
    const auto* const from = reinterpret_cast<const __m128i*>(units);
    // Units from 8000 on are negative and become 0, others above FF become FF.
    const __m128i packed = _mm_packus_epi16(_mm_loadu_si128(from), _mm_loadu_si128(from + 1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), packed);
    return _mm_movemask_epi8(_mm_cmpgt_epi8(packed, _mm_setzero_si128())) == 0xFFFF;
}

/// As narrow, for eight units.
template <std::uint16_t Last>
inline unsigned int narrowHalf(const char* units, char* bytes) {
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
    const __m128i zero = _mm_setzero_si128();
    const __m128i lower = _mm_and_si128(block, _mm_set1_epi16(0xFF));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(lower, lower));
    const __m128i upper = _mm_and_si128(block, _mm_set1_epi16(static_cast<short>(~Last)));
    const __m128i within = _mm_packs_epi16(_mm_cmpeq_epi16(upper, zero), zero);
    return ~static_cast<unsigned int>(_mm_movemask_epi8(within)) & 0xFF;
}

/// Writes eight or four units that take three bytes each in UTF-8, and two bytes behind them; false, with
/// nothing written, when one of them takes another number or is a surrogate.
template <int Units>
inline bool encodeThreeByteBlock(const char* units, char* bytes) {
    static_assert(Units == 8 || Units == 4);
    const auto* const from = reinterpret_cast<const __m128i*>(units);
    const __m128i block = Units == 8 ? _mm_loadu_si128(from) : _mm_loadl_epi64(from);
    const __m128i upper = _mm_and_si128(block, _mm_set1_epi16(static_cast<short>(0xF800)));
    const __m128i other = _mm_or_si128(_mm_cmpeq_epi16(upper, _mm_setzero_si128()),
                                       _mm_cmpeq_epi16(upper, _mm_set1_epi16(static_cast<short>(0xD800))));
    if ((_mm_movemask_epi8(other) & ((1 << Units * 2) - 1)) != 0) return false;
    const __m128i six = _mm_set1_epi16(0x3F);
    const __m128i first = _mm_srli_epi16(block, 12);
    const __m128i second = _mm_slli_epi16(_mm_and_si128(_mm_srli_epi16(block, 6), six), 8);
    const __m128i firstTwo =
        _mm_or_si128(_mm_or_si128(first, second), _mm_set1_epi16(static_cast<short>(0x80E0)));
    const __m128i third = _mm_or_si128(_mm_and_si128(block, six), _mm_set1_epi16(0x80));
    // Four bytes for each unit, of which the last is empty and overwritten by the next unit's first.
    const __m128i lower = _mm_unpacklo_epi16(firstTwo, third);
    const auto store = [](char* to, __m128i twoUnits) {
        const auto pair = static_cast<std::uint64_t>(_mm_cvtsi128_si64(twoUnits));
        const std::uint64_t packed = (pair & 0xFFFFFF) | (pair >> 8 & 0xFFFFFF000000);
        std::memcpy(to, &packed, sizeof packed);
    };
    store(bytes, lower);
    store(bytes + 6, _mm_unpackhi_epi64(lower, lower));
    if (Units == 4) return true;
    const __m128i higher = _mm_unpackhi_epi16(firstTwo, third);
    store(bytes + 12, higher);
    store(bytes + 18, _mm_unpackhi_epi64(higher, higher));
    return true;
}

#else

inline long utf8Units(const char* bytes, long count) {
    long units = 0;
    for (long i = 0; i < count; ++i)
        units += ((bytes[i] & 0xC0) != 0x80) + (static_cast<unsigned char>(bytes[i]) >= 0xF0);
    return units;
}

template <int Units>
inline bool encodeThreeByteBlock(const char*, char*) {
    return false;
}

template <int Lanes>
inline unsigned int widenLanes(const char* bytes, char* units) {
    unsigned int above = 0;
    for (int i = 0; i < Lanes; ++i) {
        const std::uint16_t unit = static_cast<unsigned char>(bytes[i]);
        std::memcpy(units + i * 2, &unit, sizeof unit);
        above |= static_cast<unsigned int>(unit >> 7) << i;
    }
    return above;
}

inline unsigned int widen(const char* bytes, char* units) {
    return widenLanes<kLanes>(bytes, units);
}

inline unsigned int widenHalf(const char* bytes, char* units) {
    return widenLanes<kLanes / 2>(bytes, units);
}

template <std::uint16_t Last, int Lanes>
inline unsigned int narrowLanes(const char* units, char* bytes) {
    unsigned int above = 0;
    for (int i = 0; i < Lanes; ++i) {
        std::uint16_t unit;
        std::memcpy(&unit, units + i * 2, sizeof unit);
        bytes[i] = static_cast<char>(unit);
        above |= static_cast<unsigned int>(unit > Last) << i;
    }
    return above;
}

template <std::uint16_t Last>
inline unsigned int narrow(const char* units, char* bytes) {
    return narrowLanes<Last, kLanes>(units, bytes);
}

inline bool narrowAsciiText(const char* units, char* bytes) {
    return narrow<0x7F>(units, bytes) == 0 && std::memchr(bytes, 0, kLanes) == nullptr;
}

template <std::uint16_t Last>
inline unsigned int narrowHalf(const char* units, char* bytes) {
    return narrowLanes<Last, kLanes / 2>(units, bytes);
}

#endif

}  // namespace text

#include "foundation/KW_String_Internal.h"

#include <cstdint>
#include <cstring>

namespace {

// Units looked at together: first whether all of them stay one unit, in a loop without a way out that the
// compiler makes a few wide operations, then the copy.
constexpr long kBlock = 16;

std::uint32_t valueAt(const char* bytes, long index, bool bigEndian) {
    std::uint32_t value;
    std::memcpy(&value, bytes + index * 4, sizeof value);
    return bigEndian ? __builtin_bswap32(value) : value;
}

bool isSurrogate(std::uint32_t value) {
    return (value & ~0x7FFu) == 0xD800;
}

bool isPair(std::uint32_t value) {
    return value >= 0x10000 && value < 0x110000;
}

template <bool BigEndian>
bool copyPlainBlock(const char* bytes, long index, unsigned short* target) {
    std::uint32_t values[kBlock];
    std::memcpy(values, bytes + index * 4, sizeof values);
    std::uint32_t notPlain = 0;
    for (std::uint32_t& value : values) {
        if (BigEndian) value = value >> 24 | (value >> 8 & 0xFF00) | (value << 8 & 0xFF0000) | value << 24;
        notPlain |= (value >> 16) | (isSurrogate(value) ? 1u : 0u);
    }
    if (notPlain != 0) return false;
    for (long i = 0; i < kBlock; ++i)
        target[i] = static_cast<unsigned short>(values[i]);
    return true;
}

template <bool BigEndian>
long convert(const char* bytes, unsigned short* target, long count) {
    long produced = 0;
    for (long i = 0; i < count;) {
        if (count - i >= kBlock && copyPlainBlock<BigEndian>(bytes, i, target + produced)) {
            i += kBlock;
            produced += kBlock;
            continue;
        }
        const long end = count - i < kBlock ? count : i + kBlock;
        for (; i < end; ++i) {
            const std::uint32_t value = valueAt(bytes, i, BigEndian);
            if (isPair(value)) {
                target[produced++] = static_cast<unsigned short>(((value - 0x10000) >> 10) + 0xD800);
                target[produced++] = static_cast<unsigned short>((value & 0x3FF) | 0xDC00);
            } else {
                const bool isBad = isSurrogate(value) || value >= 0x110000;
                target[produced++] = static_cast<unsigned short>(isBad ? 0xFFFD : value);
            }
        }
    }
    return produced;
}

template <bool BigEndian>
long countUnits(const char* bytes, long count) {
    std::uint64_t pairs = 0;
    for (long i = 0; i < count; ++i)
        pairs += isPair(valueAt(bytes, i, BigEndian)) ? 1u : 0u;
    return count + static_cast<long>(pairs);
}

}  // namespace

long UTF32toUTF16(const void* source, unsigned short* target, long count, bool bigEndian) {
    const auto* bytes = static_cast<const char*>(source);
    if (count <= 0) {
        count = 0;
        while (valueAt(bytes, count, false) != 0)
            ++count;
    }
    if (target == nullptr)
        return bigEndian ? countUnits<true>(bytes, count) : countUnits<false>(bytes, count);
    return bigEndian ? convert<true>(bytes, target, count) : convert<false>(bytes, target, count);
}

#pragma once

#include <cstdint>
#include <cstring>

/// Reading and writing code units at addresses that need no alignment.
namespace text {

inline std::uint16_t unitAt(const char* units, long index) {
    std::uint16_t unit;
    std::memcpy(&unit, units + index * 2, sizeof unit);
    return unit;
}

inline void setUnit(char* units, long index, std::uint32_t unit) {
    const auto value = static_cast<std::uint16_t>(unit);
    std::memcpy(units + index * 2, &value, sizeof value);
}

inline bool isSurrogate(std::uint32_t unit) {
    return (unit & 0xF800) == 0xD800;
}

/// One character taken from UTF-16.
struct Character {
    std::uint32_t codePoint;  ///< a surrogate's value if it has no partner
    int units;                ///< 1, or 2 for a pair
};

inline Character characterAt(const char* units, long count, long index) {
    const std::uint32_t unit = unitAt(units, index);
    if ((unit & 0xFC00) != 0xD800 || index + 1 >= count) return {unit, 1};
    const std::uint32_t low = unitAt(units, index + 1);
    if ((low & 0xFC00) != 0xDC00) return {unit, 1};
    return {0x10000 + ((unit & 0x3FF) << 10) + (low & 0x3FF), 2};
}

}  // namespace text

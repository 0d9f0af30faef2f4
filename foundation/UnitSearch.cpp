#include "foundation/UnitSearch.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace {

// Eight units at once, in the compiler's vector types, which it maps to what the processor has. A comparison
// gives all ones or all zeros for each of them.
constexpr unsigned int kLanes = 8;
using Units = std::uint16_t __attribute__((vector_size(16)));
using Bytes = std::uint8_t __attribute__((vector_size(8)));

Units unitsAt(const unsigned short* text) {
    Units units;
    std::memcpy(&units, text, sizeof units);
    return units;
}

Units repeated(unsigned short unit) {
    return Units{} + unit;
}

template <typename Mask>
bool any(Mask mask) {
    std::uint64_t halves[2];
    std::memcpy(halves, &mask, sizeof halves);
    return (halves[0] | halves[1]) != 0;
}

// One byte for each lane, FF where it is set.
template <typename Mask>
std::uint64_t lanes(Mask mask) {
    return std::bit_cast<std::uint64_t>(__builtin_convertvector(reinterpret_cast<Units>(mask), Bytes));
}

unsigned long firstLane(std::uint64_t set) {
    return static_cast<unsigned long>(std::countr_zero(set)) / 8;
}

// Also of none.
std::uint64_t withoutFirst(std::uint64_t set) {
    const std::uint64_t lowest = set & -set;
    return set & ~(lowest * 0xFF);
}

unsigned long countLanes(std::uint64_t set) {
    return (set & 0x0101010101010101) * 0x0101010101010101 >> 56;
}

unsigned long lastLane(std::uint64_t set) {
    return 7 - static_cast<unsigned long>(std::countl_zero(set)) / 8;
}

// The first position from `start` on for which `matches` gives a set lane; it is asked for eight units at a
// time.
template <typename Matches, typename MatchesOne>
unsigned long findFirst(const unsigned short* text, unsigned long length, unsigned long start,
                        Matches matches, MatchesOne matchesOne) {
    unsigned long i = start;
    while (length - i >= 4 * kLanes &&
           !any(matches(unitsAt(text + i)) | matches(unitsAt(text + i + kLanes)) |
                matches(unitsAt(text + i + 2 * kLanes)) | matches(unitsAt(text + i + 3 * kLanes)))) {
        i += 4 * kLanes;
    }
    if (length - start >= kLanes && length - i < 4 * kLanes) {
        // The rest with the last eight, some of which were looked at before: mostly there is nothing in it.
        auto found = matches(unitsAt(text + length - kLanes));
        for (unsigned long k = i; length - k > kLanes; k += kLanes)
            found |= matches(unitsAt(text + k));
        if (!any(found)) return length;
    }
    for (; length - i >= kLanes; i += kLanes) {
        const std::uint64_t found = lanes(matches(unitsAt(text + i)));
        if (found != 0) return i + firstLane(found);
    }
    while (i < length && !matchesOne(text[i]))
        ++i;
    return i;
}

// Whether the text at a position whose first and last unit are the sought ones is an occurrence.
bool isOccurrence(const unsigned short* text, const unsigned short* what, unsigned long whatLength) {
    return whatLength <= 2 || std::memcmp(text + 1, what + 1, (whatLength - 2) * sizeof(unsigned short)) == 0;
}

bool isOccurrenceAt(const unsigned short* text, const unsigned short* what, unsigned long whatLength) {
    return text[0] == what[0] && text[whatLength - 1] == what[whatLength - 1] &&
           isOccurrence(text, what, whatLength);
}

}  // namespace

unsigned long findUnit(const unsigned short* text, unsigned long length, unsigned long start,
                       unsigned short unit) {
    const Units sought = repeated(unit);
    return findFirst(
        text, length, start, [=](Units units) { return units == sought; },
        [=](unsigned short one) { return one == unit; });
}

unsigned long findEither(const unsigned short* text, unsigned long length, unsigned long start,
                         unsigned short one, unsigned short other) {
    const Units soughtOne = repeated(one);
    const Units soughtOther = repeated(other);
    return findFirst(
        text, length, start, [=](Units units) { return (units == soughtOne) | (units == soughtOther); },
        [=](unsigned short unit) { return unit == one || unit == other; });
}

std::vector<unsigned int> positionsOfEither(const unsigned short* text, unsigned int length,
                                            unsigned short one, unsigned short other) {
    const Units soughtOne = repeated(one);
    const Units soughtOther = repeated(other);
    const auto matchesAt = [=](unsigned int i) {
        const Units units = unitsAt(text + i);
        return (units == soughtOne) | (units == soughtOther);
    };
    constexpr unsigned int kGroup = 4 * kLanes;
    std::vector<unsigned int> positions(2 * kGroup);
    unsigned long count = 0;
    unsigned int i = 0;
    for (; length - i >= kGroup; i += kGroup) {
        const decltype(matchesAt(0)) matches[] = {matchesAt(i), matchesAt(i + kLanes),
                                                  matchesAt(i + 2 * kLanes), matchesAt(i + 3 * kLanes)};
        if (!any(matches[0] | matches[1] | matches[2] | matches[3])) continue;
        if (positions.size() - count < kGroup) positions.resize(2 * positions.size());
        for (unsigned int block = 0; block < 4; ++block) {
            std::uint64_t found = lanes(matches[block]);
            const unsigned long behind = count + countLanes(found);
            // Two in any case, whether there are so many or not: their number cannot be foreseen.
            do {
                for (int k = 0; k < 2; ++k, found = withoutFirst(found))
                    positions[count++] = i + block * kLanes + static_cast<unsigned int>(firstLane(found));
            } while (count < behind);
            count = behind;
        }
    }
    positions.resize(count);
    for (; i < length; ++i) {
        if (text[i] == one || text[i] == other) positions.push_back(i);
    }
    return positions;
}

std::vector<unsigned int> positionsOfUnits(const unsigned short* text, unsigned int length,
                                           const unsigned short* what, unsigned int whatLength) {
    if (whatLength == 1) return positionsOfEither(text, length, what[0], what[0]);
    std::vector<unsigned int> positions;
    for (unsigned long at = findUnits(text, length, 0, what, whatLength); at < length;
         at = findUnits(text, length, at + whatLength, what, whatLength)) {
        positions.push_back(static_cast<unsigned int>(at));
    }
    return positions;
}

unsigned long findUnits(const unsigned short* text, unsigned long length, unsigned long start,
                        const unsigned short* what, unsigned long whatLength) {
    if (length - start < whatLength) return length;
    const unsigned long end = length - whatLength + 1;  // behind the last position where it can begin
    const Units first = repeated(what[0]);
    const Units last = repeated(what[whatLength - 1]);
    unsigned long i = start;
    for (; end - i >= kLanes; i += kLanes) {
        std::uint64_t found =
            lanes((unitsAt(text + i) == first) & (unitsAt(text + i + whatLength - 1) == last));
        for (; found != 0; found = withoutFirst(found)) {
            const unsigned long at = i + firstLane(found);
            if (isOccurrence(text + at, what, whatLength)) return at;
        }
    }
    for (; i < end; ++i) {
        if (isOccurrenceAt(text + i, what, whatLength)) return i;
    }
    return length;
}

unsigned long findUnitsBackward(const unsigned short* text, unsigned long length, unsigned long start,
                                const unsigned short* what, unsigned long whatLength) {
    if (length < whatLength) return length;
    const Units first = repeated(what[0]);
    const Units last = repeated(what[whatLength - 1]);
    unsigned long end =
        (start < length - whatLength ? start : length - whatLength) + 1;  // behind the next position
    for (; end >= kLanes; end -= kLanes) {
        const unsigned short* const block = text + (end - kLanes);
        std::uint64_t found = lanes((unitsAt(block) == first) & (unitsAt(block + whatLength - 1) == last));
        for (; found != 0; found &= ~(std::uint64_t{0xFF} << lastLane(found) * 8)) {
            if (isOccurrence(block + lastLane(found), what, whatLength))
                return end - kLanes + lastLane(found);
        }
    }
    while (end-- > 0) {
        if (isOccurrenceAt(text + end, what, whatLength)) return end;
    }
    return length;
}

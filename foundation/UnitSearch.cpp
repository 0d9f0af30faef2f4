#include "foundation/UnitSearch.h"

#include <cstring>

namespace {

// Units that are looked at together. The test of a block has no way out in the middle, so that the compiler
// makes it a few wide comparisons.
constexpr unsigned long kBlock = 32;

bool blockHas(unsigned short const* block, unsigned short unit) {
    unsigned short found = 0;
    for (unsigned long i = 0; i < kBlock; ++i)
        found = static_cast<unsigned short>(found | (block[i] == unit ? 0xFFFF : 0));
    return found != 0;
}

}  // namespace

unsigned long findUnit(unsigned short const* text, unsigned long length, unsigned long start,
                       unsigned short unit) {
    unsigned long i = start;
    while (length - i >= kBlock && !blockHas(text + i, unit))
        i += kBlock;
    while (i < length && text[i] != unit)
        ++i;
    return i;
}

unsigned long findUnits(unsigned short const* text, unsigned long length, unsigned long start,
                        unsigned short const* what, unsigned long whatLength) {
    if (start > length || length - start < whatLength) return length;
    const unsigned long lastStart = length - whatLength;
    for (unsigned long i = start; i <= lastStart; ++i) {
        i = findUnit(text, lastStart + 1, i, what[0]);
        if (i > lastStart) break;
        if (std::memcmp(text + i, what, whatLength * sizeof(unsigned short)) == 0) return i;
    }
    return length;
}

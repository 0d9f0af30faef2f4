#include "platform/MemoryManager.h"

#include <algorithm>
#include <cstdlib>

namespace {

// No block of the suite comes near this; a size above it is a miscalculation.
constexpr long kLargestBlock = 1L << 36;

// A list that is emptied and filled again keeps this much without going back to the allocator.
constexpr long kSpareKept = 128 * 1024;

long successesLeft = -1;

bool refused(long size) {
    if (size < 0 || size > kLargestBlock) return true;
    if (successesLeft < 0) return false;
    if (successesLeft == 0) return true;
    --successesLeft;
    return false;
}

// malloc may answer a request for nothing with null; a block always has an address.
std::size_t atLeastOne(long size) {
    return static_cast<std::size_t>(std::max(size, 1L));
}

}  // namespace

BMHandle BMAllocateHandle(long size, unsigned int /*flags*/, int /*actionCode*/) {
    if (refused(size)) return nullptr;
    auto* block = static_cast<BMBlock*>(std::malloc(sizeof(BMBlock)));
    if (block == nullptr) return nullptr;
    block->bytes = static_cast<char*>(std::malloc(atLeastOne(size)));
    if (block->bytes == nullptr) {
        std::free(block);
        return nullptr;
    }
    block->size = size;
    block->room = size;
    return block;
}

BMHandle BMReallocHandle(BMHandle handle, long newSize, unsigned int flags, int actionCode) {
    if (handle == nullptr) return BMAllocateHandle(newSize, flags, actionCode);
    if (refused(newSize)) {
        BMKillHandle(&handle);
        return nullptr;
    }
    const bool tooSmall = newSize > handle->room;
    const bool mostlySpare = handle->room > kSpareKept && newSize < handle->room / 4;
    if (tooSmall || mostlySpare) {
        // Half as much again when growing step by step, so that n steps move O(n) bytes.
        const long room =
            tooSmall && handle->size > 0 ? std::max(newSize, handle->room + handle->room / 2) : newSize;
        auto* bytes = static_cast<char*>(std::realloc(handle->bytes, atLeastOne(room)));
        if (bytes == nullptr) {
            BMKillHandle(&handle);
            return nullptr;
        }
        handle->bytes = bytes;
        handle->room = room;
    }
    handle->size = newSize;
    return handle;
}

void BMKillHandle(BMHandle* handle) {
    if (handle == nullptr || *handle == nullptr) return;
    std::free((*handle)->bytes);
    std::free(*handle);
    *handle = nullptr;
}

void BMFailAfter(long successes) {
    successesLeft = successes;
}

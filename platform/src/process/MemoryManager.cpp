#include "platform/MemoryManager.h"

#include "platform/host/FailingMemory.h"

#include <algorithm>
#include <cstdlib>

namespace {

// No block of the suite comes near this; a size above it is a miscalculation.
constexpr long kLargestBlock = 1L << 36;
constexpr long kSmallStep = 256;
// A list that is emptied and filled again keeps this much without going back to the allocator.
constexpr long kSpareKept = 128 * 1024;

bool failing = false;
long successesLeft = 0;

bool refused(long size) {
    if (size < 0 || size > kLargestBlock) return true;
    if (!failing) return false;
    if (successesLeft == 0) return true;
    --successesLeft;
    return false;
}

// False when there is no memory; the block is as it was then.
bool setRoom(BMHandle handle, long room) {
    if (room == 0) {
        std::free(handle->bytes);
        handle->bytes = nullptr;
    } else {
        auto* const bytes = static_cast<char*>(std::realloc(handle->bytes, static_cast<std::size_t>(room)));
        if (bytes == nullptr) return false;
        handle->bytes = bytes;
    }
    handle->room = room;
    return true;
}

}  // namespace

BMHandle BMAllocateHandle(long size, unsigned int /*flags*/, int /*actionCode*/) {
    if (refused(size)) return nullptr;
    auto* handle = static_cast<BMBlock*>(std::calloc(1, sizeof(BMBlock)));
    if (handle == nullptr) return nullptr;
    if (!setRoom(handle, size)) BMKillHandle(&handle);
    if (handle != nullptr) handle->size = size;
    return handle;
}

BMHandle memory::moveBlock(BMHandle handle, long newSize) {
    if (handle == nullptr) return BMAllocateHandle(newSize, 0, 0);
    bool done = !refused(newSize);
    if (done && newSize > handle->room) {
        // A block that grows in small steps gets room for four of them, then always twice as much, so that n
        // steps move O(n) bytes.
        const long step = newSize - handle->size;
        const long more = handle->room == 0 ? step * 4 : handle->room * 2;
        const bool hasSpare = !failing && (step <= kSmallStep || step <= handle->size);
        done = setRoom(handle, hasSpare ? std::max(newSize, more) : newSize);
    } else if (done && handle->room > kSpareKept && newSize < handle->room / 4) {
        done = setRoom(handle, newSize);
    }
    if (done) {
        handle->size = newSize;
    } else {
        BMKillHandle(&handle);
    }
    return handle;
}

void BMKillHandle(BMHandle* handle) {
    if (handle == nullptr || *handle == nullptr) return;
    std::free((*handle)->bytes);
    std::free(*handle);
    *handle = nullptr;
}

void platform::failMemoryAfter(long successes) {
    failing = successes >= 0;
    successesLeft = std::max(successes, 0L);
}

#pragma once

/// The host's memory manager: relocatable blocks, each known by a handle that stays the same while the block
/// moves. Main thread only.

/// One relocatable block. Callers read `bytes` and `size` and change nothing; an address inside the block is
/// good until the next call that resizes or frees it.
struct BMBlock {
    char* bytes;  ///< aligned for every type; null only while there is no room
    long size;    ///< exactly the bytes that were asked for last
    long room;    ///< bytes really there: spare room makes growing in small steps cheap
};

using BMHandle = BMBlock*;

/// A new block of `size` bytes with undefined content; null when there is no memory or the size is negative.
/// `flags` and `actionCode` are the host's own affair: pass 2 and 0.
BMHandle BMAllocateHandle(long size, unsigned int flags, int actionCode);

namespace memory {

BMHandle moveBlock(BMHandle handle, long newSize);

/// Makes the block larger by using spare room; false when there is not so much.
inline bool growInPlace(BMHandle handle, long bytes) {
    if (handle->room - handle->size < bytes) return false;
    handle->size += bytes;
    return true;
}

}  // namespace memory

/// Gives the block the new size, moving it when it must; the bytes up to the smaller of the two sizes stay.
/// Returns the handle to use from now on. Null when there is no memory or the size is negative: the old block
/// is gone then too.
inline BMHandle BMReallocHandle(BMHandle handle, long newSize, unsigned int /*flags*/, int /*actionCode*/) {
    if (handle != nullptr && newSize >= handle->size && memory::growInPlace(handle, newSize - handle->size))
        return handle;
    return memory::moveBlock(handle, newSize);
}

/// The block's size in bytes; 0 for null.
inline long BMGetHandleSize(BMHandle handle) {
    return handle == nullptr ? 0 : handle->size;
}

/// Frees the block and sets the handle to null; a null handle is left alone.
void BMKillHandle(BMHandle* handle);

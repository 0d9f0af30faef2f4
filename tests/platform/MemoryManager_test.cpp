#include "platform/MemoryManager.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(MemoryManager, KeepsTheBytesAndTellsTheExactSizeWhileABlockGrowsAndShrinks) {
    BMHandle handle = BMAllocateHandle(0, 2, 0);
    ASSERT_NE(handle, nullptr);
    const auto byteAt = [](long i) { return static_cast<char>(i * 7); };
    for (long size = 1; size <= 300'000; size = size * 3 / 2 + 1) {
        const long before = BMGetHandleSize(handle);
        handle = BMReallocHandle(handle, size, 2, 0);
        ASSERT_NE(handle, nullptr);
        ASSERT_EQ(BMGetHandleSize(handle), size);
        for (long i = before; i < size; ++i)
            handle->bytes[i] = byteAt(i);
    }
    for (long size = BMGetHandleSize(handle); size > 0; size /= 3) {
        handle = BMReallocHandle(handle, size, 2, 0);
        ASSERT_EQ(BMGetHandleSize(handle), size);
        for (long i = 0; i < size; ++i)
            ASSERT_EQ(handle->bytes[i], byteAt(i));
    }
    BMKillHandle(&handle);
    EXPECT_EQ(handle, nullptr);
}

TEST(MemoryManager, MovesABlockSeldomWhileItGrowsInSmallSteps) {
    BMHandle handle = BMAllocateHandle(0, 2, 0);
    int roomChanges = 0;
    for (long size = 12; size <= 1'200'000; size += 12) {
        const long room = handle->room;
        handle = BMReallocHandle(handle, size, 2, 0);
        if (handle->room != room) ++roomChanges;
    }
    EXPECT_LT(roomChanges, 25);
    handle = BMReallocHandle(handle, 12, 2, 0);
    EXPECT_LT(handle->room, 1'000) << "room that is no longer needed is given back";
    BMKillHandle(&handle);
}

TEST(MemoryManager, RefusesSizesThatCannotBe) {
    for (const long size : {-1L, std::numeric_limits<long>::max()}) {
        EXPECT_EQ(BMAllocateHandle(size, 2, 0), nullptr);
        EXPECT_EQ(BMReallocHandle(BMAllocateHandle(8, 2, 0), size, 2, 0), nullptr) << "the old block is gone";
    }
    BMHandle null = nullptr;
    BMKillHandle(&null);
    BMKillHandle(nullptr);
    EXPECT_EQ(BMGetHandleSize(nullptr), 0);
}

}  // namespace

#include "platform/MemoryManager.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(MemoryManager, ABlockKeepsItsBytesAndMovesSeldomWhileItGrowsInSmallSteps) {
    BMHandle handle = BMAllocateHandle(0, 2, 0);
    const auto byteAt = [](long i) { return static_cast<char>(i * 7); };
    int roomChanges = 0;
    for (long size = 12, before = 0; size <= 1'200'000; size += before == 12 ? 256 : 12) {
        const long room = handle->room;
        handle = BMReallocHandle(handle, size, 2, 0);
        ASSERT_EQ(BMGetHandleSize(handle), size);
        if (handle->room != room) ++roomChanges;
        for (; before < size; ++before)
            handle->bytes[before] = byteAt(before);
    }
    EXPECT_LT(roomChanges, 25);
    handle = BMReallocHandle(handle, 900, 2, 0);
    EXPECT_LT(handle->room, 1'000) << "room that is no longer needed is given back";
    for (long i = 0; i < 900; ++i)
        ASSERT_EQ(handle->bytes[i], byteAt(i));
    BMKillHandle(&handle);
    EXPECT_EQ(handle, nullptr);
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

#pragma once

#include "platform/MemoryManager.h"

#include <cassert>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

/// The sequence container of the system: the elements are contiguous in one relocatable block of
/// the host's memory manager, whose size is always count * sizeof(T).
///
/// Elements are moved byte by byte when the block moves or an element is inserted or removed, so T must be a
/// type that survives that, and for which all-zero bytes are a valid value: integers, KW_String, and records
/// of them are. The list owns its elements.
///
/// When the memory manager fails, the list is left without a block and with count 0 (the elements that were
/// in the lost block are not destroyed), and AddData does nothing until SetSize has allocated a new block.
/// To detect this, compare the count before and after.
template <typename T>
class KW_List {
public:
    long count;     ///< number of elements
    BMHandle data;  ///< the block; null only after a failed allocation

    KW_List() : count(0), data(BMAllocateHandle(0, kFlags, kAction)) {}

    /// A deep copy. A source without a block gives a list without one.
    KW_List(const KW_List& other) : count(0), data(nullptr) {
        if (other.data == nullptr) return;
        data = BMAllocateHandle(BMGetHandleSize(other.data), kFlags, kAction);
        if (data == nullptr) return;
        count = other.count;
        for (long i = 0; i < count; ++i)
            constructAt(i, other[i]);
    }

    /// Takes over the block of a list that is no longer used.
    KW_List(KW_List&& other) noexcept
        : count(std::exchange(other.count, 0)), data(std::exchange(other.data, nullptr)) {}

    /// Lists are not assigned: copy-construct, or fill the list anew.
    KW_List& operator=(const KW_List&) = delete;

    virtual ~KW_List() {
        destroy(0, count);
        BMKillHandle(&data);
        count = 0;
    }

    /// Element `index`, in place. 0 <= index < count; good until the next operation that changes the list.
    T& operator[](long index) {
        assert(index >= 0 && index < count);
        return elements()[index];
    }
    T const& operator[](long index) const {
        assert(index >= 0 && index < count);
        return elements()[index];
    }

    /// Inserts the value before position `index`; -1 appends. An index outside 0..count is ignored.
    void AddData(T value, long index) {
        if (data == nullptr) return;
        if (index == -1) index = count;
        if (index < 0 || index > count) return;
        if (!resizeBlock(BMGetHandleSize(data) + kElementSize)) return;
        moveElements(index, index + 1, count - index);
        constructAt(index, std::move(value));
        ++count;
    }

    /// Destroys the element at `index` and closes the gap. An index outside 0..count-1 is ignored.
    void DeleteData(const long& index) {
        const long position = index;
        if (position < 0 || position >= count) return;
        destroy(position, position + 1);
        moveElements(position + 1, position, count - position - 1);
        --count;
        resizeBlock(BMGetHandleSize(data) - kElementSize);
    }

    /// Destroys all elements.
    void Reset() {
        if (data != nullptr) {
            destroy(0, count);
            resizeBlock(0);
        }
        count = 0;
    }

    /// Sets the number of elements to `n` (a negative n counts as 0). With `keep` the elements that remain
    /// keep their values and new ones are all zero bytes; without it all n elements are all zero bytes.
    void SetSize(long n, bool keep) {
        if (n < 0) n = 0;
        const long kept = keep ? (n < count ? n : count) : 0;
        destroy(kept, count);
        long size = 0;
        if (__builtin_mul_overflow(n, kElementSize, &size)) size = -1;
        count = kept;
        if (data == nullptr) {
            data = BMAllocateHandle(size, kFlags, kAction);
        } else {
            resizeBlock(size);
        }
        if (data == nullptr) {
            count = 0;
            return;
        }
        count = n;
        if (n > kept) clear(kept, n - kept);
    }

private:
    static constexpr unsigned int kFlags = 2;
    static constexpr int kAction = 0;
    static constexpr long kElementSize = static_cast<long>(sizeof(T));

    T* elements() const { return reinterpret_cast<T*>(data->bytes); }
    void* slot(long index) const { return data->bytes + index * kElementSize; }

    // False, with the list empty and without a block, when there is no memory.
    bool resizeBlock(long size) {
        const BMHandle resized = BMReallocHandle(data, size, kFlags, kAction);
        // Mostly the same handle: a loop of additions would wait for each store of it.
        if (resized != data) data = resized;
        if (resized == nullptr) count = 0;
        return resized != nullptr;
    }

    void moveElements(long from, long to, long n) {
        if (n > 0) std::memmove(slot(to), slot(from), static_cast<std::size_t>(n * kElementSize));
    }

    void clear(long from, long n) { std::memset(slot(from), 0, static_cast<std::size_t>(n * kElementSize)); }

    // The slot is cleared first, so that what a value does not fill is zero too.
    template <typename Value>
    void constructAt(long index, Value&& value) {
        if constexpr (!std::has_unique_object_representations_v<T>) clear(index, 1);
        new (slot(index)) T(std::forward<Value>(value));
    }

    void destroy(long from, long to) {
        if constexpr (!std::is_trivially_destructible_v<T>) {
            for (long i = from; i < to; ++i)
                elements()[i].~T();
        }
    }
};

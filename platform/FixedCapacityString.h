#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace GS {

/// An 8-bit string with room for `Capacity` bytes (terminator included) inside; a longer text moves to the
/// heap.
template <std::size_t Capacity>
class FixedCapacityString {
public:
    FixedCapacityString() = default;
    FixedCapacityString(const FixedCapacityString& other) { Set(other); }
    FixedCapacityString& operator=(const FixedCapacityString& other) {
        if (this != &other) Set(other);
        return *this;
    }

    /// Replaces the text by a copy of `text`, which may not be part of this string.
    void Set(std::string_view text) {
        heap_.reset(text.size() < Capacity ? nullptr : new char[text.size() + 1]);
        char* bytes = heap_ ? heap_.get() : inside_.data();
        if (!text.empty()) std::memcpy(bytes, text.data(), text.size());
        bytes[text.size()] = '\0';
        length_ = text.size();
    }

    /// Zero-terminated; valid until the string changes or ends.
    const char* ToCStr() const { return heap_ ? heap_.get() : inside_.data(); }
    /// Bytes without the terminator.
    std::size_t GetLength() const { return length_; }
    bool IsEmpty() const { return length_ == 0; }
    operator std::string_view() const { return {ToCStr(), length_}; }

private:
    std::array<char, Capacity> inside_{};
    std::unique_ptr<char[]> heap_;
    std::size_t length_ = 0;
};

}  // namespace GS

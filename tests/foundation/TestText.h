#pragma once

#include "foundation/KW_String.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

using Encoding = KW_String::Encoding;

constexpr auto kNone = KW_String::Encoding_None;
constexpr auto kUnsupported = KW_String::Encoding_Unsupported;
constexpr auto kSystem = KW_String::Encoding_System;
constexpr auto kUTF7 = KW_String::Encoding_UTF7;
constexpr auto kUTF8 = KW_String::Encoding_UTF8;
constexpr auto kUTF16LE = KW_String::Encoding_UTF16LE;
constexpr auto kUTF16BE = KW_String::Encoding_UTF16BE;
constexpr auto kUTF32LE = KW_String::Encoding_UTF32LE;
constexpr auto kUTF32BE = KW_String::Encoding_UTF32BE;
constexpr auto kASCII = KW_String::Encoding_ASCII;
constexpr auto kMacRoman = KW_String::Encoding_MacRoman;
constexpr auto kWindows = KW_String::Encoding_WindowsLatin1;
constexpr auto kLatin1 = KW_String::Encoding_ISOLatin1;

/// What a string holds, in a form that compares and prints: nothing for the null string.
using Content = std::optional<std::u16string>;

inline Content content(const KW_String& string) {
    if (string.data == nullptr) return std::nullopt;
    return std::u16string(string.data, string.data + string.length);
}

/// A string of these units; the empty string when there are none.
inline KW_String text(std::u16string_view units) {
    KW_String string;
    string.THIS_Alloc(1, false);
    const std::vector<unsigned short> copy(units.begin(), units.end());
    string.THIS_Append(copy.data(), static_cast<unsigned int>(copy.size()));
    return string;
}

inline KW_String maybe(const Content& units) {
    return units ? text(*units) : KW_String();
}

inline std::vector<Content> contents(const KW_List<KW_String>& list) {
    std::vector<Content> all;
    for (long i = 0; i < list.count; ++i)
        all.push_back(content(list[i]));
    return all;
}

/// What must hold for every string at any time.
inline void expectSound(const KW_String& string) {
    if (string.data == nullptr) {
        EXPECT_EQ(string.length, 0u);
        EXPECT_EQ(string.capacity, 0u);
    } else {
        ASSERT_LT(string.length, string.capacity);
        EXPECT_EQ(string.data[string.length], 0);
    }
}

/// The bytes of a text in an array of exactly their number, so that a read behind them is found.
struct ExactBytes {
    explicit ExactBytes(std::string_view bytes)
        : size(static_cast<unsigned int>(bytes.size())), array(new char[size]), data(array.get()) {
        bytes.copy(array.get(), size);
    }
    const unsigned int size;
    const std::unique_ptr<char[]> array;
    const char* const data;
};

/// Random text over few units, so that what is sought is found often. The seed makes a failure repeatable.
struct RandomText {
    std::u16string over(std::u16string_view alphabet, std::size_t longest) {
        std::u16string units(below(longest + 1), u'\0');
        for (char16_t& unit : units)
            unit = alphabet[below(alphabet.size())];
        return units;
    }
    std::size_t below(std::size_t bound) { return random() % bound; }

    std::mt19937 random;
};

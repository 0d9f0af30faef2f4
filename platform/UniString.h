#pragma once

#include <string>
#include <vector>

namespace GS {

/// The host's Unicode string: UTF-16 code units in the machine's byte order, owned, copied by value.
/// It has no null state; an empty string is just empty. Zero units inside are kept.
class UniString {
public:
    UniString() = default;
    /// Copies the units up to the first zero unit; null gives the empty string.
    explicit UniString(const unsigned short* units);
    /// Copies `count` units; null gives the empty string.
    UniString(const unsigned short* units, unsigned int count);

    /// Number of UTF-16 code units.
    unsigned int GetLength() const {
        return units_.empty() ? 0 : static_cast<unsigned int>(units_.size() - 1);
    }
    bool IsEmpty() const { return units_.empty(); }
    /// The units, followed by a zero unit; valid until the string changes or ends.
    const unsigned short* ToUStr() const;

    friend bool operator==(const UniString&, const UniString&) = default;

private:
    std::vector<unsigned short> units_;  // with the terminator; empty for the empty string
};

/// Malformed UTF-8 becomes U+FFFD. For programs and the platform itself; the module has conversions of its
/// own.
UniString UniStringFromUtf8(const std::string& utf8);
/// A surrogate without its partner becomes U+FFFD.
std::string UniStringToUtf8(const UniString& text);

}  // namespace GS

#pragma once

#include "foundation/KW_List.h"
#include "foundation/KW_Units.h"
#include "update/KW_AddonUpdate.h"

#include <array>

/// Version lines read in place. A versions file has many lines of which one or two concern an add-on, so
/// neither the lines nor their tokens are copied to find them.

/// A date dd/mm/yyyy turned into yyyymmdd, so that dates compare as text; shorter where the text was shorter.
class KW_VersionDate {
public:
    explicit KW_VersionDate(KW_Units text);
    KW_Units Units() const { return {units_.data(), count_}; }
    bool operator>(const KW_VersionDate& other) const;

private:
    void take(KW_Units text, std::size_t start, std::size_t count);

    std::array<unsigned short, 8> units_{};
    std::size_t count_ = 0;
};

/// The tokens of one line as far as the grammar asks for them.
class KW_VersionLine {
public:
    /// The text must live as long as this object.
    explicit KW_VersionLine(KW_Units line);
    explicit KW_VersionLine(const KW_List<KW_String>& tokens);

    KW_AddonUpdate_LineKind Kind() const;
    /// Token `number` from 1 to 4; empty when the line has fewer.
    KW_Units Token(std::size_t number) const { return tokens_[number - 1]; }
    /// Number of tokens, of which more than four count as four.
    std::size_t Count() const { return count_; }

    /// Of an add-on line: up to the first "." of the version.
    KW_Units MajorVersion() const;
    /// Of an add-on line.
    KW_VersionDate Date() const { return KW_VersionDate(Token(4)); }

private:
    bool isLibrary() const;
    bool isAddon() const;

    static constexpr std::size_t kGrammarTokens = 4;
    std::array<KW_Units, kGrammarTokens> tokens_{};
    std::size_t count_ = 0;
};

#include "platform/src/resources/TomlCheck.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace platform {

namespace {

constexpr std::size_t kEnd = std::string_view::npos;

bool isAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

/// Of a key without quotes, a number, a date or a truth value.
bool isBareCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '+';
}

/// Where the string that begins at `start` with `quote` ends: behind its closing quotes; kEnd when it has
/// none.
std::size_t endOfString(std::string_view toml, std::size_t start) {
    const char quote = toml[start];
    const std::string threeQuotes(3, quote);
    const bool multiLine = toml.substr(start, 3) == threeQuotes;
    std::size_t at = start + (multiLine ? 3 : 1);
    for (; at < toml.size(); ++at) {
        if (toml[at] == '\\' && quote == '"') {
            ++at;
        } else if (!multiLine && toml[at] == '\n') {
            return kEnd;
        } else if (!multiLine && toml[at] == quote) {
            return at + 1;
        } else if (multiLine && toml.substr(at, 3) == threeQuotes) {
            at += 3;
            // Up to two quotes before the closing ones belong to the text.
            for (int extra = 0; extra < 2 && at < toml.size() && toml[at] == quote; ++extra)
                ++at;
            return at;
        }
    }
    return kEnd;
}

}  // namespace

int lineOfStrayText(std::string_view toml) {
    const auto lineAt = [toml](std::size_t at) {
        return static_cast<int>(std::count(toml.begin(), toml.begin() + static_cast<long>(at), '\n')) + 1;
    };
    std::size_t at = toml.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
    char before = '\n';
    while (at < toml.size()) {
        const char here = toml[at];
        const bool isQuote = here == '"' || here == '\'';
        if (!isAscii(here) || (isQuote && isBareCharacter(before))) return lineAt(at);
        std::size_t next = at + 1;
        if (here == '#') next = std::min(toml.find('\n', at), toml.size());
        if (isQuote) next = endOfString(toml, at);
        const std::string_view passed = toml.substr(at, next - at);
        if (before == '.' && !std::all_of(passed.begin(), passed.end(), isAscii)) return lineAt(at);
        before = here;
        at = next;
    }
    return 0;
}

}  // namespace platform

#include "platform/src/TomlCheck.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace platform {

namespace {

constexpr std::size_t kEnd = std::string_view::npos;

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

int lineOfStrayCharacter(std::string_view toml) {
    std::size_t at = toml.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;
    while (at < toml.size()) {
        if (static_cast<unsigned char>(toml[at]) >= 0x80) {
            const auto before = toml.substr(0, at);
            return static_cast<int>(std::count(before.begin(), before.end(), '\n')) + 1;
        }
        if (toml[at] == '#') {
            at = toml.find('\n', at);
        } else if (toml[at] == '"' || toml[at] == '\'') {
            at = endOfString(toml, at);
        } else {
            ++at;
        }
    }
    return 0;
}

}  // namespace platform

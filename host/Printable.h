#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Texts from outside (files, servers, add-ons, arguments) as a terminal may get them.
namespace host {

/// The text without what would move a terminal's cursor or turn the order of its letters: control characters
/// become "\n", "\t", "\x1B"; line separators, bidirectional controls and bytes that are not UTF-8 "\xNN".
std::string printable(std::string_view text);

/// The text, with what must not be printed as `escape` appends it: a piece of the text, which is one
/// character or no UTF-8, and the character, negative for none.
std::string escaped(std::string_view text,
                    void (*escape)(std::string& result, std::string_view piece, std::int32_t character));

/// In double quotes, printable, with quotes and backslashes escaped.
std::string inQuotes(std::string_view text);

}  // namespace host

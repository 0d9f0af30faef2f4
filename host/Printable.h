#pragma once

#include <string>
#include <string_view>

/// Texts from outside (files, servers, add-ons, arguments) as a terminal may get them.
namespace host {

/// The text without what would move a terminal's cursor or turn the order of its letters: control characters
/// become "\n", "\t", "\x1B"; line separators, bidirectional controls and bytes that are not UTF-8 "\xNN".
std::string printable(std::string_view text);

/// Whether the character is written as an escape.
bool isUnprintable(char32_t character);

/// In double quotes, printable, with quotes and backslashes escaped.
std::string inQuotes(std::string_view text);

}  // namespace host

#pragma once

#include <string_view>

namespace platform {

/// The line, from 1, of the first place in a TOML text where characters outside ASCII stand, or may come to
/// stand, outside of quotes and comments: such a character, or a quotation mark right behind a letter or
/// digit. Neither is ever right there, but for a quoted part of a dotted key, which may have ASCII only. 0
/// when there is no such place, or when the text is malformed before it.
int lineOfStrayText(std::string_view toml);

}  // namespace platform

#pragma once

#include <string_view>

namespace platform {

/// The line, from 1, of the first character outside ASCII that stands in a TOML text outside of quotes and
/// comments, where none may stand; 0 when there is none, or when the text is malformed before one.
int lineOfStrayCharacter(std::string_view toml);

}  // namespace platform

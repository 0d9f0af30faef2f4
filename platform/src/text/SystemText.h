#pragma once

#include "platform/UniString.h"

#include <string_view>

namespace platform {

/// 8-bit text in the system encoding as UTF-16.
GS::UniString uniStringFromSystemText(std::string_view text);
/// Zero-terminated; null gives the empty string.
GS::UniString uniStringFromSystemText(const char* text);

}  // namespace platform

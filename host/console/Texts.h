#pragma once

#include "platform/host/CallTrace.h"
#include "platform/host/Resources.h"
#include "platform/UniString.h"

#include <string>
#include <string_view>

/// Small texts that both printers use.
namespace host {

/// The text without what would move a terminal's cursor: control characters become "\n", "\t", "\x1B"; bytes
/// that are not UTF-8 become "\xNN".
std::string printable(std::string_view text);

/// In double quotes, printable, with quotes and backslashes escaped.
std::string inQuotes(std::string_view text);

inline std::string utf8(const GS::UniString& text) {
    return UniStringToUtf8(text);
}

const char* kindName(platform::DialogItemKind kind);

/// What the icon says, or its number.
std::string iconText(RSResModule module, short resID);

}  // namespace host

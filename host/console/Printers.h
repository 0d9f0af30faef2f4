#pragma once

#include "host/session/Events.h"

#include <ostream>

namespace host {

/// How an event looks.
using EventPrinter = void (*)(std::ostream& out, const Event& event);

/// As text for a person.
void printText(std::ostream& out, const Event& event);

/// As JSON for programs: one object per event and line, each with "schema" and "event". docs/console.md
/// describes them.
void printJson(std::ostream& out, const Event& event);

/// The visible items of a dialog, by their numbers.
std::vector<const platform::DialogItem*> visibleItems(const platform::DialogState& dialog);

/// "button", "list", ...
const char* kindName(platform::DialogItemKind kind);

inline std::string utf8(const GS::UniString& text) {
    return UniStringToUtf8(text);
}

}  // namespace host

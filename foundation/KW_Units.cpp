#include "foundation/KW_Units.h"

#include "foundation/KW_String_Internal.h"
#include "foundation/UnitSearch.h"

#include <algorithm>

namespace {

bool isBlankOrTab(unsigned short unit) {
    return unit == ' ' || unit == '\t';
}

}  // namespace

void KW_SetUnits(KW_String& text, KW_Units units) {
    text.THIS_Alloc(KW_StringUnits(units.size() + 1), false);
    KW_StringCopyUnits(text.data, units.data(), units.size());
    text.data[units.size()] = 0;
    text.length = static_cast<unsigned int>(units.size());
}

KW_Units KW_TakeLine(KW_Units& text) {
    const unsigned long end = findEither(text.data(), text.size(), 0, '\n', '\r');
    const KW_Units line = text.first(end);
    text = text.subspan(end);
    const bool isPair = text.size() > 1 && text[0] == '\r' && text[1] == '\n';
    text = text.subspan(std::min<std::size_t>(isPair ? 2 : 1, text.size()));
    return line;
}

bool KW_TokenReader::Next(KW_Units& token) {
    if (ended_) return false;
    const auto end = std::ranges::find_if(rest_, isBlankOrTab);
    token = KW_Units(rest_.begin(), end);
    ended_ = end == rest_.end();
    rest_ = KW_Units(std::find_if_not(end, rest_.end(), isBlankOrTab), rest_.end());
    return true;
}

#include "host/console/Texts.h"

#include <array>
#include <cstdio>

namespace host {

namespace {

/// Length of the well-formed UTF-8 sequence at the start of `text`; 0 when there is none.
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned char first = byte(0);
    const std::size_t length = first < 0x80                    ? 1
                               : first >= 0xC2 && first < 0xE0 ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    if (length > text.size()) return 0;
    for (std::size_t index = 1; index < length; ++index) {
        if ((byte(index) & 0xC0) != 0x80) return 0;
    }
    if (length < 3) return length;
    const unsigned char second = byte(1);
    const bool wrong = (first == 0xE0 && second < 0xA0) || (first == 0xED && second >= 0xA0) ||
                       (first == 0xF0 && second < 0x90) || (first == 0xF4 && second >= 0x90);
    return wrong ? 0 : length;
}

/// C0, DEL, and the C1 controls in their two-byte form.
bool isControl(std::string_view sequence) {
    const auto first = static_cast<unsigned char>(sequence[0]);
    if (sequence.size() == 1) return first < 0x20 || first == 0x7F;
    return first == 0xC2 && static_cast<unsigned char>(sequence[1]) < 0xA0;
}

void appendEscaped(std::string& result, char byte) {
    if (byte == '\n') {
        result += "\\n";
    } else if (byte == '\t') {
        result += "\\t";
    } else {
        std::array<char, 8> hex{};
        std::snprintf(hex.data(), hex.size(), "\\x%02X",
                      static_cast<unsigned int>(static_cast<unsigned char>(byte)));
        result += hex.data();
    }
}

}  // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        const std::string_view piece = text.substr(0, length == 0 ? 1 : length);
        if (length == 0 || isControl(piece)) {
            for (const char byte : piece)
                appendEscaped(result, byte);
        } else {
            result += piece;
        }
        text.remove_prefix(piece.size());
    }
    return result;
}

std::string inQuotes(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        if (character == '"' || character == '\\') escaped += '\\';
        escaped += character;
    }
    return '"' + printable(escaped) + '"';
}

const char* kindName(platform::DialogItemKind kind) {
    switch (kind) {
        case platform::DialogItemKind::Button:
            return "button";
        case platform::DialogItemKind::Text:
            return "text";
        case platform::DialogItemKind::List:
            return "list";
        case platform::DialogItemKind::Icon:
            return "icon";
        case platform::DialogItemKind::Separator:
            return "separator";
    }
    return "item";
}

std::string iconText(RSResModule module, short resID) {
    const std::string label = platform::iconLabel(module, resID);
    return label.empty() ? "icon " + std::to_string(resID) : label;
}

}  // namespace host

#include "files/KW_File.h"
#include "language/KW_Language.h"
#include "update/KW_AddonUpdate_Internal.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace {

using Tokens = std::vector<KW_Units>;

constexpr char kVersionsFileName[] = "__updcf__.tmp";
constexpr std::string_view kMessageMark = "MESSAGE";  // anywhere in the first token
constexpr std::size_t kTextMark = 2;                  // units before the text of a text line: "#" and a blank

bool startsWith(KW_Units line, char mark) {
    return !line.empty() && line[0] == static_cast<unsigned char>(mark);
}

bool isTextLine(KW_Units line) {
    return startsWith(line, '#');
}

bool isDateSeparator(unsigned short unit) {
    return unit == '-' || unit == '/';
}

/// In the system encoding the digits are the bytes of ASCII, and nothing else is converted to one of them.
bool isDigit(unsigned short unit) {
    return unit >= '0' && unit <= '9';
}

bool digitsOnly(KW_Units text) {
    return std::ranges::all_of(text, isDigit);
}

/// Cut at the end of the text; empty when it starts behind it.
KW_Units part(KW_Units text, std::size_t start, std::size_t count) {
    if (start >= text.size()) return {};
    return text.subspan(start, std::min(count, text.size() - start));
}

/// dd/mm/yyyy or dd-mm-yyyy; what follows is not looked at, and neither is the length.
bool isDate(KW_Units text) {
    return text.size() > 5 && isDateSeparator(text[2]) && isDateSeparator(text[5]) &&
           digitsOnly(part(text, 0, 2)) && digitsOnly(part(text, 3, 2)) && digitsOnly(part(text, 6, 4));
}

/// At least four numbers between dots; the first four are looked at. A number without digits is one.
bool isVersion(KW_Units text) {
    for (int number = 1; number <= 4; ++number) {
        const auto dot = std::ranges::find(text, static_cast<unsigned short>('.'));
        if (!digitsOnly(KW_Units(text.begin(), dot))) return false;
        if (dot == text.end()) return number == 4;
        text = KW_Units(dot + 1, text.end());
    }
    return true;
}

/// "(AC220)"
bool isHostTag(KW_Units text) {
    return text.size() >= 4 && text[0] == '(' && text[1] == 'A' && text[2] == 'C' && text.back() == ')' &&
           digitsOnly(text.subspan(3, text.size() - 4));
}

bool equals(KW_Units token, std::string_view ascii) {
    return std::ranges::equal(token, ascii);
}

Tokens tokensOf(const KW_String& line) {
    Tokens tokens;
    KW_AddonUpdate_TakeTokens(KW_UnitsOf(line), tokens);
    return tokens;
}

KW_Units tokenAt(const Tokens& tokens, std::size_t index) {
    return index < tokens.size() ? tokens[index] : KW_Units();
}

/// Empty, not null, for no units.
KW_String stringOf(KW_Units units) {
    KW_String text;
    KW_SetUnits(text, units);
    return text;
}

/// Null for a token without units, as every such piece of a text is, and for one that the line lacks.
void setToken(KW_String& text, KW_Units token) {
    text.SetToNullString();
    text.THIS_Append(token.data(), static_cast<unsigned int>(token.size()));
}

/// The number that the digits are; numbers too large for 64 bits wrap, as everywhere.
short numberOf(KW_Units digits) {
    unsigned long number = 0;
    for (const unsigned short digit : digits) {
        if (digit < '0' || digit > '9') break;
        number = number * 10 + (digit - '0');
    }
    return static_cast<short>(number);
}

void setVersionNumbers(KW_AddonUpdate_Addon& addon, KW_Units version) {
    for (short& number : addon.versionNumbers) {
        const auto dot = std::ranges::find(version, static_cast<unsigned short>('.'));
        number = numberOf(KW_Units(version.begin(), dot));
        version = dot == version.end() ? KW_Units() : KW_Units(dot + 1, version.end());
    }
}

/// The index of the language that the marker names in whatever case, or -1.
short languageOf(KW_Units marker) {
    for (short language = 0; language < KW_Language_Count; ++language) {
        if (std::ranges::equal(marker, KW_UnitsOf(gKW_Languages_Suffixes[language]), {},
                               KW_String::KW_CharToLowerCase, KW_String::KW_CharToLowerCase)) {
            return language;
        }
    }
    return -1;
}

void fillAddon(KW_AddonUpdate_Addon& addon, const Tokens& tokens) {
    setToken(addon.name, tokenAt(tokens, 0));
    setToken(addon.versionText, tokenAt(tokens, 1));
    setVersionNumbers(addon, tokenAt(tokens, 1));
    // "22" of "(AC220)", whose last digit is the minor version
    const KW_Units hostTag = tokenAt(tokens, 2);
    addon.hostVersion = numberOf(part(hostTag, 3, std::max<std::size_t>(hostTag.size(), 5) - 5));
    addon.date = KW_AddonUpdate_ArrangeDate(tokenAt(tokens, 3));
    setToken(addon.dateText, tokenAt(tokens, 3));

    addon.languages.Reset();
    addon.inSE = true;
    addon.inSuite = true;
    for (std::size_t i = 4; i < tokens.size(); ++i) {
        if (equals(tokens[i], "NoSE")) {
            addon.inSE = false;
        } else if (equals(tokens[i], "NoSuite")) {
            addon.inSuite = false;
        } else if (const short language = languageOf(tokens[i]); language >= 0) {
            addon.languages.AddData(language, -1);
        }
    }
}

void fillLibrary(KW_AddonUpdate_Library& library, const Tokens& tokens) {
    setToken(library.name, tokenAt(tokens, 0));
    library.date = KW_AddonUpdate_ArrangeDate(tokenAt(tokens, 1));
    setToken(library.dateText, tokenAt(tokens, 1));
    library.inSuite = true;
    for (std::size_t i = 2; i < tokens.size(); ++i)
        if (equals(tokens[i], "NoSuite")) library.inSuite = false;
}

/// Joins the text lines that `next` gives, until it gives another line or none.
template <typename Next>
KW_String joinTextLines(Next next) {
    std::vector<unsigned short> joined;
    for (KW_Units line = next(); isTextLine(line); line = next()) {
        if (!joined.empty()) joined.push_back('\n');
        if (line.size() > kTextMark) joined.insert(joined.end(), line.begin() + kTextMark, line.end());
    }
    return stringOf(joined);
}

KW_AddonUpdate_Message takeMessage(const Tokens& tokens, KW_Units& rest) {
    KW_AddonUpdate_Message message;
    message.firstDate = KW_AddonUpdate_ArrangeDate(tokenAt(tokens, 1));
    message.secondDate = KW_AddonUpdate_ArrangeDate(tokenAt(tokens, 2));
    message.text = KW_AddonUpdate_TakeText(rest);
    const int url = message.text.IndexOf(KW_SystemText("http://"), 0);
    if (url >= 0) {
        message.url = message.text.Substring(static_cast<unsigned int>(url));
        message.text = message.text.Substring(0, static_cast<unsigned int>(url));
    }
    return message;
}

}  // namespace

KW_AddonUpdate_Addon& KW_AddonUpdate_Addon::operator=(const KW_AddonUpdate_Addon& other) {
    if (this == &other) return *this;
    KW_AddonUpdate_Addon copy(other);  // lists are not assigned, so the record is made anew
    std::destroy_at(this);
    return *std::construct_at(this, std::move(copy));
}

void KW_AddonUpdate_TakeTokens(KW_Units line, std::vector<KW_Units>& tokens) {
    tokens.clear();
    KW_TokenReader reader(line);
    for (KW_Units token; reader.Next(token);)
        tokens.push_back(token);
}

int KW_AddonUpdate_KindOf(std::span<const KW_Units> tokens) {
    if (tokens.size() >= 2 && tokens[1].size() == 10 && isDate(tokens[1])) return KW_AddonUpdate_LibraryLine;
    const bool isAddon =
        tokens.size() >= 4 && isVersion(tokens[1]) && isHostTag(tokens[2]) && isDate(tokens[3]);
    return isAddon ? KW_AddonUpdate_AddonLine : KW_AddonUpdate_NoVersionLine;
}

int KW_AddonUpdate_CheckVersionFormat(KW_List<KW_String>& tokens) {
    Tokens units;
    for (long i = 0; i < tokens.count; ++i)
        units.push_back(KW_UnitsOf(tokens[i]));
    return KW_AddonUpdate_KindOf(units);
}

KW_String KW_AddonUpdate_ArrangeDate(KW_Units date) {
    std::array<unsigned short, 8> arranged;
    auto end = arranged.begin();
    for (const KW_Units piece : {part(date, 6, 4), part(date, 3, 2), part(date, 0, 2)})
        end = std::ranges::copy(piece, end).out;
    return stringOf({arranged.begin(), end});
}

KW_String KW_AddonUpdate_FormatDate(KW_String& date) {
    return KW_AddonUpdate_ArrangeDate(KW_UnitsOf(date));
}

void KW_AddonUpdate_SplitAddonVersion(KW_String line, KW_AddonUpdate_Addon& addon) {
    if (line.length == 0) {
        addon = KW_AddonUpdate_Addon();
    } else {
        fillAddon(addon, tokensOf(line));
    }
}

void KW_AddonUpdate_SplitLibVersion(KW_String line, KW_AddonUpdate_Library& library) {
    fillLibrary(library, tokensOf(line));
}

KW_String KW_AddonUpdate_TakeText(KW_Units& rest) {
    return joinTextLines([&rest] { return isTextLine(rest) ? KW_TakeLine(rest) : KW_Units(); });
}

KW_String KW_AddonUpdate_ReadText(long& index, KW_List<KW_String>& lines) {
    const KW_String text =
        joinTextLines([&] { return ++index < lines.count ? KW_UnitsOf(lines[index]) : KW_Units(); });
    if (index < lines.count) --index;
    return text;
}

void KW_AddonUpdate_ReadVersions(const KW_String& text, KW_List<KW_AddonUpdate_Message>& messages,
                                 KW_List<KW_AddonUpdate_Addon>& addons,
                                 KW_List<KW_AddonUpdate_Library>& libraries) {
    Tokens tokens;
    KW_Units rest = KW_UnitsOf(text);
    while (!rest.empty()) {
        const KW_Units line = KW_TakeLine(rest);
        if (startsWith(line, '*') || isTextLine(line)) continue;
        KW_AddonUpdate_TakeTokens(line, tokens);
        if (!std::ranges::search(tokens[0], kMessageMark).empty()) {
            messages.AddData(takeMessage(tokens, rest), -1);
            continue;
        }
        const int kind = KW_AddonUpdate_KindOf(tokens);
        if (kind == KW_AddonUpdate_LibraryLine) {
            KW_AddonUpdate_Library library;
            fillLibrary(library, tokens);
            library.text = KW_AddonUpdate_TakeText(rest);
            libraries.AddData(std::move(library), -1);
        } else if (kind == KW_AddonUpdate_AddonLine) {
            KW_AddonUpdate_Addon addon;
            fillAddon(addon, tokens);
            addon.text = KW_AddonUpdate_TakeText(rest);
            addons.AddData(std::move(addon), -1);
        }
    }
}

bool KW_AddonUpdate_GetFileLocation(KW_Location& location) {
    if (KW_Location::SettingsFolder(location) != 0) return false;
    location += "/";
    location += kVersionsFileName;
    return true;
}

bool KW_AddonUpdate_ReadVersionsFile(KW_List<KW_AddonUpdate_Message>& messages,
                                     KW_List<KW_AddonUpdate_Addon>& addons,
                                     KW_List<KW_AddonUpdate_Library>& libraries) {
    KW_Location location;
    if (!KW_AddonUpdate_GetFileLocation(location)) return false;
    KW_String text;
    if (KW_File::ReadFullText(location, text, false, KW_String::Encoding_UTF8) != 0) return false;
    KW_AddonUpdate_ReadVersions(text, messages, addons, libraries);
    return true;
}

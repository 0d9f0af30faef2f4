#include "files/KW_File.h"
#include "language/KW_Language.h"
#include "update/KW_AddonUpdate_Internal.h"
#include "update/KW_VersionLine.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

constexpr char kVersionsFileName[] = "__updcf__.tmp";
constexpr unsigned short kLineFeed = 0x0A;
constexpr std::size_t kTextMark = 2;  // units before the text of a text line: "#" and a blank

bool startsWith(KW_Units line, char mark) {
    return !line.empty() && line[0] == static_cast<unsigned char>(mark);
}

bool isTextLine(KW_Units line) {
    return startsWith(line, '#');
}

bool equals(KW_Units token, std::string_view ascii) {
    return std::ranges::equal(token, ascii);
}

bool holdsMessageMark(KW_Units token) {
    constexpr std::string_view kMark = "MESSAGE";
    return !std::ranges::search(token, kMark).empty();
}

/// Null for a token without units, as every such piece of a text is.
void setToken(KW_String& text, KW_Units token) {
    if (token.empty()) {
        text.SetToNullString();
    } else {
        KW_SetUnits(text, token);
    }
}

KW_String stringOf(KW_Units units) {
    KW_String text;
    KW_SetUnits(text, units);
    return text;
}

KW_String emptyString() {
    return stringOf({});
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

/// The host's major version: "22" of "(AC220)", whose last digit is the minor one.
short hostVersionOf(KW_Units hostTag) {
    constexpr std::size_t kBefore = 3;
    constexpr std::size_t kBehind = 2;
    if (hostTag.size() <= kBefore + kBehind) return 0;
    return numberOf(hostTag.subspan(kBefore, hostTag.size() - kBefore - kBehind));
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

/// Calls `note` with each token of the line from token `first` on.
template <typename Note>
void forEachMarker(KW_Units line, int first, Note note) {
    KW_TokenReader reader(line);
    KW_Units token;
    for (int number = 1; reader.Next(token); ++number) {
        if (number >= first) note(token);
    }
}

void fillAddon(KW_AddonUpdate_Addon& addon, KW_Units line) {
    const KW_VersionLine tokens(line);
    setToken(addon.name, tokens.Token(1));
    setToken(addon.versionText, tokens.Token(2));
    setVersionNumbers(addon, tokens.Token(2));
    addon.hostVersion = hostVersionOf(tokens.Token(3));
    KW_SetUnits(addon.date, tokens.Date().Units());
    setToken(addon.dateText, tokens.Token(4));

    addon.languages.Reset();
    addon.inSE = true;
    addon.inSuite = true;
    forEachMarker(line, 5, [&addon](KW_Units marker) {
        if (equals(marker, "NoSE")) {
            addon.inSE = false;
        } else if (equals(marker, "NoSuite")) {
            addon.inSuite = false;
        } else if (short const language = languageOf(marker); language >= 0) {
            addon.languages.AddData(language, -1);
        }
    });
}

void fillLibrary(KW_AddonUpdate_Library& library, KW_Units line) {
    const KW_VersionLine tokens(line);
    setToken(library.name, tokens.Token(1));
    KW_SetUnits(library.date, KW_VersionDate(tokens.Token(2)).Units());
    setToken(library.dateText, tokens.Token(2));
    library.inSuite = true;
    forEachMarker(line, 3, [&library](KW_Units marker) {
        if (equals(marker, "NoSuite")) library.inSuite = false;
    });
}

void addTextLine(KW_String& text, KW_Units line) {
    if (text.length > 0) text.THIS_Append(&kLineFeed, 1);
    if (line.size() <= kTextMark) return;
    const KW_Units piece = line.subspan(kTextMark);
    text.THIS_Append(piece.data(), static_cast<unsigned int>(piece.size()));
}

/// Empties the text and makes room for lines of so many units in all, so that adding them one by one moves
/// nothing.
void makeRoom(KW_String& text, std::size_t units) {
    text.THIS_Alloc(static_cast<unsigned int>(units) + 1, false);
    KW_SetUnits(text, {});
}

/// Takes the text lines off the front of `rest` and joins them.
void takeText(KW_String& text, KW_Units& rest) {
    KW_Units lines = rest;
    while (isTextLine(rest))
        KW_TakeLine(rest);
    lines = lines.first(lines.size() - rest.size());
    makeRoom(text, lines.size());
    while (!lines.empty())
        addTextLine(text, KW_TakeLine(lines));
}

KW_AddonUpdate_Message takeMessage(const KW_VersionLine& line, KW_Units& rest) {
    KW_AddonUpdate_Message message;
    KW_SetUnits(message.firstDate, KW_VersionDate(line.Token(2)).Units());
    KW_SetUnits(message.secondDate, KW_VersionDate(line.Token(3)).Units());
    takeText(message.text, rest);
    const int url = message.text.IndexOf(KW_AddonUpdate_SystemText("http://"), 0);
    if (url >= 0) {
        message.url = message.text.Substring(static_cast<unsigned int>(url));
        message.text = message.text.Substring(0, static_cast<unsigned int>(url));
    }
    return message;
}

}  // namespace

KW_AddonUpdate_Addon::KW_AddonUpdate_Addon()
    : name(emptyString()),
      versionText(emptyString()),
      versionNumbers{},
      hostVersion(0),
      date(emptyString()),
      dateText(emptyString()),
      text(emptyString()),
      inSE(false),
      inSuite(true) {}

KW_AddonUpdate_Addon& KW_AddonUpdate_Addon::operator=(const KW_AddonUpdate_Addon& other) {
    if (this == &other) return *this;
    name = other.name;
    versionText = other.versionText;
    std::ranges::copy(other.versionNumbers, versionNumbers);
    hostVersion = other.hostVersion;
    date = other.date;
    dateText = other.dateText;
    languages.Reset();
    for (long i = 0; i < other.languages.count; ++i)
        languages.AddData(other.languages[i], -1);
    text = other.text;
    inSE = other.inSE;
    inSuite = other.inSuite;
    return *this;
}

KW_AddonUpdate_Library::KW_AddonUpdate_Library()
    : name(emptyString()), date(emptyString()), dateText(emptyString()), text(emptyString()), inSuite(true) {}

KW_AddonUpdate_Message::KW_AddonUpdate_Message()
    : firstDate(emptyString()), secondDate(emptyString()), text(emptyString()), url(emptyString()) {}

int KW_AddonUpdate_CheckVersionFormat(KW_List<KW_String>& tokens) {
    return KW_VersionLine(tokens).Kind();
}

KW_String KW_AddonUpdate_FormatDate(KW_String& date) {
    return stringOf(KW_VersionDate(KW_UnitsOf(date)).Units());
}

void KW_AddonUpdate_SplitAddonVersion(KW_String line, KW_AddonUpdate_Addon& addon) {
    if (line.length == 0) {
        addon = KW_AddonUpdate_Addon();
    } else {
        fillAddon(addon, KW_UnitsOf(line));
    }
}

void KW_AddonUpdate_SplitLibVersion(KW_String line, KW_AddonUpdate_Library& library) {
    fillLibrary(library, KW_UnitsOf(line));
}

KW_String KW_AddonUpdate_ReadText(long& index, KW_List<KW_String>& lines) {
    const long first = ++index;
    std::size_t units = 0;
    for (; index < lines.count && isTextLine(KW_UnitsOf(lines[index])); ++index)
        units += lines[index].length;
    KW_String text;
    makeRoom(text, units);
    for (long i = first; i < index; ++i)
        addTextLine(text, KW_UnitsOf(lines[i]));
    if (index < lines.count) --index;
    return text;
}

void KW_AddonUpdate_ReadVersions(const KW_String& text, KW_List<KW_AddonUpdate_Message>& messages,
                                 KW_List<KW_AddonUpdate_Addon>& addons,
                                 KW_List<KW_AddonUpdate_Library>& libraries) {
    KW_Units rest = KW_UnitsOf(text);
    while (!rest.empty()) {
        const KW_Units line = KW_TakeLine(rest);
        if (startsWith(line, '*') || isTextLine(line)) continue;
        const KW_VersionLine tokens(line);
        if (holdsMessageMark(tokens.Token(1))) {
            messages.AddData(takeMessage(tokens, rest), -1);
            continue;
        }
        switch (tokens.Kind()) {
            case KW_AddonUpdate_LibraryLine: {
                KW_AddonUpdate_Library library;
                fillLibrary(library, line);
                takeText(library.text, rest);
                libraries.AddData(std::move(library), -1);
                break;
            }
            case KW_AddonUpdate_AddonLine: {
                KW_AddonUpdate_Addon addon;
                fillAddon(addon, line);
                takeText(addon.text, rest);
                addons.AddData(std::move(addon), -1);
                break;
            }
            case KW_AddonUpdate_NoVersionLine:
                break;
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
    {
        KW_File file;
        if (file.Open(location, OpenMode_Read) != 0) return false;
        if (file.ReadFullText(text, false, KW_String::Encoding_UTF8) != 0) return false;
    }
    KW_AddonUpdate_ReadVersions(text, messages, addons, libraries);
    return true;
}

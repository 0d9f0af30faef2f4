#include "files/KW_File.h"
#include "language/KW_Language.h"
#include "platform/FileSystem.h"
#include "update/KW_AddonUpdate_Internal.h"
#include "update/KW_VersionLine.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace {

constexpr char kVersionsFileName[] = "__updcf__.tmp";
constexpr char kNoSE[] = "NoSE";
constexpr char kNoSuite[] = "NoSuite";
constexpr int kVersionNumbers = 4;
constexpr unsigned short kLineFeed = 0x0A;
constexpr unsigned int kTextMark = 2;  // units before the text of a text line: "#" and a blank

KW_String emptyString() {
    return KW_AddonUpdate_SystemText("");
}

bool equals(KW_String const& text, char const* systemText) {
    return text == KW_AddonUpdate_SystemText(systemText);
}

bool startsWith(KW_String const& line, char mark) {
    return line.length > 0 && line.data[0] == static_cast<unsigned char>(mark);
}

bool isTextLine(KW_String const& line) {
    return startsWith(line, '#');
}

bool holdsMessageMark(KW_Units token) {
    constexpr std::string_view kMark = "MESSAGE";
    return !std::ranges::search(token, kMark).empty();
}

KW_String stringOf(KW_VersionDate const& date) {
    KW_String text = emptyString();
    text.THIS_Append(date.Units().data(), static_cast<unsigned int>(date.Units().size()));
    return text;
}

/// Token `number` from 1; the null string when there are fewer.
KW_String token(KW_List<KW_String> const& tokens, long number) {
    return number <= tokens.count ? tokens[number - 1] : KW_String();
}

/// The index of the language that the marker names in whatever case, or -1.
short languageOf(KW_String const& marker) {
    for (short language = 0; language < static_cast<short>(std::size(gKW_Languages_Suffixes)); ++language) {
        if (KW_String::CompareIgnoreCase(marker, 0, gKW_Languages_Suffixes[language], 0, 0) == 0)
            return language;
    }
    return -1;
}

/// The host's major version: "22" of "(AC220)", whose last digit is the minor one.
short hostVersionOf(KW_String const& hostTag) {
    constexpr unsigned int kBefore = 3;
    constexpr unsigned int kBehind = 2;
    if (hostTag.length <= kBefore + kBehind) return 0;
    return static_cast<short>(
        KW_AddonUpdate_ToLong(hostTag.Substring(kBefore, hostTag.length - kBefore - kBehind)));
}

void readMarkers(KW_List<KW_String> const& tokens, KW_AddonUpdate_Addon& addon) {
    for (long i = 4; i < tokens.count; ++i) {
        if (equals(tokens[i], kNoSE)) {
            addon.inSE = false;
        } else if (equals(tokens[i], kNoSuite)) {
            addon.inSuite = false;
        } else if (short const language = languageOf(tokens[i]); language >= 0) {
            addon.languages.AddData(language, -1);
        }
    }
}

KW_AddonUpdate_Message readMessage(KW_VersionLine const& line, long& index, KW_List<KW_String>& lines) {
    KW_AddonUpdate_Message message;
    message.firstDate = stringOf(KW_VersionDate(line.Token(2)));
    message.secondDate = stringOf(KW_VersionDate(line.Token(3)));
    message.text = KW_AddonUpdate_ReadText(index, lines);
    int const url = message.text.IndexOf(KW_AddonUpdate_SystemText("http://"), 0);
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

KW_AddonUpdate_Addon& KW_AddonUpdate_Addon::operator=(KW_AddonUpdate_Addon const& other) {
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
    return stringOf(KW_VersionDate(KW_UnitsOf(date)));
}

void KW_AddonUpdate_SplitAddonVersion(KW_String line, KW_AddonUpdate_Addon& addon) {
    if (line.length == 0) {
        addon = KW_AddonUpdate_Addon();
        return;
    }
    KW_List<KW_String> tokens;
    line.SplitBySpaces(tokens);
    addon.name = token(tokens, 1);
    addon.versionText = token(tokens, 2);

    KW_List<KW_String> numbers;
    addon.versionText.Split(numbers, '.');
    for (long i = 0; i < kVersionNumbers; ++i) {
        addon.versionNumbers[i] =
            i < numbers.count ? static_cast<short>(KW_AddonUpdate_ToLong(numbers[i])) : short{0};
    }
    addon.hostVersion = hostVersionOf(token(tokens, 3));
    addon.dateText = token(tokens, 4);
    addon.date = KW_AddonUpdate_FormatDate(addon.dateText);

    addon.languages.Reset();
    addon.inSE = true;
    addon.inSuite = true;
    readMarkers(tokens, addon);
}

void KW_AddonUpdate_SplitLibVersion(KW_String line, KW_AddonUpdate_Library& library) {
    KW_List<KW_String> tokens;
    line.SplitBySpaces(tokens);
    library.name = token(tokens, 1);
    library.dateText = token(tokens, 2);
    library.date = KW_AddonUpdate_FormatDate(library.dateText);
    library.inSuite = true;
    for (long i = 2; i < tokens.count; ++i) {
        if (equals(tokens[i], kNoSuite)) library.inSuite = false;
    }
}

KW_String KW_AddonUpdate_ReadText(long& index, KW_List<KW_String>& lines) {
    long const first = ++index;
    unsigned int units = 1;
    for (; index < lines.count && isTextLine(lines[index]); ++index)
        units += lines[index].length;
    long const end = index;
    if (index < lines.count) --index;

    KW_String text;
    text.THIS_Alloc(units, false);
    text.data[0] = 0;
    for (long i = first; i < end; ++i) {
        if (text.length > 0) text.THIS_Append(&kLineFeed, 1);
        KW_String const& line = lines[i];
        if (line.length > kTextMark) text.THIS_Append(line.data + kTextMark, line.length - kTextMark);
    }
    return text;
}

void KW_AddonUpdate_ReadVersions(KW_String const& text, KW_List<KW_AddonUpdate_Message>& messages,
                                 KW_List<KW_AddonUpdate_Addon>& addons,
                                 KW_List<KW_AddonUpdate_Library>& libraries) {
    KW_List<KW_String> lines;
    text.SplitLines(lines, true, true);
    for (long index = 0; index < lines.count; ++index) {
        KW_String const& line = lines[index];
        if (startsWith(line, '*') || isTextLine(line)) continue;
        KW_VersionLine const tokens{KW_UnitsOf(line)};
        if (holdsMessageMark(tokens.Token(1))) {
            messages.AddData(readMessage(tokens, index, lines), -1);
            continue;
        }
        switch (tokens.Kind()) {
            case KW_AddonUpdate_LibraryLine: {
                KW_AddonUpdate_Library library;
                KW_AddonUpdate_SplitLibVersion(line, library);
                library.text = KW_AddonUpdate_ReadText(index, lines);
                libraries.AddData(library, -1);
                break;
            }
            case KW_AddonUpdate_AddonLine: {
                KW_AddonUpdate_Addon addon;
                KW_AddonUpdate_SplitAddonVersion(line, addon);
                addon.text = KW_AddonUpdate_ReadText(index, lines);
                addons.AddData(addon, -1);
                break;
            }
            case KW_AddonUpdate_NoVersionLine:
                break;
        }
    }
}

bool KW_AddonUpdate_GetFileLocation(KW_Location& location) {
    IO::Location folder;
    if (IO::FileSystem::GetSpecialLocation(IO::FileSystem::SuiteSettingsFolder, &folder) != 0) return false;
    location.Set(folder);
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

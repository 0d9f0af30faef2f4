#include "settings/KW_SettingsFile.h"

#include "files/KW_File.h"
#include "foundation/KW_Units.h"
#include "foundation/UnitSearch.h"
#include "platform/StringServices.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

enum class Entry { Complete, CutShort, Fault };

/// Takes the first entry off `rest`; after CutShort there is no other. `entry` is written only for a complete
/// one, `value` is scratch.
Entry takeEntry(KW_Units& rest, KW_Setting& entry, std::vector<unsigned short>& value) {
    if (rest[0] != '$') return Entry::Fault;
    const KW_Units text = rest.subspan(1);
    const std::size_t colon = findUnit(text.data(), text.size(), 0, ':');
    if (colon == text.size() || colon == 0) return Entry::Fault;

    value.clear();
    // Whatever follows the ":" counts as a space.
    KW_Units piece = text.subspan(std::min(colon + 2, text.size()));
    for (;;) {
        KW_Units behind = piece;
        const KW_Units line = KW_TakeLine(behind);
        if (line.size() == piece.size()) return Entry::CutShort;
        const bool goesOn = !behind.empty() && behind[0] == '#';
        const KW_Units kept = goesOn ? piece.first(piece.size() - behind.size()) : line;
        const bool isWhole = !goesOn && value.empty();
        if (!isWhole) value.insert(value.end(), kept.begin(), kept.end());
        if (!goesOn) {
            if (!behind.empty() && behind[0] != '$') return Entry::Fault;
            KW_SetUnits(entry.key, text.first(colon));
            KW_SetUnits(entry.value, isWhole ? line : KW_Units(value));
            rest = behind;
            return Entry::Complete;
        }
        piece = behind.subspan(1);
    }
}

void append(std::string& image, const KW_String& text) {
    const std::size_t start = image.size();
    image.resize(start + text.length);
    const StringServices::Encoded encoded =
        StringServices::encode(GetApplicationTextEncoding(), reinterpret_cast<const char*>(text.data),
                               text.length, '?', image.data() + start, text.length);
    image.resize(start + static_cast<std::size_t>(encoded.bytes));
}

/// Puts "#" behind each line break from `start` on.
void markLineBreaks(std::string& image, std::size_t start) {
    if (image.find('\n', start) == std::string::npos && image.find('\r', start) == std::string::npos) return;
    const std::string value = image.substr(start);
    image.resize(start);
    for (std::size_t i = 0; i < value.size(); ++i) {
        image += value[i];
        const bool firstOfTwo = value[i] == '\r' && i + 1 < value.size() && value[i + 1] == '\n';
        if (value[i] == '\n' || (value[i] == '\r' && !firstOfTwo)) image += '#';
    }
}

/// The file's bytes with their halves in order; false when it is too large or cannot be read.
bool readFile(const KW_Location& location, std::string& text) {
    if (KW_File::ReadWhole(location, text, kKW_SettingsFile_MaxFileSize) != 0) return false;
    KW_SettingsFile_ExchangeHalves(text.data(), text.size());
    return true;
}

/// Whether these bytes, which lose their halves' order, are now the file's content: unlike KW_File::WriteBin
/// also when the new content has to take the place of the old.
bool replaceFile(const KW_Location& location, std::string& text) {
    KW_SettingsFile_ExchangeHalves(text.data(), text.size());
    IO::File file(location, IO::File::Create);
    if (file.Open(IO::File::WriteEmptyMode, IO::ReportAccessDenied) != kNoError) return false;
    const bool written = file.Write(text.data(), text.size(), nullptr) == kNoError;
    return file.Close() == kNoError && written;
}

}  // namespace

void KW_SettingsFile_ExchangeHalves(char* bytes, unsigned long size) {
    for (unsigned long i = 0; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        bytes[i] = static_cast<char>(byte << 4 | byte >> 4);
    }
}

KW_SettingsFile_Result KW_SettingsFile_Parse(const char* bytes, unsigned long size,
                                             KW_List<KW_Setting>& list) {
    // An empty count would mean "up to the terminator".
    const KW_String text(size == 0 ? "" : bytes, static_cast<unsigned int>(size), KW_String::Encoding_System);
    KW_Units rest = KW_UnitsOf(text);
    std::vector<unsigned short> value;
    long count = list.count;
    auto found = Entry::Complete;
    while (found == Entry::Complete && !rest.empty()) {
        if (count == list.count) {
            constexpr long kFirstRoom = 64;
            list.SetSize(std::max(kFirstRoom, count * 2), true);
            if (list.data == nullptr) return KW_SettingsFile_Result::Refused;
        }
        found = takeEntry(rest, list[count], value);
        if (found == Entry::Complete) ++count;
    }
    list.SetSize(count, true);
    if (list.data == nullptr) return KW_SettingsFile_Result::Refused;
    return found == Entry::Fault ? KW_SettingsFile_Result::Malformed : KW_SettingsFile_Result::Read;
}

KW_SettingsFile_Result KW_SettingsFile_Read(const KW_Location& location, KW_List<KW_Setting>& list) {
    list.SetSize(0, false);
    std::string text;
    if (!readFile(location, text)) return KW_SettingsFile_Result::Refused;
    return KW_SettingsFile_Parse(text.data(), text.size(), list);
}

bool KW_SettingsFile_Write(const KW_Location& location, const KW_List<KW_Setting>& list) {
    if (list.data == nullptr) return false;
    std::string image;
    for (long i = 0; i < list.count; ++i) {
        image += '$';
        append(image, list[i].key);
        image += ": ";
        const std::size_t start = image.size();
        append(image, list[i].value);
        markLineBreaks(image, start);
        image += '\n';
    }
    return image.size() <= kKW_SettingsFile_MaxImageSize && replaceFile(location, image);
}

bool KW_SettingsFile_KeepDamaged(const KW_Location& location) {
    std::string text;
    if (!readFile(location, text)) return false;
    if (text.empty()) return true;
    KW_Location copy(location);
    copy += ".damaged";
    return replaceFile(copy, text);
}

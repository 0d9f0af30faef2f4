#include "settings/KW_SettingsFile.h"

#include "files/KW_File.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr auto kEncoding = KW_String::Encoding_System;

// Everything is done with before the next call: one buffer serves all.
char sWorkBuffer[kKW_SettingsFile_MaxImageSize];

void setText(KW_String& text, std::string_view bytes) {
    // A count of 0 would mean "up to the terminator".
    text.Set(bytes.empty() ? "" : bytes.data(), static_cast<unsigned int>(bytes.size()), kEncoding);
}

/// Finds bytes from ever later starts; looks at each byte once.
class ForwardFinder {
public:
    ForwardFinder(std::string_view text, char byte) : text_(text), byte_(byte) {}

    /// The first such byte at or behind `start`, or the text's end.
    std::size_t next(std::size_t start) {
        if (!searched_ || found_ < start) {
            found_ = std::min(text_.find(byte_, start), text_.size());
            searched_ = true;
        }
        return found_;
    }

private:
    std::string_view text_;
    char byte_;
    bool searched_ = false;
    std::size_t found_ = 0;
};

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text), lineFeeds_(text, '\n'), returns_(text, '\r') {}

    bool atEnd() const { return position_ >= text_.size(); }

    enum class Entry { Complete, CutShort, Fault };

    /// The next entry; with CutShort there is no other. `entry` is written only for a complete one.
    Entry next(KW_Setting& entry) {
        if (text_[position_] != '$') return Entry::Fault;
        const std::size_t keyStart = position_ + 1;
        const std::size_t colon = text_.find(':', keyStart);
        if (colon == std::string_view::npos || colon == keyStart) return Entry::Fault;

        continued_.clear();
        std::size_t pieceStart = colon + 2;  // whatever stands behind the ":", it is a blank
        for (;;) {
            const std::size_t lineBreak = std::min(lineFeeds_.next(pieceStart), returns_.next(pieceStart));
            if (lineBreak >= text_.size()) return Entry::CutShort;
            const bool both = text_[lineBreak] == '\r' && text_.substr(lineBreak + 1).starts_with('\n');
            const std::size_t next = lineBreak + (both ? 2 : 1);

            if (next < text_.size() && text_[next] == '#') {
                continued_.append(text_, pieceStart, next - pieceStart);
                pieceStart = next + 1;
            } else if (next >= text_.size() || text_[next] == '$') {
                setText(entry.key, text_.substr(keyStart, colon - keyStart));
                const std::string_view lastPiece = text_.substr(pieceStart, lineBreak - pieceStart);
                setText(entry.value, continued_.empty() ? lastPiece : continued_.append(lastPiece));
                position_ = next;
                return Entry::Complete;
            } else {
                return Entry::Fault;
            }
        }
    }

private:
    std::string_view text_;
    ForwardFinder lineFeeds_;
    ForwardFinder returns_;
    std::size_t position_ = 0;
    std::string continued_;  // pieces of the value so far
};

/// Encoded text up to the terminator.
std::string_view encoded(KW_String const& text, KW_CString& storage) {
    text.ToCStr(storage, kEncoding);
    return storage.data != nullptr ? std::string_view(storage.data, storage.size - 1) : std::string_view();
}

void appendValue(std::string& image, std::string_view value) {
    while (!value.empty()) {
        std::size_t end = value.find_first_of("\r\n");
        if (end == std::string_view::npos) {
            image += value;
            return;
        }
        end += value.substr(end).starts_with("\r\n") ? 2 : 1;
        image += value.substr(0, end);
        image += '#';
        value.remove_prefix(end);
    }
}

/// False when the image would be too large.
bool buildImage(KW_List<KW_Setting> const& list, std::string& image) {
    KW_CString bytes;
    for (long i = 0; i < list.count; ++i) {
        image += '$';
        image += encoded(list[i].key, bytes);
        image += ": ";
        appendValue(image, encoded(list[i].value, bytes));
        image += '\n';
        if (image.size() > kKW_SettingsFile_MaxImageSize) return false;
    }
    return true;
}

/// The file's bytes with their halves in order, in the work buffer. False when it is too large or cannot be
/// read.
bool readFile(KW_Location const& location, std::string_view& text) {
    unsigned long size = 0;
    if (KW_File::ReadBinBounded(location, sWorkBuffer, kKW_SettingsFile_MaxFileSize, &size, nullptr) != 0) {
        return false;
    }
    KW_SettingsFile_ExchangeHalves(sWorkBuffer, size);
    text = std::string_view(sWorkBuffer, size);
    return true;
}

}  // namespace

void KW_SettingsFile_ExchangeHalves(char* bytes, unsigned long size) {
    for (unsigned long i = 0; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        bytes[i] = static_cast<char>(byte << 4 | byte >> 4);
    }
}

bool KW_SettingsFile_Parse(char const* bytes, unsigned long size, KW_List<KW_Setting>& list) {
    const std::string_view text(bytes, size);
    // Room for all entries at once; every one has its "$".
    const long before = list.count;
    const long most = before + std::count(text.begin(), text.end(), '$');
    list.SetSize(most, true);
    if (list.count != most) return false;

    Parser parser(text);
    long count = before;
    auto found = Parser::Entry::Complete;
    while (found == Parser::Entry::Complete && !parser.atEnd()) {
        if (count == most) {  // no "$" is left
            found = Parser::Entry::Fault;
            break;
        }
        found = parser.next(list[count]);
        if (found == Parser::Entry::Complete) ++count;
    }
    list.SetSize(count, true);
    return found != Parser::Entry::Fault;
}

KW_SettingsFile_Result KW_SettingsFile_Read(KW_Location const& location, KW_List<KW_Setting>& list) {
    list.Reset();
    std::string_view text;
    if (!readFile(location, text)) return KW_SettingsFile_Result::Refused;
    return KW_SettingsFile_Parse(text.data(), text.size(), list) ? KW_SettingsFile_Result::Read
                                                                 : KW_SettingsFile_Result::Malformed;
}

bool KW_SettingsFile_Write(KW_Location const& location, KW_List<KW_Setting> const& list) {
    std::string image;
    if (!buildImage(list, image)) return false;
    KW_SettingsFile_ExchangeHalves(image.data(), image.size());
    return KW_File::WriteBin(location, image.data(), static_cast<long>(image.size()), false, true) == 0;
}

bool KW_SettingsFile_KeepDamaged(KW_Location const& location) {
    std::string_view text;
    if (!readFile(location, text)) return false;
    KW_List<KW_Setting> entries;
    if (KW_SettingsFile_Parse(text.data(), text.size(), entries)) return true;
    KW_SettingsFile_ExchangeHalves(sWorkBuffer, text.size());
    KW_Location copy(location);
    copy += ".damaged";
    return KW_File::WriteBin(copy, sWorkBuffer, static_cast<long>(text.size()), false, true) == 0;
}

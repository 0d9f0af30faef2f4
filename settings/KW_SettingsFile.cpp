#include "settings/KW_SettingsFile.h"

#include "files/KW_File.h"
#include "platform/StringServices.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr auto kEncoding = KW_String::Encoding_System;

// Everything is done with before the next call: one buffer of each kind serves all.
char sWorkBuffer[kKW_SettingsFile_MaxImageSize];
unsigned short sUnits[kKW_SettingsFile_MaxImageSize];

/// Decodes into sUnits: Encoding_System has one unit for each byte, and ASCII as its lower half.
void decode(std::string_view bytes) {
    unsigned char all = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        sUnits[i] = byte;
        all |= byte;
    }
    if (all < 0x80) return;

    static const auto upperHalf = [] {
        std::array<unsigned short, 128> units{};
        for (unsigned int i = 0; i < units.size(); ++i) {
            units[i] = KW_String::CharToKW_Char(static_cast<char>(0x80 + i), kEncoding);
        }
        return units;
    }();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (sUnits[i] >= 0x80) sUnits[i] = upperHalf[sUnits[i] - 0x80u];
    }
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

/// Takes the entries one by one. The structure is read from the bytes, where finding is fast, the texts come
/// from the decoded whole: in an 8-bit encoding unit i is byte i.
class Parser {
public:
    Parser(std::string_view bytes, const unsigned short* units)
        : bytes_(bytes), units_(units), lineFeeds_(bytes, '\n'), returns_(bytes, '\r') {}

    bool atEnd() const { return position_ >= bytes_.size(); }

    enum class Entry { Complete, CutShort, Fault };

    /// The next entry; with CutShort there is no other. `entry` is written only for a complete one.
    Entry next(KW_Setting& entry) {
        if (bytes_[position_] != '$') return Entry::Fault;
        const std::size_t keyStart = position_ + 1;
        const std::size_t colon = bytes_.find(':', keyStart);
        if (colon == std::string_view::npos || colon == keyStart) return Entry::Fault;

        continued_.clear();
        std::size_t pieceStart = colon + 2;  // whatever stands behind the ":", it is a blank
        for (;;) {
            const std::size_t lineBreak = std::min(lineFeeds_.next(pieceStart), returns_.next(pieceStart));
            if (lineBreak >= bytes_.size()) return Entry::CutShort;
            const bool both = bytes_[lineBreak] == '\r' && bytes_.substr(lineBreak + 1).starts_with('\n');
            const std::size_t next = lineBreak + (both ? 2 : 1);

            if (next < bytes_.size() && bytes_[next] == '#') {
                appendPiece(pieceStart, next);
                pieceStart = next + 1;
            } else if (next >= bytes_.size() || bytes_[next] == '$') {
                take(entry.key, keyStart, colon);
                if (continued_.empty()) {
                    take(entry.value, pieceStart, lineBreak);
                } else {
                    appendPiece(pieceStart, lineBreak);
                    entry.value.THIS_Append(continued_.data(), static_cast<unsigned int>(continued_.size()));
                }
                position_ = next;
                return Entry::Complete;
            } else {
                return Entry::Fault;
            }
        }
    }

private:
    /// `target` is null.
    void take(KW_String& target, std::size_t from, std::size_t to) const {
        if (from == to) target.Set("", 0, kEncoding);
        target.THIS_Append(units_ + from, static_cast<unsigned int>(to - from));
    }

    void appendPiece(std::size_t from, std::size_t to) {
        continued_.insert(continued_.end(), units_ + from, units_ + to);
    }

    std::string_view bytes_;
    const unsigned short* units_;
    ForwardFinder lineFeeds_;
    ForwardFinder returns_;
    std::size_t position_ = 0;
    std::vector<unsigned short> continued_;  // pieces of the value so far
};

/// Builds a file image in the work buffer. The operations answer false when it would become too large.
class Image {
public:
    unsigned long size() const { return size_; }

    bool putByte(char byte) {
        if (size_ == kKW_SettingsFile_MaxImageSize) return false;
        sWorkBuffer[size_++] = byte;
        return true;
    }

    bool putText(const KW_String& text) {
        const StringServices::Encoded encoded = StringServices::encode(
            GetApplicationTextEncoding(), reinterpret_cast<const char*>(text.data), text.length, '?',
            sWorkBuffer + size_, static_cast<long>(kKW_SettingsFile_MaxImageSize - size_));
        size_ += static_cast<unsigned long>(encoded.bytes);
        return encoded.units == static_cast<long>(text.length);
    }

    bool putValue(const KW_String& value) {
        const unsigned long start = size_;
        if (!putText(value)) return false;
        const std::string_view plain(sWorkBuffer + start, size_ - start);
        const bool oneLine =
            plain.find('\n') == std::string_view::npos && plain.find('\r') == std::string_view::npos;
        return oneLine || putLines(std::string(plain), start);
    }

    bool putEntry(const KW_Setting& entry) {
        return putByte('$') && putText(entry.key) && putByte(':') && putByte(' ') && putValue(entry.value) &&
               putByte('\n');
    }

private:
    /// Puts the value at `start` with "#" behind each line break.
    bool putLines(const std::string& value, unsigned long start) {
        size_ = start;
        for (std::size_t i = 0; i < value.size(); ++i) {
            const bool firstOfTwo = value[i] == '\r' && i + 1 < value.size() && value[i + 1] == '\n';
            const bool endsLine = value[i] == '\n' || (value[i] == '\r' && !firstOfTwo);
            if (!putByte(value[i]) || (endsLine && !putByte('#'))) return false;
        }
        return true;
    }

    unsigned long size_ = 0;
};

/// The file's bytes with their halves in order, in the work buffer. False when it is too large or cannot be
/// read.
bool readFile(const KW_Location& location, std::string_view& text) {
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

bool KW_SettingsFile_Parse(const char* bytes, unsigned long size, KW_List<KW_Setting>& list) {
    if (size == 0) return true;
    if (size > kKW_SettingsFile_MaxImageSize) return false;
    decode(std::string_view(bytes, size));
    Parser parser(std::string_view(bytes, size), sUnits);
    long count = list.count;
    auto found = Parser::Entry::Complete;
    while (found == Parser::Entry::Complete && !parser.atEnd()) {
        if (count == list.count) {
            constexpr long kFirstRoom = 64;
            const long room = std::max(kFirstRoom, count * 2);
            list.SetSize(room, true);
            if (list.count != room) return false;
        }
        found = parser.next(list[count]);
        if (found == Parser::Entry::Complete) ++count;
    }
    list.SetSize(count, true);
    return found != Parser::Entry::Fault;
}

KW_SettingsFile_Result KW_SettingsFile_Read(const KW_Location& location, KW_List<KW_Setting>& list) {
    list.Reset();
    std::string_view text;
    if (!readFile(location, text)) return KW_SettingsFile_Result::Refused;
    return KW_SettingsFile_Parse(text.data(), text.size(), list) ? KW_SettingsFile_Result::Read
                                                                 : KW_SettingsFile_Result::Malformed;
}

bool KW_SettingsFile_Write(const KW_Location& location, const KW_List<KW_Setting>& list) {
    Image image;
    for (long i = 0; i < list.count; ++i) {
        if (!image.putEntry(list[i])) return false;
    }
    KW_SettingsFile_ExchangeHalves(sWorkBuffer, image.size());
    return KW_File::WriteBin(location, sWorkBuffer, static_cast<long>(image.size()), false, true) == 0;
}

bool KW_SettingsFile_KeepDamaged(const KW_Location& location) {
    std::string_view text;
    if (!readFile(location, text)) return false;
    KW_List<KW_Setting> entries;
    if (KW_SettingsFile_Parse(text.data(), text.size(), entries)) return true;
    KW_SettingsFile_ExchangeHalves(sWorkBuffer, text.size());
    KW_Location copy(location);
    copy += ".damaged";
    return KW_File::WriteBin(copy, sWorkBuffer, static_cast<long>(text.size()), false, true) == 0;
}

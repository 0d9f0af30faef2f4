#include "platform/src/files/PosixPath.h"

#include "platform/FileSystem.h"

#include <unicode/utf16.h>
#include <unicode/utf8.h>
#include <cerrno>
#include <vector>

namespace platform {

namespace {

constexpr UChar32 kEscapeFirst = 0xDC80;
constexpr UChar32 kEscapeLast = 0xDCFF;

}  // namespace

GS::UniString textOfPosixBytes(std::string_view bytes) {
    // A name fits in the small buffer; UTF-16 never has more units than UTF-8 has bytes.
    unsigned short small[256];
    std::vector<unsigned short> large;
    unsigned short* units = small;
    if (bytes.size() > std::size(small)) {
        large.resize(bytes.size());
        units = large.data();
    }
    unsigned int count = 0;
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t first = i;
        UChar32 character = 0;
        U8_NEXT(bytes, i, bytes.size(), character);
        if (character < 0) {
            character = 0xDC00 | static_cast<unsigned char>(bytes[first]);
            i = first + 1;
        }
        U16_APPEND_UNSAFE(units, count, character);
    }
    return GS::UniString(units, count);
}

bool posixBytesOfText(const GS::UniString& text, std::string& bytes) {
    const unsigned short* units = text.ToUStr();
    const unsigned int count = text.GetLength();
    bytes.clear();
    bytes.reserve(count);
    for (unsigned int i = 0; i < count;) {
        UChar32 character = 0;
        U16_NEXT(units, i, count, character);
        char encoded[U8_MAX_LENGTH];
        unsigned int length = 0;
        if (character >= kEscapeFirst && character <= kEscapeLast) {
            encoded[length++] = static_cast<char>(character & 0xFF);
        } else if (character == 0 || U_IS_SURROGATE(character)) {
            return false;
        } else {
            U8_APPEND_UNSAFE(encoded, length, character);
        }
        bytes.append(encoded, length);
    }
    return true;
}

GSErrCode errorOfErrno(int number) {
    const auto isOneOf = [number](auto... numbers) { return ((number == numbers) || ...); };
    if (number == 0) return kNoError;
    if (isOneOf(ENOENT, ENOTDIR)) return IO::kErrNotFound;
    if (isOneOf(EACCES, EPERM, EROFS)) return IO::kErrAccessDenied;
    if (isOneOf(ENOSPC, EDQUOT, EFBIG)) return IO::kErrNoSpace;
    if (isOneOf(EBUSY, ETXTBSY, EAGAIN, ENOMEM, EMFILE, ENFILE)) return IO::kErrBusy;
    if (isOneOf(ENAMETOOLONG, ELOOP, EILSEQ)) return IO::kErrBadLocation;
    if (isOneOf(EISDIR, ENXIO)) return IO::kErrWrongType;
    return IO::kErrOther;
}

}  // namespace platform

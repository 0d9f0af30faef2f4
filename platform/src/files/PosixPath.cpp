#include "platform/src/files/PosixPath.h"

#include "platform/FileSystem.h"

#include <cerrno>
#include <vector>

namespace platform {

namespace {

constexpr unsigned short kEscapeFirst = 0xDC80;
constexpr unsigned short kEscapeLast = 0xDCFF;

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

/// Length of the valid UTF-8 sequence at the beginning of `bytes`, its scalar value in `value`; 0 for none.
std::size_t sequenceAt(std::string_view bytes, char32_t& value) {
    const auto at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = at(0);
    if (lead < 0x80) {
        value = lead;
        return 1;
    }
    const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || bytes.size() < length) return 0;
    value = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(at(i))) return 0;
        value = value << 6 | (at(i) & 0x3Fu);
    }
    const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    const bool surrogate = value >= 0xD800 && value < 0xE000;
    return overlong || surrogate || value > 0x10FFFF ? 0 : length;
}

void appendScalar(char32_t value, std::string& bytes) {
    const auto put = [&bytes](char32_t byte) { bytes.push_back(static_cast<char>(byte)); };
    if (value < 0x80) {
        put(value);
        return;
    }
    if (value < 0x800) {
        put(0xC0 | value >> 6);
    } else {
        if (value < 0x10000) {
            put(0xE0 | value >> 12);
        } else {
            put(0xF0 | value >> 18);
            put(0x80 | (value >> 12 & 0x3F));
        }
        put(0x80 | (value >> 6 & 0x3F));
    }
    put(0x80 | (value & 0x3F));
}

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
    while (!bytes.empty()) {
        char32_t value = 0;
        std::size_t length = sequenceAt(bytes, value);
        if (length == 0) {
            units[count++] = static_cast<unsigned short>(0xDC00 | static_cast<unsigned char>(bytes[0]));
            length = 1;
        } else if (value < 0x10000) {
            units[count++] = static_cast<unsigned short>(value);
        } else {
            units[count++] = static_cast<unsigned short>(0xD800 + ((value - 0x10000) >> 10));
            units[count++] = static_cast<unsigned short>(0xDC00 | (value & 0x3FF));
        }
        bytes.remove_prefix(length);
    }
    return GS::UniString(units, count);
}

bool posixBytesOfText(const GS::UniString& text, std::string& bytes) {
    const unsigned short* units = text.ToUStr();
    const unsigned int count = text.GetLength();
    bytes.clear();
    bytes.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        const unsigned short unit = units[i];
        const bool high = unit >= 0xD800 && unit < 0xDC00;
        const bool lowFollows = i + 1 < count && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
        if (high && lowFollows) {
            appendScalar(0x10000 + ((unit - 0xD800u) << 10) + (units[i + 1] - 0xDC00u), bytes);
            ++i;
        } else if (unit >= kEscapeFirst && unit <= kEscapeLast) {
            bytes.push_back(static_cast<char>(unit & 0xFF));
        } else if (unit == 0 || (unit >= 0xD800 && unit < 0xE000)) {
            return false;
        } else {
            appendScalar(unit, bytes);
        }
    }
    return true;
}

GSErrCode errorOfErrno(int number) {
    switch (number) {
        case 0:
            return kNoError;
        case ENOENT:
        case ENOTDIR:
            return IO::kErrNotFound;
        case EACCES:
        case EPERM:
        case EROFS:
            return IO::kErrAccessDenied;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return IO::kErrNoSpace;
        case EBUSY:
        case ETXTBSY:
        case EAGAIN:
        case ENOMEM:
        case EMFILE:
        case ENFILE:
            return IO::kErrBusy;
        case ENAMETOOLONG:
        case ELOOP:
        case EILSEQ:
            return IO::kErrBadLocation;
        case EISDIR:
        case ENXIO:
            return IO::kErrWrongType;
        default:
            return IO::kErrOther;
    }
}

}  // namespace platform

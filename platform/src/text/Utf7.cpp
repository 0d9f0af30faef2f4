#include "platform/src/text/Utf7.h"

#include "platform/src/text/Units.h"

#include <unicode/ucnv.h>
#include <limits>
#include <memory>
#include <string>

namespace text {

namespace {

// Opened at the first use and kept. Null when ICU's data lacks the encoding.
UConverter* converter() {
    static const std::unique_ptr<UConverter, void (*)(UConverter*)> kept = [] {
        UErrorCode status = U_ZERO_ERROR;
        UConverter* opened = ucnv_open("UTF-7", &status);
        ucnv_setToUCallBack(opened, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
        return std::unique_ptr<UConverter, void (*)(UConverter*)>(opened, ucnv_close);
    }();
    return kept.get();
}

bool tooLong(long count) {
    return count > std::numeric_limits<std::int32_t>::max() / 16;
}

long toUnits(const char* bytes, long byteCount, char16_t* units, long room) {
    if (tooLong(byteCount) || converter() == nullptr) return -1;
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length = ucnv_toUChars(converter(), units, static_cast<std::int32_t>(room), bytes,
                                              static_cast<std::int32_t>(byteCount), &status);
    return U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR ? length : -1;
}

// The prefix of the units that UTF-7 can hold, with the loss byte in place of what it cannot.
std::u16string encodablePrefix(const char* units, long unitCount, char lossByte) {
    std::u16string prefix;
    prefix.reserve(static_cast<std::size_t>(unitCount));
    for (long i = 0; i < unitCount;) {
        const Character c = characterAt(units, unitCount, i);
        if (c.units == 1 && isSurrogate(c.codePoint)) {
            if (lossByte == 0) break;
            prefix.push_back(static_cast<unsigned char>(lossByte));
        } else {
            for (int k = 0; k < c.units; ++k)
                prefix.push_back(unitAt(units, i + k));
        }
        i += c.units;
    }
    return prefix;
}

std::string toBytes(const std::u16string& units) {
    std::string bytes(units.size() * 8 + 8, '\0');
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t length =
        ucnv_fromUChars(converter(), bytes.data(), static_cast<std::int32_t>(bytes.size()), units.data(),
                        static_cast<std::int32_t>(units.size()), &status);
    bytes.resize(U_SUCCESS(status) ? static_cast<std::size_t>(length) : 0);
    return bytes;
}

}  // namespace

long utf7Decode(const char* bytes, long byteCount, char* units) {
    const long length = toUnits(bytes, byteCount, nullptr, 0);
    if (length <= 0) return length;
    std::u16string decoded(static_cast<std::size_t>(length), u'\0');
    toUnits(bytes, byteCount, decoded.data(), length);
    std::memcpy(units, decoded.data(), decoded.size() * 2);
    return length;
}

StringServices::Encoded utf7Encode(const char* units, long unitCount, char lossByte, char* target,
                                   long targetSize) {
    if (tooLong(unitCount) || converter() == nullptr) return {0, 0};
    std::u16string prefix = encodablePrefix(units, unitCount, lossByte);
    std::string bytes = toBytes(prefix);
    // The encoding has states, so a shorter text has to be encoded anew to know its size.
    while (target != nullptr && static_cast<long>(bytes.size()) > targetSize) {
        const std::size_t tooMany = bytes.size() - static_cast<std::size_t>(targetSize);
        std::size_t kept = prefix.size() - std::min(prefix.size(), std::max<std::size_t>(1, tooMany / 8));
        if (kept > 0 && (prefix[kept - 1] & 0xFC00) == 0xD800) --kept;
        prefix.resize(kept);
        bytes = toBytes(prefix);
    }
    if (target != nullptr) std::memcpy(target, bytes.data(), bytes.size());
    return {static_cast<long>(prefix.size()), static_cast<long>(bytes.size())};
}

}  // namespace text

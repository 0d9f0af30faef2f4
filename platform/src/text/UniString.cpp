#include "platform/UniString.h"

#include <unicode/ustring.h>

namespace GS {

UniString::UniString(const unsigned short* units) {
    if (units == nullptr) return;
    unsigned int count = 0;
    while (units[count] != 0)
        ++count;
    *this = UniString(units, count);
}

UniString::UniString(const unsigned short* units, unsigned int count) {
    if (units == nullptr || count == 0) return;
    units_.reserve(count + std::size_t{1});
    units_.assign(units, units + count);
    units_.push_back(0);
}

const unsigned short* UniString::ToUStr() const {
    static const unsigned short kEmpty = 0;
    return units_.empty() ? &kEmpty : units_.data();
}

UniString UniStringFromUtf8(const std::string& utf8) {
    std::u16string units(utf8.size(), u'\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8WithSub(units.data(), static_cast<int32_t>(units.size()), &length, utf8.data(),
                         static_cast<int32_t>(utf8.size()), 0xFFFD, nullptr, &status);
    const std::vector<unsigned short> copy(units.begin(), units.begin() + length);
    return UniString(copy.data(), static_cast<unsigned int>(copy.size()));
}

std::string UniStringToUtf8(const UniString& text) {
    const std::u16string units(text.ToUStr(), text.ToUStr() + text.GetLength());
    std::string utf8(units.size() * 3, '\0');
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8WithSub(utf8.data(), static_cast<int32_t>(utf8.size()), &length, units.data(),
                       static_cast<int32_t>(units.size()), 0xFFFD, nullptr, &status);
    utf8.resize(static_cast<std::size_t>(length));
    return utf8;
}

}  // namespace GS

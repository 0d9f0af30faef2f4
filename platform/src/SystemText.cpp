#include "platform/src/SystemText.h"

#include "platform/StringServices.h"

#include <algorithm>
#include <vector>

namespace platform {

GS::UniString uniStringFromSystemText(std::string_view text) {
    const unsigned int encoding = GetApplicationTextEncoding();
    const auto size = static_cast<long>(text.size());
    const long room = StringServices::decodedRoom(encoding, size);
    std::vector<unsigned short> units(static_cast<std::size_t>(room));
    const long count =
        StringServices::decode(encoding, text.data(), size, reinterpret_cast<char*>(units.data()));
    if (count <= 0) return {};
    return GS::UniString(units.data(), static_cast<unsigned int>(count));
}

GS::UniString uniStringFromSystemText(const char* text) {
    return uniStringFromSystemText(std::string_view(text != nullptr ? text : ""));
}

}  // namespace platform

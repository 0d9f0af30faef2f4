#include "platform/src/text/SystemText.h"

#include "platform/StringServices.h"

#include <memory>

namespace platform {

GS::UniString uniStringFromSystemText(std::string_view text) {
    const StringServices::Decoded decoded =
        StringServices::decode(GetApplicationTextEncoding(), text.data(), static_cast<long>(text.size()));
    const std::unique_ptr<unsigned short[]> owned(decoded.units);
    if (decoded.count == 0) return {};
    return GS::UniString(decoded.units, static_cast<unsigned int>(decoded.count));
}

GS::UniString uniStringFromSystemText(const char* text) {
    return uniStringFromSystemText(std::string_view(text != nullptr ? text : ""));
}

}  // namespace platform

#include "platform/CFBase.h"

#include "platform/src/CFObjects.h"
#include "platform/StringServices.h"
#include "platform/UniString.h"

#include <cstring>
#include <string>

struct CFBoolean {};

namespace {
const CFBoolean kTrue;
}

const CFBooleanRef kCFBooleanTrue = &kTrue;

CFStringEncoding CFStringGetSystemEncoding() {
    return GetApplicationTextEncoding();
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* bytes, CFStringEncoding encoding) {
    if (bytes == nullptr) return nullptr;
    const auto byteCount = static_cast<long>(std::strlen(bytes));
    const long unitCount = StringServices::decodedLength(encoding, bytes, byteCount);
    if (unitCount < 0) return nullptr;
    std::u16string units(static_cast<std::size_t>(unitCount), u'\0');
    StringServices::decode(encoding, bytes, byteCount, reinterpret_cast<char*>(units.data()));
    const std::vector<unsigned short> copy(units.begin(), units.end());
    return new CFString{
        GS::UniStringToUtf8(GS::UniString(copy.data(), static_cast<unsigned int>(copy.size())))};
}

void CFRelease(CFStringRef string) {
    delete string;
}

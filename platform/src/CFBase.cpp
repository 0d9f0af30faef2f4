#include "platform/CFBase.h"

#include "platform/src/CFObjects.h"
#include "platform/StringServices.h"
#include "platform/UniString.h"

#include <cstring>
#include <string>
#include <vector>

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
    const long room = StringServices::decodedRoom(encoding, byteCount);
    std::vector<unsigned short> units(static_cast<std::size_t>(room));
    const long count =
        StringServices::decode(encoding, bytes, byteCount, reinterpret_cast<char*>(units.data()));
    if (count < 0) return nullptr;
    return new CFString{GS::UniStringToUtf8(GS::UniString(units.data(), static_cast<unsigned int>(count)))};
}

void CFRelease(CFStringRef string) {
    delete string;
}

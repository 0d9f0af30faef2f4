#include "platform/CFBase.h"

#include "platform/src/http/CFObjects.h"
#include "platform/StringServices.h"
#include "platform/UniString.h"

#include <cstring>
#include <memory>
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
    const StringServices::Decoded text =
        StringServices::decode(encoding, bytes, static_cast<long>(std::strlen(bytes)));
    if (text.units == nullptr) return nullptr;
    const std::unique_ptr<unsigned short[]> owned(text.units);
    return new CFString{
        GS::UniStringToUtf8(GS::UniString(text.units, static_cast<unsigned int>(text.count)))};
}

void CFRelease(CFStringRef string) {
    delete string;
}

// Documents, folders and web pages in the programs that the desktop associates with them.

#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "library/KW_General.h"
#include "platform/Launching.h"

#include <cstring>

namespace {

constexpr unsigned int kServiceSignature = 0x20202020;
constexpr unsigned int kMaxAddressBytes = 255;

}  // namespace

void KW_General_LaunchDoc(const KW_Location& path) {
    const KW_CString bytes = path.Replace(':', '/').ToCStr(KW_String::Encoding_System);
    if (bytes.data != nullptr) OpenDocument(bytes.data);
}

bool KW_General::OpenFolderByLoc(KW_Location& folder) {
    if (!folder.IsFolder()) return false;
    KW_General_LaunchDoc(KW_Location(folder.GetPOSIXPath()));
    return true;
}

bool KW_General::LaunchDocByLoc(const KW_Location& file) {
    if (!file.IsFile()) return false;
    KW_General_LaunchDoc(KW_Location(file.GetPOSIXPath()));
    return true;
}

bool KW_General::LaunchDocByPath(const KW_String& path) {
    if (!KW_Location(path).IsFile()) return false;
    KW_Location unchanged;
    static_cast<KW_String&>(unchanged) = path;
    KW_General_LaunchDoc(unchanged);
    return true;
}

bool KW_General::LaunchURLByPath(const KW_String& address) {
    const KW_CString bytes = address.ToCStr(KW_String::Encoding_System);
    if (bytes.data == nullptr || bytes.size - 1 > kMaxAddressBytes) return false;

    unsigned char text[1 + kMaxAddressBytes];  // length-prefixed, as the service's clients keep it
    text[0] = static_cast<unsigned char>(bytes.size - 1);
    std::memcpy(text + 1, bytes.data, text[0]);

    ICInstance service = 0;
    if (ICStart(&service, kServiceSignature) != 0) return false;
    const unsigned char noHint[] = {0};
    long selectionStart = 0;
    long selectionEnd = text[0];
    const int error = ICLaunchURL(service, noHint, reinterpret_cast<const char*>(text + 1), text[0],
                                  &selectionStart, &selectionEnd);
    ICStop(service);
    return error == 0;
}

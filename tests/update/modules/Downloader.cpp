// A module with the framework in it, to be unloaded while it downloads.

#include "files/KW_Location.h"
#include "foundation/KW_String.h"
#include "library/KW_General.h"
#include "platform/HostInterface.h"

// Stands for the bridge into a host, which locations refer to and downloads never ask.
GSErrCode ACAPI_GetOwnLocation(IO::Location&) {
    return kAPIErrNoOwnLocation;
}

extern "C" __attribute__((visibility("default"))) bool startDownload(const char* url, const char* path,
                                                                     int* chunks) {
    const auto count = [](KW_URL_Message message, double, void* userData) {
        if (message == KW_URL_Progress) ++*static_cast<int*>(userData);
        if (message == KW_URL_Failed || message == KW_URL_Finished) *static_cast<int*>(userData) = -1;
        return 0;
    };
    return KW_General::URLDownload(KW_String(url, KW_String::Encoding_System),
                                   KW_Location(KW_String(path, KW_String::Encoding_UTF8)), count, chunks);
}

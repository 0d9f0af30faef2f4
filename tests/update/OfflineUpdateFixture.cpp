#include "tests/update/OfflineUpdateFixture.h"

/// Stands in for the download of the framework, which the linker then leaves out.
bool KW_General::URLDownload(const KW_String& url, const KW_Location& destination, KW_URL_CallBack callBack,
                             void* userData) {
    EXPECT_EQ(callBack, &KW_AddonUpdate_UpdateCallBack);
    if (OfflineUpdateFixture::downloadStarts_)
        OfflineUpdateFixture::downloads_.push_back({utf8(url), utf8(destination), userData});
    return OfflineUpdateFixture::downloadStarts_;
}

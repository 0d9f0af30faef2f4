#include "tests/update/OfflineUpdateFixture.h"

std::vector<OfflineUpdateFixture::Download> OfflineUpdateFixture::downloads_;
bool OfflineUpdateFixture::downloadStarts_ = true;

/// Stands in for the download of the framework, which the linker then leaves out.
bool KW_General::URLDownload(const KW_String& url, const KW_Location& destination, KW_URL_CallBack callBack,
                             void* userData) {
    EXPECT_EQ(callBack, &KW_AddonUpdate_UpdateCallBack);
    if (!OfflineUpdateFixture::downloadStarts_) return false;
    OfflineUpdateFixture::downloads_.push_back({utf8(url), utf8(destination), userData});
    return true;
}

OfflineUpdateFixture::OfflineUpdateFixture() {
    downloads_.clear();
    downloadStarts_ = true;
}

void OfflineUpdateFixture::finish(const std::string& bytes) {
    EXPECT_EQ(message(KW_URL_Opened), 0);
    folder_.write("__updcf__.tmp", bytes);
    message(KW_URL_Progress);
    message(KW_URL_Finished);
}

#pragma once

#include "tests/update/UpdateFixture.h"

/// Downloads are not made but written down, and the test plays their messages.
class OfflineUpdateFixture : public UpdateFixture {
protected:
    OfflineUpdateFixture() {
        downloads_.clear();
        downloadStarts_ = true;
    }

    struct Download {
        std::string url;
        std::string destination;
        void* userData;
    };
    static inline std::vector<Download> downloads_;
    static inline bool downloadStarts_ = true;  ///< whether a download can be started

    static int message(KW_URL_Message message) {
        return KW_AddonUpdate_UpdateCallBack(message, message == KW_URL_Progress ? 0.5 : 0.0, nullptr);
    }
    /// The messages of a whole download, with `bytes` in its file.
    void finish(const std::string& bytes) {
        EXPECT_EQ(message(KW_URL_Opened), 0);
        folder_.write("__updcf__.tmp", bytes);
        message(KW_URL_Progress);
        message(KW_URL_Finished);
    }

    friend class KW_General;
};

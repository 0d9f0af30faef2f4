#pragma once

#include "tests/update/UpdateFixture.h"

/// Downloads are not made but written down, and the test plays their messages.
class OfflineUpdateFixture : public UpdateFixture {
protected:
    OfflineUpdateFixture();

    struct Download {
        std::string url;
        std::string destination;
        void* userData;
    };
    static std::vector<Download> downloads_;
    static bool downloadStarts_;  ///< whether a download can be started

    static int message(KW_URL_Message message) {
        return KW_AddonUpdate_UpdateCallBack(message, message == KW_URL_Progress ? 0.5 : 0.0, nullptr);
    }
    /// The messages of a whole download, with `bytes` in its file.
    void finish(const std::string& bytes);

    friend class KW_General;
};

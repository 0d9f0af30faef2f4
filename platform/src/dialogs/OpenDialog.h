#pragma once

#include "platform/host/DialogControl.h"

#include <set>

namespace platform {

struct OpenDialog {
    DialogState state;
    DGCallback callback = nullptr;
    DGUserData userData = 0;
    std::set<short> ownTexts;  ///< items whose text the add-on has set; 0 is the title
    int brackets = 0;          ///< DGBeginMoveGrowItems without its end
    bool closing = false;      ///< DG_MSG_CLOSE is being or has been sent
    bool closed = false;
    short closeResult = 0;
};

/// Something that waits for the user and lets nothing behind it be used.
struct ModalFrame {
    std::shared_ptr<OpenDialog> dialog;         ///< set for a dialog
    const AlertState* alert = nullptr;          ///< set for an alert
    const FileChooserState* chooser = nullptr;  ///< set for a chooser
    bool answered = false;                      ///< of alert and chooser
    short answer = 1;
    std::optional<DialogControl::ChosenFile> chosen;
};

}  // namespace platform

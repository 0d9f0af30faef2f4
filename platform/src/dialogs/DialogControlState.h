#pragma once

#include "platform/host/DialogControl.h"

#include <set>

namespace platform {

struct OpenDialog {
    DialogState state;
    DGCallback callback = nullptr;
    DGUserData userData = 0;
    std::set<short> ownTexts;  ///< items whose text the add-on has set; 0 stands for the title
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

struct DialogControl::State {
    Presenter* presenter = nullptr;
    DialogLayouts layouts;
    std::vector<std::shared_ptr<OpenDialog>> dialogs;  ///< foremost first
    std::vector<ModalFrame*> frames;                   ///< topmost last
    short lastModelessID = 0;

    std::shared_ptr<OpenDialog> find(short dialogID) const;
    /// Tells the presenter that something of the dialog differs.
    void touch(OpenDialog& dialog);

    std::shared_ptr<OpenDialog> open(RSResModule dialogModule, short resID, RSResModule imageModule,
                                     DGCallback callback, DGUserData userData, bool modal);
    void close(const std::shared_ptr<OpenDialog>& dialog, short item);
    bool show(const std::shared_ptr<OpenDialog>& dialog);

    short runModal(RSResModule dialogModule, short resID, RSResModule imageModule, DGCallback callback,
                   DGUserData userData);
    short runAlert(const AlertState& alert);
    std::optional<ChosenFile> runChooser(const FileChooserState& chooser);

    void perform(const UserAction& action);

private:
    short newModelessID();
    short send(const std::shared_ptr<OpenDialog>& dialog, short message, short item);
    void raise(const std::shared_ptr<OpenDialog>& dialog);
    template <typename Done>
    void runFrame(ModalFrame& frame, const Done& done);

    void performOnAlert(ModalFrame& frame, const UserAction& action);
    void performOnChooser(ModalFrame& frame, const UserAction& action);
    void performOnDialog(const std::shared_ptr<OpenDialog>& dialog, const UserAction& action);
    void click(const std::shared_ptr<OpenDialog>& dialog, short item);
    void selectRow(const std::shared_ptr<OpenDialog>& dialog, DialogItem& item, short row);
    void closeByUser(const std::shared_ptr<OpenDialog>& dialog);
    void abandon(const std::shared_ptr<OpenDialog>& dialog);
    /// The item, when it can be used and is of this kind; else null, and the presenter knows why.
    DialogItem* usableItem(OpenDialog& dialog, short number, DialogItemKind kind, const char* kindName);
    void refuse(const std::string& reason);
};

/// State of the one dialog manager.
inline DialogControl::State& dialogs() {
    return DialogControl::instance().state();
}

}  // namespace platform

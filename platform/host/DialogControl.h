#pragma once

#include "platform/host/Presenter.h"

#include <functional>
#include <memory>
#include <optional>

namespace platform {

struct OpenDialog;
struct ModalFrame;

/// Where layouts come from, and the texts that an add-on leaves as its resources give them.
struct LayoutSource {
    std::function<const DialogLayout*(RSResModule module, short resID)> layout;
    /// Text of an item, or the dialog's title for item 0. Asked for once, after DG_MSG_INIT.
    std::function<std::string(RSResModule module, short resID, short item)> text;
};

/// The host's side of the dialog manager: presenter in front, open dialogs to look at, the user's actions in.
/// One per process, since add-ons reach it through the DG functions. Main thread only.
class DialogControl {
public:
    struct ChosenFile {
        std::string path;
        int filter = 0;
    };

    static DialogControl& instance();

    /// Null when nobody looks: modal dialogs then do not open, alerts answer 1, choosers are cancelled. The
    /// presenter stays the caller's.
    void setPresenter(Presenter* presenter) { presenter_ = presenter; }
    /// Replaces the place where layouts come from, for tests; nothing restores the add-ons' resources.
    void setLayouts(std::optional<LayoutSource> source);

    /// Carries out what the user did, or tells the presenter why not. While something modal is open, only its
    /// topmost can be acted on; dialog ID 0 means that one.
    void perform(const UserAction& action);

    const DialogState* find(short dialogID) const;
    /// IDs of the open dialogs, the foremost first; those that are not yet shown too.
    std::vector<short> openDialogs() const;
    /// The modal dialog that waits for the user; 0 when none is open or an alert or chooser is above it.
    short activeModalDialog() const;
    const AlertState* activeAlert() const;
    const FileChooserState* activeFileChooser() const;
    /// Whether a modal dialog, an alert or a chooser is open: add-on code is being run just now.
    bool isModal() const { return !frames_.empty(); }

    /// Ends every modeless dialog whose callback is in the image that contains `address`, with
    /// DG_MSG_CLOSE.
    void closeDialogsOfImage(const void* address);

    // ---- What the add-on's functions do (platform/src/dialogs) ----

    std::shared_ptr<OpenDialog> opened(short dialogID) const;
    /// Tells the presenter that something of the dialog differs.
    void touch(const OpenDialog& dialog);
    std::shared_ptr<OpenDialog> open(RSResModule dialogModule, short resID, RSResModule imageModule,
                                     DGCallback callback, DGUserData userData, bool modal);
    void close(const std::shared_ptr<OpenDialog>& dialog, short item);
    bool show(const std::shared_ptr<OpenDialog>& dialog);
    short runModal(RSResModule dialogModule, short resID, RSResModule imageModule, DGCallback callback,
                   DGUserData userData);
    short runAlert(const AlertState& alert);
    /// Nothing when it was cancelled.
    std::optional<ChosenFile> runFileChooser(const FileChooserState& chooser);

private:
    DialogControl();

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

    Presenter* presenter_ = nullptr;
    LayoutSource layouts_;
    std::vector<std::shared_ptr<OpenDialog>> dialogs_;  // foremost first
    std::vector<ModalFrame*> frames_;                   // topmost last
    short lastModelessID_ = 0;
};

}  // namespace platform

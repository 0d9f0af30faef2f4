#pragma once

#include "platform/host/Presenter.h"

#include <functional>
#include <memory>
#include <optional>

namespace platform {

/// Where layouts come from, and the texts that an add-on leaves as its resources give them.
struct DialogLayouts {
    std::function<const DialogResource*(RSResModule module, short resID)> layout;
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
    void setPresenter(Presenter* presenter);
    /// Replaces the place where layouts come from, for tests; nothing restores the add-ons' resources.
    void setLayouts(std::optional<DialogLayouts> layouts);

    /// Carries out what the user did, or tells the presenter why not. While something modal is open, only its
    /// topmost can be acted on; dialog ID 0 stands for it.
    void perform(const UserAction& action);

    const DialogState* find(short dialogID) const;
    /// IDs of the open dialogs, the foremost first; those that are not yet shown too.
    std::vector<short> openDialogs() const;
    /// The modal dialog that waits for the user; 0 when none is open or an alert or chooser lies above it.
    short activeModalDialog() const;
    const AlertState* activeAlert() const;
    const FileChooserState* activeFileChooser() const;
    /// Whether a modal dialog, an alert or a chooser is open: add-on code is being run just now.
    bool isModal() const;

    /// Ends every modeless dialog whose callback lies in the image that contains `address`, with
    /// DG_MSG_CLOSE.
    void closeDialogsOfImage(const void* address);

    /// Runs a chooser; nothing when it was cancelled.
    std::optional<ChosenFile> runFileChooser(const FileChooserState& chooser);

    struct State;
    State& state() { return *state_; }

private:
    DialogControl();
    ~DialogControl();
    std::unique_ptr<State> state_;
};

}  // namespace platform

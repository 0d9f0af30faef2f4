#pragma once

#include "platform/host/DialogState.h"

#include <string>
#include <vector>

/// The face of the dialog manager: what a person sees and does. A console, a desktop and a test have one
/// each.
namespace platform {

/// One message with up to three buttons. A button without text is not there, except the first.
struct AlertState {
    short type = DG_ALERT_PLAIN;
    GS::UniString texts[3];
    GS::UniString buttons[3];

    bool hasButton(short button) const {
        return button == 1 || ((button == 2 || button == 3) && !buttons[button - 1].IsEmpty());
    }
};

/// A file or folder chooser. Paths are POSIX paths in UTF-8.
struct FileChooserState {
    enum class Kind { OpenFile, SaveFile, Folder };
    struct Filter {
        std::string description;
        std::string extension;  ///< without the dot
    };

    Kind kind = Kind::OpenFile;
    std::string title;
    std::string folder;  ///< where to start; empty for the presenter's own choice
    std::string name;    ///< preselected file name; may be empty
    std::vector<Filter> filters;
};

/// What the user did.
struct UserAction {
    enum class Kind {
        None,         ///< nothing; the run loop had something to do, or time went by
        Click,        ///< button `item` of dialog `dialogID`
        SelectRow,    ///< row `row` of list `item`
        DoubleClick,  ///< row `row` of list `item`
        Close,        ///< the close box or Escape; cancels an alert or a chooser
        Answer,       ///< button `item` of the alert
        ChooseFile,   ///< the chooser's `path`, with filter number `filter` (from 0)
        Abandon,      ///< nobody answers any more: whatever waits is cancelled, and closes in any case
    };

    Kind kind = Kind::None;
    short dialogID = 0;
    short item = 0;
    short row = 0;
    std::string path;
    int filter = 0;

    static UserAction click(short dialogID, short item) { return {Kind::Click, dialogID, item, 0, {}, 0}; }
    static UserAction selectRow(short dialogID, short item, short row) {
        return {Kind::SelectRow, dialogID, item, row, {}, 0};
    }
    static UserAction doubleClick(short dialogID, short item, short row) {
        return {Kind::DoubleClick, dialogID, item, row, {}, 0};
    }
    static UserAction close(short dialogID = 0) { return {Kind::Close, dialogID, 0, 0, {}, 0}; }
    static UserAction answer(short button) { return {Kind::Answer, 0, button, 0, {}, 0}; }
    static UserAction chooseFile(std::string path, int filter = 0) {
        return {Kind::ChooseFile, 0, 0, 0, std::move(path), filter};
    }
    static UserAction abandon() { return {Kind::Abandon, 0, 0, 0, {}, 0}; }
};

/// All calls on the main thread. None may throw. The states are the manager's and hold until the next call
/// into it.
class Presenter {
public:
    Presenter() = default;
    virtual ~Presenter() = default;
    Presenter(const Presenter&) = delete;
    Presenter& operator=(const Presenter&) = delete;

    /// The dialog is on the screen from now on, or comes to the front.
    virtual void dialogShown(const DialogState& dialog) = 0;
    /// Something of a dialog on the screen differs. Called for each change, however small: draw later, once.
    virtual void dialogChanged(const DialogState& dialog) = 0;
    /// A dialog that was on the screen has ended. `item` closed it; 0 when no item did.
    virtual void dialogClosed(short dialogID, short item) = 0;

    virtual void alertShown(const AlertState& alert) = 0;
    virtual void alertClosed(short button) = 0;

    virtual void fileChooserShown(const FileChooserState& chooser) = 0;
    virtual void fileChooserClosed() = 0;

    /// Called over and over while a modal dialog, an alert or a chooser is open. Waits until the user has
    /// done something or the main run loop has something to do, dispatches the run loop, and returns the
    /// user's action or UserAction::Kind::None. Must not wait for the user alone: network transfers go on
    /// meanwhile.
    virtual UserAction waitForAction() = 0;

    /// An action could not be carried out and changed nothing; `reason` is one line for the user.
    virtual void refused(const std::string& reason) = 0;
};

}  // namespace platform

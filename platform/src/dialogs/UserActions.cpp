#include "platform/src/dialogs/OpenDialog.h"

namespace platform {

namespace {

constexpr short kOkItem = 1;
constexpr short kCancelItem = 2;

std::string dialogName(const OpenDialog& dialog) {
    return "dialog " + std::to_string(dialog.state.id);
}

/// The item that the close box of a modal dialog clicks; null when the dialog has neither.
const DialogItem* closingItem(const OpenDialog& dialog) {
    const DialogItem* const cancel = dialog.state.find(kCancelItem);
    return cancel != nullptr ? cancel : dialog.state.find(kOkItem);
}

bool hasFilter(const FileChooserState& chooser, int filter) {
    return filter >= 0 && static_cast<std::size_t>(filter) < chooser.filters.size();
}

}  // namespace

void DialogControl::refuse(const std::string& reason) {
    if (presenter_ != nullptr) presenter_->refused(reason);
}

void DialogControl::perform(const UserAction& action) {
    if (action.kind == UserAction::Kind::None) return;
    ModalFrame* const top = frames_.empty() ? nullptr : frames_.back();
    if (top != nullptr && top->alert != nullptr) return performOnAlert(*top, action);
    if (top != nullptr && top->chooser != nullptr) return performOnChooser(*top, action);
    if (action.kind == UserAction::Kind::Answer) return refuse("no alert is open");
    if (action.kind == UserAction::Kind::ChooseFile) return refuse("no file chooser is open");
    if (top != nullptr) {
        if (action.dialogID != 0 && action.dialogID != top->dialog->state.id) {
            const bool open = opened(action.dialogID) != nullptr;
            return refuse(
                "dialog " + std::to_string(action.dialogID) +
                (open ? " waits until " + dialogName(*top->dialog) + " is closed" : " is not open"));
        }
        return performOnDialog(top->dialog, action);
    }
    if (action.kind == UserAction::Kind::Abandon) return;
    for (const auto& dialog : dialogs_) {
        const bool meant = action.dialogID == 0 || action.dialogID == dialog->state.id;
        if (meant && dialog->state.visible) return performOnDialog(std::shared_ptr(dialog), action);
    }
    refuse(action.dialogID == 0 ? "no dialog is open"
                                : "dialog " + std::to_string(action.dialogID) + " is not open");
}

void DialogControl::performOnAlert(ModalFrame& frame, const UserAction& action) {
    switch (action.kind) {
        case UserAction::Kind::Answer:
            if (!frame.alert->hasButton(action.item)) {
                return refuse("the alert has no button " + std::to_string(action.item));
            }
            frame.answer = action.item;
            break;
        case UserAction::Kind::Close:
        case UserAction::Kind::Abandon:
            frame.answer = frame.alert->hasButton(kCancelItem) ? kCancelItem : kOkItem;
            break;
        default:
            return refuse("an alert is waiting for an answer");
    }
    frame.answered = true;
}

void DialogControl::performOnChooser(ModalFrame& frame, const UserAction& action) {
    switch (action.kind) {
        case UserAction::Kind::ChooseFile:
            if (action.path.empty()) return refuse("the path is empty");
            if (action.filter != 0 && !hasFilter(*frame.chooser, action.filter)) {
                return refuse("the chooser has no filter " + std::to_string(action.filter + 1));
            }
            frame.chosen = ChosenFile{action.path, action.filter};
            break;
        case UserAction::Kind::Close:
        case UserAction::Kind::Abandon:
            break;
        default:
            return refuse("a file chooser is waiting for a choice");
    }
    frame.answered = true;
}

void DialogControl::performOnDialog(const std::shared_ptr<OpenDialog>& dialog, const UserAction& action) {
    switch (action.kind) {
        case UserAction::Kind::Click:
            if (usableItem(*dialog, action.item, DialogItemKind::Button, "button") != nullptr)
                click(dialog, action.item);
            return;
        case UserAction::Kind::SelectRow:
        case UserAction::Kind::DoubleClick: {
            DialogItem* const item = usableItem(*dialog, action.item, DialogItemKind::List, "list");
            if (item == nullptr) return;
            if (action.row < 1 || static_cast<std::size_t>(action.row) > item->list.rows.size()) {
                return refuse(dialogName(*dialog) + ": list " + std::to_string(action.item) + " has no row " +
                              std::to_string(action.row));
            }
            selectRow(dialog, *item, action.row);
            if (action.kind == UserAction::Kind::DoubleClick && !dialog->closed) click(dialog, action.item);
            return;
        }
        case UserAction::Kind::Close:
            return closeByUser(dialog);
        case UserAction::Kind::Abandon:
            return abandon(dialog);
        default:
            return;
    }
}

DialogItem* DialogControl::usableItem(OpenDialog& dialog, short number, DialogItemKind kind,
                                      const char* kindName) {
    const std::string name = dialogName(dialog) + ": item " + std::to_string(number);
    DialogItem* const item = dialog.state.find(number);
    if (item == nullptr) {
        refuse(dialogName(dialog) + " has no item " + std::to_string(number));
    } else if (!item->visible) {
        refuse(name + " is hidden");
    } else if (item->kind != kind) {
        refuse(name + " is not a " + kindName);
    } else if (!item->enabled) {
        refuse(name + " is disabled");
    } else {
        return item;
    }
    return nullptr;
}

void DialogControl::click(const std::shared_ptr<OpenDialog>& dialog, short item) {
    const short closes = send(dialog, DG_MSG_CLICK, item);
    if (closes > 0) close(dialog, closes);
}

void DialogControl::selectRow(const std::shared_ptr<OpenDialog>& dialog, DialogItem& item, short row) {
    bool changed = false;
    short number = 0;
    for (ListRow& each : item.list.rows) {
        const bool select = ++number == row;
        changed = changed || each.selected != select;
        each.selected = select;
    }
    if (!changed) return;
    const short itemNumber = item.number;
    touch(*dialog);
    send(dialog, DG_MSG_CHANGE, itemNumber);
}

void DialogControl::closeByUser(const std::shared_ptr<OpenDialog>& dialog) {
    if (!dialog->state.modal) return close(dialog, 0);
    const DialogItem* const item = closingItem(*dialog);
    if (item == nullptr) return close(dialog, kCancelItem);
    if (!item->enabled) {
        return refuse(dialogName(*dialog) + ": item " + std::to_string(item->number) + " is disabled");
    }
    click(dialog, item->number);
}

void DialogControl::abandon(const std::shared_ptr<OpenDialog>& dialog) {
    const DialogItem* const item = closingItem(*dialog);
    const short number = item != nullptr ? item->number : kCancelItem;
    if (item != nullptr && item->enabled) click(dialog, number);
    close(dialog, number);
}

}  // namespace platform

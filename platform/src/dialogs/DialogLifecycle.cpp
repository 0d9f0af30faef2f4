#include "platform/host/CallTrace.h"
#include "platform/src/dialogs/DialogControlState.h"
#include "platform/src/process/Failures.h"

#include <algorithm>

namespace platform {

namespace {

/// Modeless IDs stay clear of the resource IDs that add-ons use, which are the IDs of modal dialogs.
constexpr short kLastModelessID = 29999;

const char* messageName(short message) {
    switch (message) {
        case DG_MSG_INIT:
            return "init";
        case DG_MSG_CLOSE:
            return "close";
        case DG_MSG_CLICK:
            return "click";
        case DG_MSG_CHANGE:
            return "change";
        default:
            return "other";
    }
}

DialogState stateFromLayout(const DialogResource& layout, RSResModule imageModule) {
    DialogState state;
    state.width = layout.width;
    state.height = layout.height;
    state.defaultItem = layout.defaultItem;
    for (const DialogItemResource& each : layout.items) {
        DialogItem item;
        item.number = each.number;
        item.kind = each.kind;
        item.rect = {each.x, each.y, each.width, each.height};
        item.anchors = each.anchors;
        item.bold = each.bold;
        if (each.icon != 0) item.icon = DG::Icon(imageModule, each.icon);
        state.items.push_back(std::move(item));
    }
    return state;
}

/// Gives the title and the items that the add-on left alone the texts of their resources.
void fillTexts(OpenDialog& dialog, const DialogLayouts& layouts) {
    DialogState& state = dialog.state;
    const auto text = [&](short item) {
        return GS::UniStringFromUtf8(layouts.text(state.dialogModule, state.resID, item));
    };
    if (!dialog.ownTexts.contains(0)) state.title = text(0);
    for (DialogItem& item : state.items) {
        if (!dialog.ownTexts.contains(item.number)) item.text = text(item.number);
    }
}

}  // namespace

std::shared_ptr<OpenDialog> DialogControl::State::find(short dialogID) const {
    for (const auto& dialog : dialogs) {
        if (dialog->state.id == dialogID) return dialog;
    }
    return nullptr;
}

void DialogControl::State::touch(OpenDialog& dialog) {
    if (presenter != nullptr && dialog.state.visible && dialog.brackets == 0) {
        presenter->dialogChanged(dialog.state);
    }
}

short DialogControl::State::newModelessID() {
    do {
        lastModelessID =
            lastModelessID >= kLastModelessID ? short{1} : static_cast<short>(lastModelessID + 1);
    } while (find(lastModelessID) != nullptr);
    return lastModelessID;
}

std::shared_ptr<OpenDialog> DialogControl::State::open(RSResModule dialogModule, short resID,
                                                       RSResModule imageModule, DGCallback callback,
                                                       DGUserData userData, bool modal) {
    if (callback == nullptr || (modal && find(resID) != nullptr)) return nullptr;
    const DialogResource* const layout = layouts.layout(dialogModule, resID);
    if (layout == nullptr) return nullptr;

    auto dialog = std::make_shared<OpenDialog>();
    dialog->state = stateFromLayout(*layout, imageModule);
    dialog->state.id = modal ? resID : newModelessID();
    dialog->state.resID = resID;
    dialog->state.dialogModule = dialogModule;
    dialog->state.imageModule = imageModule;
    dialog->state.modal = modal;
    dialog->callback = callback;
    dialog->userData = userData;
    raise(dialog);
    send(dialog, DG_MSG_INIT, 0);
    if (dialog->closed) return nullptr;
    fillTexts(*dialog, layouts);
    return dialog;
}

void DialogControl::State::raise(const std::shared_ptr<OpenDialog>& dialog) {
    std::erase(dialogs, dialog);
    auto place = dialogs.begin();
    if (!dialog->state.modal) {
        place =
            std::find_if(dialogs.begin(), dialogs.end(), [](const auto& each) { return !each->state.modal; });
    }
    dialogs.insert(place, dialog);
}

bool DialogControl::State::show(const std::shared_ptr<OpenDialog>& dialog) {
    raise(dialog);
    dialog->state.visible = true;
    if (presenter != nullptr) presenter->dialogShown(dialog->state);
    return !dialog->closed;
}

void DialogControl::State::close(const std::shared_ptr<OpenDialog>& dialog, short item) {
    if (dialog->closing) return;
    dialog->closing = true;
    dialog->closeResult = send(dialog, DG_MSG_CLOSE, item);
    dialog->closed = true;
    std::erase(dialogs, dialog);
    if (presenter != nullptr && dialog->state.visible) presenter->dialogClosed(dialog->state.id, item);
}

short DialogControl::State::send(const std::shared_ptr<OpenDialog>& dialog, short message, short item) {
    const short id = dialog->state.id;
    CallTrace trace(
        CallDirection::ToAddOn, "DialogCallback",
        [&] {
            return TraceArguments{{"message", messageName(message)}, {"dialog", id}, {"item", item}};
        },
        reinterpret_cast<const void*>(dialog->callback));
    const std::string name =
        "callback of dialog " + std::to_string(id) + " at message " + messageName(message);
    return trace.returning(
        callAddOn(name, dialog->callback, message, id, item, dialog->userData, DGMessageData{0}));
}

template <typename Done>
void DialogControl::State::runFrame(ModalFrame& frame, const Done& done) {
    struct Pushed {
        State& state;
        ModalFrame& frame;
        ~Pushed() {
            state.frames.pop_back();
            if (frame.dialog != nullptr) state.close(frame.dialog, 0);  // something threw
        }
    };
    frames.push_back(&frame);
    const Pushed pushed{*this, frame};
    while (!done())
        perform(presenter != nullptr ? presenter->waitForAction() : UserAction::abandon());
}

short DialogControl::State::runModal(RSResModule dialogModule, short resID, RSResModule imageModule,
                                     DGCallback callback, DGUserData userData) {
    if (presenter == nullptr) return 0;
    ModalFrame frame;
    frame.dialog = open(dialogModule, resID, imageModule, callback, userData, true);
    if (frame.dialog == nullptr) return 0;
    show(frame.dialog);
    runFrame(frame, [&frame] { return frame.dialog->closed; });
    return frame.dialog->closeResult;
}

short DialogControl::State::runAlert(const AlertState& alert) {
    if (presenter == nullptr) return 1;
    ModalFrame frame;
    frame.alert = &alert;
    presenter->alertShown(alert);
    runFrame(frame, [&frame] { return frame.answered; });
    if (presenter != nullptr) presenter->alertClosed(frame.answer);
    return frame.answer;
}

std::optional<DialogControl::ChosenFile> DialogControl::State::runChooser(const FileChooserState& chooser) {
    if (presenter == nullptr) return std::nullopt;
    ModalFrame frame;
    frame.chooser = &chooser;
    presenter->fileChooserShown(chooser);
    runFrame(frame, [&frame] { return frame.answered; });
    if (presenter != nullptr) presenter->fileChooserClosed();
    return frame.chosen;
}

}  // namespace platform

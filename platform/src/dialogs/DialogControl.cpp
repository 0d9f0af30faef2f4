#include "platform/host/CallTrace.h"
#include "platform/host/ImageCleanup.h"
#include "platform/src/dialogs/OpenDialog.h"
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

DialogState stateFromLayout(const DialogLayout& layout, RSResModule imageModule) {
    DialogState state;
    state.width = layout.width;
    state.height = layout.height;
    state.defaultItem = layout.defaultItem;
    for (const LayoutItem& each : layout.items) {
        DialogItem item;
        static_cast<LayoutItem&>(item) = each;
        if (each.iconID != 0) item.icon = DG::Icon(imageModule, each.iconID);
        state.items.push_back(std::move(item));
    }
    return state;
}

/// Gives the title and the items that the add-on left alone the texts of their resources.
void fillTexts(OpenDialog& dialog, const LayoutSource& layouts) {
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

DialogControl& DialogControl::instance() {
    // Never destroyed: add-ons that outlive main still find it.
    static DialogControl* const control = new DialogControl;
    return *control;
}

DialogControl::DialogControl() {
    setLayouts(std::nullopt);
    addImageCleanup([this](const void* image) { closeDialogsOfImage(image); });
}

void DialogControl::setLayouts(std::optional<LayoutSource> source) {
    const auto text = [](RSResModule module, short resID, short item) {
        return dialogItemText(module, resID, item, languageInUse(module));
    };
    layouts_ = source ? std::move(*source) : LayoutSource{findDialogLayout, text};
}

std::shared_ptr<OpenDialog> DialogControl::opened(short dialogID) const {
    for (const auto& dialog : dialogs_) {
        if (dialog->state.id == dialogID) return dialog;
    }
    return nullptr;
}

const DialogState* DialogControl::find(short dialogID) const {
    const auto dialog = opened(dialogID);
    return dialog != nullptr ? &dialog->state : nullptr;
}

std::vector<short> DialogControl::openDialogs() const {
    std::vector<short> ids;
    for (const auto& dialog : dialogs_)
        ids.push_back(dialog->state.id);
    return ids;
}

short DialogControl::activeModalDialog() const {
    return isModal() && frames_.back()->dialog != nullptr ? frames_.back()->dialog->state.id : short{0};
}

const AlertState* DialogControl::activeAlert() const {
    return isModal() ? frames_.back()->alert : nullptr;
}

const FileChooserState* DialogControl::activeFileChooser() const {
    return isModal() ? frames_.back()->chooser : nullptr;
}

void DialogControl::closeDialogsOfImage(const void* address) {
    const void* const image = imageOf(address);
    const auto open = dialogs_;
    for (const auto& dialog : open) {
        if (!dialog->state.modal && imageOf(dialog->callback) == image) close(dialog, 0);
    }
}

void DialogControl::touch(const OpenDialog& dialog) {
    if (presenter_ != nullptr && dialog.state.visible && dialog.brackets == 0) {
        presenter_->dialogChanged(dialog.state);
    }
}

short DialogControl::newModelessID() {
    do {
        lastModelessID_ =
            lastModelessID_ >= kLastModelessID ? short{1} : static_cast<short>(lastModelessID_ + 1);
    } while (opened(lastModelessID_) != nullptr);
    return lastModelessID_;
}

std::shared_ptr<OpenDialog> DialogControl::open(RSResModule dialogModule, short resID,
                                                RSResModule imageModule, DGCallback callback,
                                                DGUserData userData, bool modal) {
    if (callback == nullptr || (modal && opened(resID) != nullptr)) return nullptr;
    const DialogLayout* const layout = layouts_.layout(dialogModule, resID);
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
    fillTexts(*dialog, layouts_);
    return dialog;
}

void DialogControl::raise(const std::shared_ptr<OpenDialog>& dialog) {
    std::erase(dialogs_, dialog);
    auto place = dialogs_.begin();
    if (!dialog->state.modal) {
        place = std::find_if(dialogs_.begin(), dialogs_.end(),
                             [](const auto& each) { return !each->state.modal; });
    }
    dialogs_.insert(place, dialog);
}

bool DialogControl::show(const std::shared_ptr<OpenDialog>& dialog) {
    raise(dialog);
    dialog->state.visible = true;
    if (presenter_ != nullptr) presenter_->dialogShown(dialog->state);
    return !dialog->closed;
}

void DialogControl::close(const std::shared_ptr<OpenDialog>& dialog, short item) {
    if (dialog->closing) return;
    dialog->closing = true;
    dialog->closeResult = send(dialog, DG_MSG_CLOSE, item);
    dialog->closed = true;
    std::erase(dialogs_, dialog);
    if (presenter_ != nullptr && dialog->state.visible) presenter_->dialogClosed(dialog->state.id, item);
}

short DialogControl::send(const std::shared_ptr<OpenDialog>& dialog, short message, short item) {
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
void DialogControl::runFrame(ModalFrame& frame, const Done& done) {
    struct Pushed {
        DialogControl& control;
        ModalFrame& frame;
        ~Pushed() {
            control.frames_.pop_back();
            if (frame.dialog != nullptr) control.close(frame.dialog, 0);  // something threw
        }
    };
    frames_.push_back(&frame);
    const Pushed pushed{*this, frame};
    while (!done())
        perform(presenter_ != nullptr ? presenter_->waitForAction() : UserAction::abandon());
}

short DialogControl::runModal(RSResModule dialogModule, short resID, RSResModule imageModule,
                              DGCallback callback, DGUserData userData) {
    if (presenter_ == nullptr) return 0;
    ModalFrame frame;
    frame.dialog = open(dialogModule, resID, imageModule, callback, userData, true);
    if (frame.dialog == nullptr) return 0;
    show(frame.dialog);
    runFrame(frame, [&frame] { return frame.dialog->closed; });
    return frame.dialog->closeResult;
}

short DialogControl::runAlert(const AlertState& alert) {
    if (presenter_ == nullptr) return 1;
    ModalFrame frame;
    frame.alert = &alert;
    presenter_->alertShown(alert);
    runFrame(frame, [&frame] { return frame.answered; });
    if (presenter_ != nullptr) presenter_->alertClosed(frame.answer);
    return frame.answer;
}

std::optional<DialogControl::ChosenFile> DialogControl::runFileChooser(const FileChooserState& chooser) {
    if (presenter_ == nullptr) return std::nullopt;
    ModalFrame frame;
    frame.chooser = &chooser;
    presenter_->fileChooserShown(chooser);
    runFrame(frame, [&frame] { return frame.answered; });
    if (presenter_ != nullptr) presenter_->fileChooserClosed();
    return frame.chosen;
}

}  // namespace platform

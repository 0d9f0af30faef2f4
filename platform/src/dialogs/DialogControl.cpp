#include "platform/host/DialogControl.h"

#include "platform/host/ImageCleanup.h"
#include "platform/src/dialogs/DialogControlState.h"

namespace platform {

DialogControl& DialogControl::instance() {
    // Never destroyed: add-ons that outlive main still find it.
    static DialogControl* const control = new DialogControl;
    return *control;
}

DialogControl::DialogControl() : state_(std::make_unique<State>()) {
    setLayouts(std::nullopt);
    addImageCleanup([this](const void* image) { closeDialogsOfImage(image); });
}

DialogControl::~DialogControl() = default;

void DialogControl::setPresenter(Presenter* presenter) {
    state_->presenter = presenter;
}

void DialogControl::setLayouts(std::optional<DialogLayouts> layouts) {
    state_->layouts = layouts ? std::move(*layouts) : DialogLayouts{findDialogResource, dialogItemText};
}

void DialogControl::perform(const UserAction& action) {
    state_->perform(action);
}

const DialogState* DialogControl::find(short dialogID) const {
    const auto dialog = state_->find(dialogID);
    return dialog != nullptr ? &dialog->state : nullptr;
}

std::vector<short> DialogControl::openDialogs() const {
    std::vector<short> ids;
    for (const auto& dialog : state_->dialogs)
        ids.push_back(dialog->state.id);
    return ids;
}

short DialogControl::activeModalDialog() const {
    if (state_->frames.empty() || state_->frames.back()->dialog == nullptr) return 0;
    return state_->frames.back()->dialog->state.id;
}

const AlertState* DialogControl::activeAlert() const {
    return state_->frames.empty() ? nullptr : state_->frames.back()->alert;
}

const FileChooserState* DialogControl::activeFileChooser() const {
    return state_->frames.empty() ? nullptr : state_->frames.back()->chooser;
}

bool DialogControl::isModal() const {
    return !state_->frames.empty();
}

void DialogControl::closeDialogsOfImage(const void* address) {
    const void* const image = imageOf(address);
    const auto open = state_->dialogs;
    for (const auto& dialog : open) {
        if (!dialog->state.modal && imageOf(dialog->callback) == image) state_->close(dialog, 0);
    }
}

std::optional<DialogControl::ChosenFile> DialogControl::runFileChooser(const FileChooserState& chooser) {
    return state_->runChooser(chooser);
}

}  // namespace platform

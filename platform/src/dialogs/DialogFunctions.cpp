#include "platform/host/CallTrace.h"
#include "platform/src/dialogs/OpenDialog.h"

#include <algorithm>
#include <limits>

using platform::CallTrace;
using platform::DialogControl;
using platform::DialogItem;
using platform::OpenDialog;

namespace {

DialogControl& dialogs() {
    return DialogControl::instance();
}

short added(short value, int difference) {
    return static_cast<short>(std::clamp<int>(value + difference, std::numeric_limits<short>::min(),
                                              std::numeric_limits<short>::max()));
}

/// An item keeps its distance to the edges that it is anchored to, along one direction.
void follow(short& position, short& size, bool near, bool far, int growth) {
    if (!far) return;
    short& follower = near ? size : position;
    follower = added(follower, growth);
}

void resizeItems(platform::DialogState& dialog, short width, short height) {
    for (DialogItem& item : dialog.items) {
        const auto anchored = [&item](platform::DialogAnchor edge) { return (item.anchors & edge) != 0; };
        follow(item.rect.left, item.rect.width, anchored(platform::kAnchorLeft),
               anchored(platform::kAnchorRight), width - dialog.width);
        follow(item.rect.top, item.rect.height, anchored(platform::kAnchorTop),
               anchored(platform::kAnchorBottom), height - dialog.height);
    }
}

/// Calls `change` with an open dialog; when it answers true what it changed is drawn.
template <typename Change>
void changeDialog(short dialogID, const Change& change) {
    const auto dialog = dialogs().opened(dialogID);
    if (dialog != nullptr && change(*dialog)) dialogs().touch(*dialog);
}

/// Calls `change` with an item of an open dialog; what it changes is drawn.
template <typename Change>
void changeItem(const char* function, short dialogID, short item, const Change& change) {
    const CallTrace trace(function, "dialog", dialogID, "item", item);
    changeDialog(dialogID, [&](OpenDialog& dialog) {
        DialogItem* const found = dialog.state.find(item);
        if (found != nullptr) change(*found);
        return found != nullptr;
    });
}

}  // namespace

short DGModalDialog(RSResModule dialogModule, short dialogID, RSResModule imageModule, DGCallback callback,
                    DGUserData userData) {
    CallTrace trace("DGModalDialog", "dialog", dialogID);
    return trace.returning(dialogs().runModal(dialogModule, dialogID, imageModule, callback, userData));
}

short DGModelessInit(RSResModule dialogModule, short dialogResID, RSResModule imageModule,
                     DGCallback callback, DGUserData userData) {
    CallTrace trace("DGModelessInit", "resource", dialogResID);
    const auto dialog = dialogs().open(dialogModule, dialogResID, imageModule, callback, userData, false);
    return trace.returning(dialog != nullptr ? dialog->state.id : short{0});
}

bool DGShowModelessDialog(short dialogID, int) {
    CallTrace trace("DGShowModelessDialog", "dialog", dialogID);
    const auto dialog = dialogs().opened(dialogID);
    return trace.returning(dialog != nullptr && !dialog->state.modal && dialogs().show(dialog));
}

void DGModelessClose(short dialogID) {
    const CallTrace trace("DGModelessClose", "dialog", dialogID);
    const auto dialog = dialogs().opened(dialogID);
    if (dialog != nullptr && !dialog->state.modal) dialogs().close(dialog, 0);
}

short DGAlert(short type, const GS::UniString& text1, const GS::UniString& text2, const GS::UniString& text3,
              const GS::UniString& button1, const GS::UniString& button2, const GS::UniString& button3) {
    CallTrace trace("DGAlert", "type", type, "text1", text1, "text2", text2, "text3", text3, "button1",
                    button1, "button2", button2, "button3", button3);
    return trace.returning(dialogs().runAlert({type, {text1, text2, text3}, {button1, button2, button3}}));
}

void DGSetDialogClientSize(short dialogID, short width, short height, short anchor, bool resize) {
    const CallTrace trace("DGSetDialogClientSize", "dialog", dialogID, "width", width, "height", height,
                          "anchor", anchor, "resizeItems", resize);
    changeDialog(dialogID, [&](OpenDialog& dialog) {
        if (width <= 0 || height <= 0) return false;
        if (resize) resizeItems(dialog.state, width, height);
        dialog.state.width = width;
        dialog.state.height = height;
        return true;
    });
}

void DGSetDialogTitle(short dialogID, const GS::UniString& title) {
    const CallTrace trace("DGSetDialogTitle", "dialog", dialogID, "title", title);
    changeDialog(dialogID, [&](OpenDialog& dialog) {
        dialog.state.title = title;
        dialog.ownTexts.insert(0);
        return true;
    });
}

void DGBeginMoveGrowItems(short dialogID) {
    const CallTrace trace("DGBeginMoveGrowItems", "dialog", dialogID);
    changeDialog(dialogID, [](OpenDialog& dialog) {
        ++dialog.brackets;
        return false;
    });
}

void DGEndMoveGrowItems(short dialogID) {
    const CallTrace trace("DGEndMoveGrowItems", "dialog", dialogID);
    changeDialog(dialogID, [](OpenDialog& dialog) {
        if (dialog.brackets == 0) return false;
        --dialog.brackets;
        return true;
    });
}

void DGSetFocus(short dialogID, short item) {
    const CallTrace trace("DGSetFocus", "dialog", dialogID, "item", item);
    changeDialog(dialogID, [&](OpenDialog& dialog) {
        if (item != DG_NO_ITEM && dialog.state.find(item) == nullptr) return false;
        dialog.state.focus = item;
        return true;
    });
}

void DGRedrawItem(short dialogID, short item) {
    const CallTrace trace("DGRedrawItem", "dialog", dialogID, "item", item);
    changeDialog(dialogID, [&](OpenDialog& dialog) {
        return item == DG_ALL_ITEMS || dialog.state.find(item) != nullptr;
    });
}

void DGSetItemText(short dialogID, short item, const GS::UniString& text) {
    const CallTrace trace("DGSetItemText", "dialog", dialogID, "item", item, "text", text);
    changeDialog(dialogID, [&](OpenDialog& dialog) {
        DialogItem* const found = dialog.state.find(item);
        if (found == nullptr) return false;
        found->text = text;
        dialog.ownTexts.insert(item);
        return true;
    });
}

void DGShowItem(short dialogID, short item) {
    changeItem("DGShowItem", dialogID, item, [](DialogItem& found) { found.visible = true; });
}

void DGHideItem(short dialogID, short item) {
    changeItem("DGHideItem", dialogID, item, [](DialogItem& found) { found.visible = false; });
}

void DGEnableItem(short dialogID, short item) {
    changeItem("DGEnableItem", dialogID, item, [](DialogItem& found) { found.enabled = true; });
}

void DGDisableItem(short dialogID, short item) {
    changeItem("DGDisableItem", dialogID, item, [](DialogItem& found) { found.enabled = false; });
}

#include "platform/host/CallTrace.h"
#include "platform/src/dialogs/DialogControlState.h"

#include <algorithm>
#include <limits>

using platform::CallDirection;
using platform::CallTrace;
using platform::DialogItem;
using platform::dialogs;
using platform::OpenDialog;
using platform::TraceArguments;

namespace {

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

/// Calls `change` with the item of an open dialog; what it changes is drawn.
template <typename Change>
void changeItem(const char* function, short dialogID, short item, const Change& change) {
    CallTrace trace(CallDirection::ToHost, function, [&] {
        return TraceArguments{{"dialog", dialogID}, {"item", item}};
    });
    const auto dialog = dialogs().find(dialogID);
    if (dialog == nullptr) return;
    DialogItem* const found = dialog->state.find(item);
    if (found == nullptr) return;
    change(*found);
    dialogs().touch(*dialog);
}

}  // namespace

void DGSetDialogClientSize(short dialogID, short width, short height, short anchor, bool resize) {
    CallTrace trace(CallDirection::ToHost, "DGSetDialogClientSize", [&] {
        return TraceArguments{{"dialog", dialogID},
                              {"width", width},
                              {"height", height},
                              {"anchor", anchor},
                              {"resizeItems", resize}};
    });
    const auto dialog = dialogs().find(dialogID);
    if (dialog == nullptr || width <= 0 || height <= 0) return;
    if (resize) resizeItems(dialog->state, width, height);
    dialog->state.width = width;
    dialog->state.height = height;
    dialogs().touch(*dialog);
}

void DGSetDialogTitle(short dialogID, const GS::UniString& title) {
    CallTrace trace(CallDirection::ToHost, "DGSetDialogTitle", [&] {
        return TraceArguments{{"dialog", dialogID}, {"title", UniStringToUtf8(title)}};
    });
    const auto dialog = dialogs().find(dialogID);
    if (dialog == nullptr) return;
    dialog->state.title = title;
    dialog->ownTexts.insert(0);
    dialogs().touch(*dialog);
}

void DGBeginMoveGrowItems(short dialogID) {
    CallTrace trace(CallDirection::ToHost, "DGBeginMoveGrowItems", [&] {
        return TraceArguments{{"dialog", dialogID}};
    });
    const auto dialog = dialogs().find(dialogID);
    if (dialog != nullptr) ++dialog->brackets;
}

void DGEndMoveGrowItems(short dialogID) {
    CallTrace trace(CallDirection::ToHost, "DGEndMoveGrowItems", [&] {
        return TraceArguments{{"dialog", dialogID}};
    });
    const auto dialog = dialogs().find(dialogID);
    if (dialog == nullptr || dialog->brackets == 0) return;
    --dialog->brackets;
    dialogs().touch(*dialog);
}

void DGSetFocus(short dialogID, short item) {
    CallTrace trace(CallDirection::ToHost, "DGSetFocus", [&] {
        return TraceArguments{{"dialog", dialogID}, {"item", item}};
    });
    const auto dialog = dialogs().find(dialogID);
    if (dialog == nullptr || (item != DG_NO_ITEM && dialog->state.find(item) == nullptr)) return;
    dialog->state.focus = item;
    dialogs().touch(*dialog);
}

void DGRedrawItem(short dialogID, short item) {
    CallTrace trace(CallDirection::ToHost, "DGRedrawItem", [&] {
        return TraceArguments{{"dialog", dialogID}, {"item", item}};
    });
    const auto dialog = dialogs().find(dialogID);
    if (dialog == nullptr || (item != DG_ALL_ITEMS && dialog->state.find(item) == nullptr)) return;
    dialogs().touch(*dialog);
}

void DGSetItemText(short dialogID, short item, const GS::UniString& text) {
    CallTrace trace(CallDirection::ToHost, "DGSetItemText", [&] {
        return TraceArguments{{"dialog", dialogID}, {"item", item}, {"text", UniStringToUtf8(text)}};
    });
    const auto dialog = dialogs().find(dialogID);
    DialogItem* const found = dialog != nullptr ? dialog->state.find(item) : nullptr;
    if (found == nullptr) return;
    found->text = text;
    dialog->ownTexts.insert(item);
    dialogs().touch(*dialog);
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

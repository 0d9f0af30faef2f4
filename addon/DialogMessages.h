#pragma once

#include "platform/DialogManager.h"

/// What the add-on's own dialogs answer to their messages alike: at the beginning the texts are written and
/// the dialog gets its size (in points) and no focus, a click goes to MsgClick, and the end is noted.
template <typename Dialog>
short AnswerDialogMessage(Dialog& dialog, short message, short dialogID, short item, short width,
                          short height) {
    switch (message) {
        case DG_MSG_INIT:
            dialog.dialogID = dialogID;
            dialog.SetItems();
            DGSetDialogClientSize(dialogID, width, height, 0, true);
            DGSetFocus(dialogID, DG_NO_ITEM);
            return 0;
        case DG_MSG_CLOSE:
            dialog.dialogID = 0;
            return item;
        case DG_MSG_CLICK:
            return dialog.MsgClick(item);
        default:
            return 0;
    }
}

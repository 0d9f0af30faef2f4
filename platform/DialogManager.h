#pragma once

#include "platform/ResourceManager.h"
#include "platform/UniString.h"

#include <cstdint>

/// The host's dialog manager as add-ons see it. All calls on the main thread.
///
/// Every dialog has an ID: a modal dialog's ID is its resource ID, a modeless one gets a number of its own
/// that is not used again soon. A function on an ID that is closed or was never open, or on an item that the
/// dialog lacks, does nothing and returns 0. Items are numbered from 1, list rows from 1.

using DGUserData = std::int64_t;     ///< the add-on's own value, handed back with each message
using DGMessageData = std::int64_t;  ///< detail of a message; 0 with every message sent today

/// Messages to a dialog callback.
enum DGMessage : short {
    DG_MSG_INIT = 1,    ///< the dialog exists and is not yet shown
    DG_MSG_CLOSE = 3,   ///< the dialog is about to close; `item` closed it
    DG_MSG_CLICK = 4,   ///< a button was clicked, or a list row double-clicked
    DG_MSG_CHANGE = 6,  ///< the selection of a list, or another value, changed
};

/// A dialog callback. A result above 0 for DG_MSG_CLICK closes the dialog with that item; what it returns for
/// DG_MSG_CLOSE is the result of DGModalDialog. Other results are not read.
using DGCallback = short (*)(short message, short dialogID, short item, DGUserData userData,
                             DGMessageData messageData);

constexpr short DG_NO_ITEM = -1;      ///< DGSetFocus: no item has the focus
constexpr short DG_ALL_ITEMS = 0;     ///< DGRedrawItem: the whole dialog; list functions: every row
constexpr short DG_LIST_BOTTOM = -1;  ///< DGListInsertItem: after the last row
constexpr short DG_ALERT_PLAIN = -1;  ///< DGAlert: one plain message without a severity

namespace DG {
/// A reference to an icon resource; the picture itself is read when a presenter first draws it.
class Icon {
public:
    Icon() = default;
    Icon(RSResModule module, short resID) : module_(module), resID_(resID) {}
    RSResModule module() const { return module_; }
    short resID() const { return resID_; }  ///< 0 for no icon

private:
    RSResModule module_ = kNoResModule;
    short resID_ = 0;
};
}  // namespace DG

/// Runs dialog `dialogID` of `dialogModule` until it is closed; its own event loop dispatches the main run
/// loop too. Returns what the callback answered to DG_MSG_CLOSE; 0, with no message sent, when there is no
/// such layout or a dialog of this ID is already open. A close box or Escape clicks item 2.
short DGModalDialog(RSResModule dialogModule, short dialogID, RSResModule imageModule, DGCallback callback,
                    DGUserData userData);

/// Creates a modeless dialog, invisible until DGShowModelessDialog. DG_MSG_INIT has been sent when it
/// returns. Returns its ID, or 0 when there is no such layout.
short DGModelessInit(RSResModule dialogModule, short dialogResID, RSResModule imageModule,
                     DGCallback callback, DGUserData userData);
/// Shows the dialog, or brings it to the front. `flags` is 0. Returns whether the dialog is open.
bool DGShowModelessDialog(short dialogID, int flags);
/// Sends DG_MSG_CLOSE and ends the dialog.
void DGModelessClose(short dialogID);

/// One message with up to three buttons; empty texts and buttons are left out. `type` -1 is a plain message.
/// Waits for the user and returns the number of the button (1 to 3).
short DGAlert(short type, const GS::UniString& text1, const GS::UniString& text2, const GS::UniString& text3,
              const GS::UniString& button1, const GS::UniString& button2 = GS::UniString(),
              const GS::UniString& button3 = GS::UniString());

/// Size of the dialog's content in pixels at 100 %. `anchor` 0 keeps the top left corner; `resizeItems`
/// lets the items follow.
void DGSetDialogClientSize(short dialogID, short width, short height, short anchor, bool resizeItems);
void DGSetDialogTitle(short dialogID, const GS::UniString& title);
/// Between the two calls nothing is drawn.
void DGBeginMoveGrowItems(short dialogID);
void DGEndMoveGrowItems(short dialogID);
void DGSetFocus(short dialogID, short item);
void DGRedrawItem(short dialogID, short item);

void DGSetItemText(short dialogID, short item, const GS::UniString& text);
void DGShowItem(short dialogID, short item);
void DGHideItem(short dialogID, short item);
void DGEnableItem(short dialogID, short item);
void DGDisableItem(short dialogID, short item);

/// Lists with tab fields (columns); fields are numbered from 1.
void DGListSetTabFieldCount(short dialogID, short item, short count);
void DGListSetItemHeight(short dialogID, short item, short height);
/// Field `field` reaches from `begin` to `end` (pixels from the list's left edge).
void DGListSetTabFieldData(short dialogID, short item, short field, short begin, short end,
                           short justification, int truncationFlags, bool separator, bool last);
void DGListDisableDraw(short dialogID, short item);
void DGListEnableDraw(short dialogID, short item);
/// Inserts an empty row before row `row`, or at the end with DG_LIST_BOTTOM. Returns the new row's number.
short DGListInsertItem(short dialogID, short item, short row);
/// Row DG_ALL_ITEMS means every row.
void DGListDeleteItem(short dialogID, short item, short row);
void DGListSelectItem(short dialogID, short item, short row);
void DGListDeselectItem(short dialogID, short item, short row);
/// The first selected row at or after `from`, or 0.
short DGListGetSelected(short dialogID, short item, short from);
void DGListSetTabItemText(short dialogID, short item, short row, short field, const GS::UniString& text);
void DGListSetTabItemIcon(short dialogID, short item, short row, short field, const DG::Icon& icon);

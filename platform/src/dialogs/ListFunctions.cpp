#include "platform/host/CallTrace.h"
#include "platform/src/dialogs/OpenDialog.h"

#include <algorithm>
#include <limits>

using platform::CallTrace;
using platform::DialogControl;
using platform::DialogItemKind;
using platform::ListField;
using platform::ListRow;
using platform::ListState;
using platform::OpenDialog;

namespace {

constexpr std::size_t kMaxRows = std::numeric_limits<short>::max();

/// The list that a call means; `list` is null when there is none.
class ListCall {
public:
    ListCall(short dialogID, short item) : dialog_(DialogControl::instance().opened(dialogID)) {
        auto* const found = dialog_ != nullptr ? dialog_->state.find(item) : nullptr;
        if (found != nullptr && found->kind == DialogItemKind::List) list = &found->list;
    }
    /// What was changed is drawn, unless drawing is off.
    ~ListCall() {
        if (changed && list->drawing) DialogControl::instance().touch(*dialog_);
    }
    ListCall(const ListCall&) = delete;
    ListCall& operator=(const ListCall&) = delete;

    bool hasRow(short row) const {
        return list != nullptr && row >= 1 && static_cast<std::size_t>(row) <= list->rows.size();
    }
    /// Whether the list has what `row` means: one of its rows, or all of them.
    bool hasRows(short row) const { return list != nullptr && (row == DG_ALL_ITEMS || hasRow(row)); }
    bool hasField(short field) const {
        return list != nullptr && field >= 1 && static_cast<std::size_t>(field) <= list->fields.size();
    }
    ListRow& row(short number) { return list->rows[static_cast<std::size_t>(number - 1)]; }

    ListState* list = nullptr;
    bool changed = false;

private:
    std::shared_ptr<OpenDialog> dialog_;
};

}  // namespace

void DGListSetTabFieldCount(short dialogID, short item, short count) {
    const CallTrace trace("DGListSetTabFieldCount", "dialog", dialogID, "item", item, "count", count);
    ListCall call(dialogID, item);
    if (call.list == nullptr || count < 1) return;
    call.list->fields.resize(static_cast<std::size_t>(count));
    for (ListRow& row : call.list->rows)
        row.cells.resize(static_cast<std::size_t>(count));
    call.changed = true;
}

void DGListSetItemHeight(short dialogID, short item, short height) {
    const CallTrace trace("DGListSetItemHeight", "dialog", dialogID, "item", item, "height", height);
    ListCall call(dialogID, item);
    if (call.list == nullptr || height < 1) return;
    call.list->rowHeight = height;
    call.changed = true;
}

void DGListSetTabFieldData(short dialogID, short item, short field, short begin, short end,
                           short justification, int truncationFlags, bool separator, bool last) {
    const CallTrace trace("DGListSetTabFieldData", "dialog", dialogID, "item", item, "field", field, "begin",
                          begin, "end", end, "justification", justification, "truncationFlags",
                          truncationFlags, "separator", separator, "last", last);
    ListCall call(dialogID, item);
    if (!call.hasField(field)) return;
    call.list->fields[static_cast<std::size_t>(field - 1)] =
        ListField{begin, end, justification, truncationFlags, separator, last};
    call.changed = true;
}

void DGListDisableDraw(short dialogID, short item) {
    const CallTrace trace("DGListDisableDraw", "dialog", dialogID, "item", item);
    ListCall call(dialogID, item);
    if (call.list != nullptr) call.list->drawing = false;
}

void DGListEnableDraw(short dialogID, short item) {
    const CallTrace trace("DGListEnableDraw", "dialog", dialogID, "item", item);
    ListCall call(dialogID, item);
    if (call.list == nullptr) return;
    call.list->drawing = true;
    call.changed = true;
}

short DGListInsertItem(short dialogID, short item, short row) {
    CallTrace trace("DGListInsertItem", "dialog", dialogID, "item", item, "row", row);
    ListCall call(dialogID, item);
    if (call.list == nullptr || call.list->rows.size() >= kMaxRows) return trace.returning(short{0});
    const short end = static_cast<short>(call.list->rows.size() + 1);
    const short number = row == DG_LIST_BOTTOM ? end : row;
    if (number < 1 || number > end) return trace.returning(short{0});
    call.list->rows.insert(call.list->rows.begin() + (number - 1),
                           ListRow{std::vector<platform::ListCell>(call.list->fields.size()), false});
    call.changed = true;
    return trace.returning(number);
}

void DGListDeleteItem(short dialogID, short item, short row) {
    const CallTrace trace("DGListDeleteItem", "dialog", dialogID, "item", item, "row", row);
    ListCall call(dialogID, item);
    if (!call.hasRows(row)) return;
    if (row == DG_ALL_ITEMS)
        call.list->rows.clear();
    else
        call.list->rows.erase(call.list->rows.begin() + (row - 1));
    call.changed = true;
}

void DGListSelectItem(short dialogID, short item, short row) {
    const CallTrace trace("DGListSelectItem", "dialog", dialogID, "item", item, "row", row);
    ListCall call(dialogID, item);
    if (!call.hasRows(row)) return;
    for (ListRow& each : call.list->rows)
        each.selected = row == DG_ALL_ITEMS || &each == &call.row(row);
    call.changed = true;
}

void DGListDeselectItem(short dialogID, short item, short row) {
    const CallTrace trace("DGListDeselectItem", "dialog", dialogID, "item", item, "row", row);
    ListCall call(dialogID, item);
    if (!call.hasRows(row)) return;
    for (ListRow& each : call.list->rows) {
        if (row == DG_ALL_ITEMS || &each == &call.row(row)) each.selected = false;
    }
    call.changed = true;
}

short DGListGetSelected(short dialogID, short item, short from) {
    CallTrace trace("DGListGetSelected", "dialog", dialogID, "item", item, "from", from);
    ListCall call(dialogID, item);
    for (short row = std::max(from, short{1}); call.hasRow(row); ++row) {
        if (call.row(row).selected) return trace.returning(row);
        if (row == std::numeric_limits<short>::max()) break;
    }
    return trace.returning(short{0});
}

void DGListSetTabItemText(short dialogID, short item, short row, short field, const GS::UniString& text) {
    const CallTrace trace("DGListSetTabItemText", "dialog", dialogID, "item", item, "row", row, "field",
                          field, "text", text);
    ListCall call(dialogID, item);
    if (!call.hasRow(row) || !call.hasField(field)) return;
    call.row(row).cells[static_cast<std::size_t>(field - 1)].text = text;
    call.changed = true;
}

void DGListSetTabItemIcon(short dialogID, short item, short row, short field, const DG::Icon& icon) {
    const CallTrace trace("DGListSetTabItemIcon", "dialog", dialogID, "item", item, "row", row, "field",
                          field, "icon", icon.resID());
    ListCall call(dialogID, item);
    if (!call.hasRow(row) || !call.hasField(field)) return;
    call.row(row).cells[static_cast<std::size_t>(field - 1)].icon = icon;
    call.changed = true;
}
